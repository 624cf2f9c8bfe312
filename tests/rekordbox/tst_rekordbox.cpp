#include "doubles/buendel.h"
#include "doubles/dateien.h"
#include "doubles/einschraenkung.h"
#include "doubles/ereignisse.h"
#include "doubles/fakeprozesse.h"
#include "foundation/einstellungen.h"
#include "rekordbox/rekordbox.h"
#include "testlauf.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Bundle, relative to the folder of applications → its short version; null: without one.
using Programme = QList<QPair<QString, QString>>;

const QString schluessel = u"CFBundleShortVersionString"_s;

QByteArray info(Plistform form, const QString &version)
{
    QMap<QString, QVariant> eintraege{{u"CFBundleName"_s, u"rekordbox"_s}};
    if (!version.isNull()) {
        eintraege.insert(schluessel, version);
    }
    return plistBytes(form, eintraege);
}

} // namespace

class TestRekordbox final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ordner = std::make_unique<QTemporaryDir>();
        QVERIFY(ordner->isValid());
    }

    void installationen_data();
    void installationen();
    void version_data();
    void version();
    void gleicheVersionenWieImOrdner();
    void ortDesBuendels();
    void gewaehlt_data();
    void gewaehlt();
    void verweise();
    void keinBuendel_data();
    void keinBuendel();
    void ordnerNichtLesbar_data();
    void ordnerNichtLesbar();
    void laeuft_data();
    void laeuft();
    void anzahl();
    void beideNamenZugleich();
    void kommtWaehrendGefragtWird_data();
    void kommtWaehrendGefragtWird();

private:
    [[nodiscard]] QString pfad(const QString &name) const { return ordner->filePath(name); }

    [[nodiscard]] QList<Installation> gefunden() const
    {
        return Rekordbox(prozesse, ordner->path()).installationen();
    }

    // "version bundle" of all that is found.
    [[nodiscard]] QStringList liste() const
    {
        QStringList zeilen;
        for (const Installation &eine : gefunden()) {
            const QString ort = eine.url.toLocalFile().mid(ordner->path().size() + 1);
            zeilen.append(eine.version + u' ' + ort);
        }
        return zeilen;
    }

    FakeProzesse prozesse;
    std::unique_ptr<QTemporaryDir> ordner;
};

void TestRekordbox::installationen_data()
{
    QTest::addColumn<Programme>("programme");
    QTest::addColumn<QStringList>("erwartet");
    const auto fall = [](const char *name, const Programme &programme, const QStringList &liste) {
        QTest::newRow(name) << programme << liste;
    };
    fall("No rekordbox installed", {{u"Traktor.app"_s, u"4"_s}}, {});
    fall("rekordbox 6 and rekordbox 7: newest first",
         {{u"rekordbox 6/rekordbox.app"_s, u"6.8.5"_s},
          {u"rekordbox 7/rekordbox.app"_s, u"7.0.9"_s}},
         {u"7.0.9 rekordbox 7/rekordbox.app"_s, u"6.8.5 rekordbox 6/rekordbox.app"_s});
    fall("A folder rekordbox 7 that holds no rekordbox.app gives nothing",
         {{u"rekordbox 7/Uninstall.app"_s, u"7"_s}}, {});
    fall("rekordbox 7.app is ignored", {{u"rekordbox 7.app"_s, u"7"_s}}, {});
    fall("... even with a rekordbox.app inside", {{u"rekordbox 7.app/rekordbox.app"_s, u"7"_s}},
         {});
    fall("A bundle without a short version string is listed with 0 and sorts last",
         {{u"rekordbox 7/rekordbox.app"_s, {}}, {u"rekordbox 5/rekordbox.app"_s, u"5"_s}},
         {u"5 rekordbox 5/rekordbox.app"_s, u"0 rekordbox 7/rekordbox.app"_s});
    fall("on top", {{u"rekordbox.app"_s, u"7"_s}}, {u"7 rekordbox.app"_s});
    fall("Rekordbox.app is not exactly rekordbox.app", {{u"Rekordbox.app"_s, u"7"_s}}, {});
    fall("the folder's case is free", {{u"REKORDBOX Alt/rekordbox.app"_s, u"5"_s}},
         {u"5 REKORDBOX Alt/rekordbox.app"_s});
    fall("the bundle's is not", {{u"rekordbox 7/Rekordbox.app"_s, u"7"_s}}, {});
    fall("another folder", {{u"Pioneer rekordbox/rekordbox.app"_s, u"7"_s}}, {});
    fall("one level only", {{u"rekordbox/7/rekordbox.app"_s, u"7"_s}}, {});
    fall("a folder's name goes on without a blank", {{u"rekordboxed/rekordbox.app"_s, u"7"_s}},
         {u"7 rekordboxed/rekordbox.app"_s});
    fall("hidden", {{u".rekordbox/rekordbox.app"_s, u"7"_s}}, {});
    fall("umlauts and markup", {{u"rekordbox <b>ü %1 &/rekordbox.app"_s, u"7"_s}},
         {u"7 rekordbox <b>ü %1 &/rekordbox.app"_s});
    fall("versions are numbers, not text",
         {{u"rekordbox a/rekordbox.app"_s, u"7.9"_s},
          {u"rekordbox b/rekordbox.app"_s, u"7.10"_s},
          {u"rekordbox c/rekordbox.app"_s, u"10.0"_s},
          {u"rekordbox d/rekordbox.app"_s, u"7.9.1"_s}},
         {u"10.0 rekordbox c/rekordbox.app"_s, u"7.10 rekordbox b/rekordbox.app"_s,
          u"7.9.1 rekordbox d/rekordbox.app"_s, u"7.9 rekordbox a/rekordbox.app"_s});
}

void TestRekordbox::installationen()
{
    QFETCH(const Programme, programme);
    QFETCH(const QStringList, erwartet);
    for (const Plistform form : {Plistform::Xml, Plistform::Binaer}) {
        for (const auto &[buendel, version] : programme) {
            buendelSchreiben(pfad(buendel), info(form, version));
        }
        QCOMPARE(liste(), erwartet);
    }
}

void TestRekordbox::version_data()
{
    QTest::addColumn<QByteArray>("plist");
    QTest::addColumn<QString>("erwartet");
    const auto text = [](const char *name, const QString &version, const QString &kurz) {
        QTest::newRow(name) << info(Plistform::Xml, version) << kurz;
    };
    text("7.1.4.0012 becomes 7.1.4", u"7.1.4.0012"_s, u"7.1.4"_s);
    text("6 stays 6", u"6"_s, u"6"_s);
    text("three stay three", u"7.1.4"_s, u"7.1.4"_s);
    text("empty pieces are dropped", u"..7...1.4.5."_s, u"7.1.4"_s);
    text("points only", u"..."_s, u""_s);
    text("empty", u""_s, u""_s);
    text("blanks and line feeds stay", u" 7.1\n.4 "_s, u" 7.1\n.4 "_s);
    text("no numbers", u"sieben.eins"_s, u"sieben.eins"_s);
    text("leading zeroes stay", u"007.01"_s, u"007.01"_s);
    text("very long", QString(200000, u'7') + u".1.2.3"_s, QString(200000, u'7') + u".1.2"_s);
    text("many pieces", u"1."_s.repeated(100000), u"1.1.1"_s);
    QTest::newRow("a number") << plistBytes(Plistform::Binaer, {{schluessel, 7}}) << u"0"_s;
    QTest::newRow("a list") << plistBytes(Plistform::Xml, {{schluessel, QStringList{u"7"_s}}})
                            << u"0"_s;
    QTest::newRow("empty file") << QByteArray() << u"0"_s;
    QTest::newRow("broken XML") << info(Plistform::Xml, u"7"_s).chopped(12) << u"0"_s;
    QTest::newRow("broken binary") << info(Plistform::Binaer, u"7"_s).chopped(12) << u"0"_s;
    QTest::newRow("huge") << info(Plistform::Xml, QString(1048576, u'7')) << u"0"_s;
}

void TestRekordbox::version()
{
    QFETCH(const QByteArray, plist);
    QFETCH(const QString, erwartet);
    buendelSchreiben(pfad(u"rekordbox.app"_s), plist);
    QCOMPARE(gefunden().size(), 1);
    QCOMPARE(gefunden().first().version, erwartet);
}

void TestRekordbox::gleicheVersionenWieImOrdner()
{
    constexpr int viele = 40; // an unstable sort keeps the order of a few
    for (int i = 0; i < viele; ++i) {
        const QString version = i % 2 == 0 ? u"7.1.4.%1"_s.arg(i) : u"6.8.5"_s;
        buendelSchreiben(pfad(u"rekordbox %1/rekordbox.app"_s.arg(i)),
                         info(Plistform::Xml, version));
    }
    QStringList neu;
    QStringList alt;
    QDirIterator eintraege(ordner->path(), QDir::Dirs | QDir::NoDotAndDotDot);
    while (eintraege.hasNext()) {
        eintraege.next();
        const bool gerade = eintraege.fileName().mid(10).toInt() % 2 == 0;
        const QString ort = eintraege.fileName() + u"/rekordbox.app"_s;
        (gerade ? neu : alt).append((gerade ? u"7.1.4 "_s : u"6.8.5 "_s) + ort);
    }
    QCOMPARE(liste(), neu + alt);
}

void TestRekordbox::ortDesBuendels()
{
    buendelSchreiben(pfad(u"rekordbox 7/rekordbox.app"_s), info(Plistform::Xml, u"7"_s));
    const Installation erwartet{u"7"_s, QUrl::fromLocalFile(pfad(u"rekordbox 7/rekordbox.app"_s))};
    QCOMPARE(gefunden(), QList{erwartet});
    QCOMPARE(Rekordbox(prozesse, ordner->path() + u'/').installationen(), QList{erwartet});
}

void TestRekordbox::gewaehlt_data()
{
    QTest::addColumn<QStringList>("versionen");
    QTest::addColumn<QString>("wunsch");
    QTest::addColumn<int>("erwartet");
    const QStringList beide{u"7.0.9"_s, u"6.8.5"_s};
    QTest::newRow("No rekordbox installed") << QStringList() << u""_s << -1;
    QTest::newRow("No rekordbox installed, but one wished for")
        << QStringList() << u"7.0.9"_s << -1;
    QTest::newRow("an empty setting yields 7.0.9") << beide << u""_s << 0;
    QTest::newRow("with 6.8.5 yields 6.8.5") << beide << u"6.8.5"_s << 1;
    QTest::newRow("with 5.0.0 yields 7.0.9") << beide << u"5.0.0"_s << 0;
    QTest::newRow("only the exact text counts") << beide << u"6.8.05"_s << 0;
    QTest::newRow("the first of two equal ones")
        << QStringList{u"7"_s, u"6"_s, u"6"_s} << u"6"_s << 1;
    QTest::newRow("an empty setting is no wish for an empty version")
        << QStringList{u"7"_s, u""_s} << u""_s << 0;
}

void TestRekordbox::gewaehlt()
{
    QFETCH(const QStringList, versionen);
    QFETCH(const QString, wunsch);
    QFETCH(const int, erwartet);
    QList<Installation> installiert;
    for (const QString &version : versionen) {
        const QString ort = u"/A/rekordbox %1/rekordbox.app"_s.arg(installiert.size());
        installiert.append({version, QUrl::fromLocalFile(ort)});
    }
    Einstellungen einst;
    einst.version = wunsch;
    const auto wahl = Rekordbox::gewaehlt(installiert, einst);
    QCOMPARE(wahl, erwartet < 0 ? std::nullopt : std::optional(installiert[erwartet]));
}

void TestRekordbox::verweise()
{
    QTemporaryDir anderswo;
    const QString wirklich = anderswo.filePath(u"rekordbox.app"_s);
    buendelSchreiben(wirklich, info(Plistform::Binaer, u"7.1"_s));
    QVERIFY(QFile::link(wirklich, pfad(u"rekordbox.app"_s)));
    QVERIFY(QFile::link(anderswo.path(), pfad(u"rekordbox 7"_s)));
    QVERIFY(QFile::link(pfad(u"rekordbox kreis"_s), pfad(u"rekordbox kreis"_s)));
    QVERIFY(QFile::link(u"/nirgends"_s, pfad(u"rekordbox 6"_s)));
    QVERIFY(QDir().mkdir(pfad(u"rekordbox 5"_s)));
    QVERIFY(QFile::link(pfad(u"rekordbox 5"_s), pfad(u"rekordbox 5/rekordbox.app"_s)));
    QStringList fund = liste();
    fund.sort();
    QCOMPARE(fund, QStringList({u"0 rekordbox 5/rekordbox.app"_s,
                                u"7.1 rekordbox 7/rekordbox.app"_s, u"7.1 rekordbox.app"_s}));
}

void TestRekordbox::keinBuendel_data()
{
    QTest::addColumn<QString>("art");
    for (const char *art :
         {"a file", "an empty folder", "Info.plist a named pipe", "Info.plist a folder",
          "Info.plist a link loop", "Info.plist unreadable", "Contents unreadable"}) {
        QTest::newRow(art) << QString::fromLatin1(art);
    }
}

// Is there, so it is listed; its version is 0.
void TestRekordbox::keinBuendel()
{
    QFETCH(const QString, art);
    const QString buendel = pfad(u"rekordbox.app"_s);
    const QString contents = buendel + u"/Contents"_s;
    const QString plist = contents + u"/Info.plist"_s;
    QVERIFY(QFile::setPermissions(ordner->path(), QFile::Permissions(0x7755)));
    if (art == u"a file") {
        dateiSchreiben(buendel, "rekordbox");
    } else {
        QVERIFY(QDir().mkpath(art == u"an empty folder" ? buendel : contents));
    }
    if (art.endsWith(u"pipe")) {
        QCOMPARE(::mkfifo(QFile::encodeName(plist).constData(), 0666), 0);
    } else if (art.endsWith(u"a folder")) {
        QVERIFY(QDir().mkdir(plist));
    } else if (art.endsWith(u"loop")) {
        QVERIFY(QFile::link(plist, plist));
    } else if (art.endsWith(u"unreadable")) {
        dateiSchreiben(plist, info(Plistform::Xml, u"7"_s));
        QVERIFY(QFile::setPermissions(art.startsWith(u"Info") ? plist : contents, {}));
    }
    {
        const OhneRechte niemand;
        QCOMPARE(liste(), QStringList{u"0 rekordbox.app"_s});
    }
    QFile::setPermissions(contents, QFile::Permissions(0x7755)); // else it cannot be removed
}

void TestRekordbox::ordnerNichtLesbar_data()
{
    QTest::addColumn<QString>("art");
    for (const char *art : {"missing", "a file", "unreadable", "unreadable inside"}) {
        QTest::newRow(art) << QString::fromLatin1(art);
    }
}

void TestRekordbox::ordnerNichtLesbar()
{
    QFETCH(const QString, art);
    QVERIFY(QFile::setPermissions(ordner->path(), QFile::Permissions(0x7755)));
    const QString programme = pfad(u"Applications"_s);
    const QString innen = programme + u"/rekordbox 7"_s;
    if (art == u"a file") {
        dateiSchreiben(programme, "");
    } else if (art != u"missing") {
        buendelSchreiben(innen + u"/rekordbox.app"_s, info(Plistform::Xml, u"7"_s));
        QCOMPARE(Rekordbox(prozesse, programme).installationen().size(), 1);
        QVERIFY(QFile::setPermissions(art == u"unreadable" ? programme : innen, {}));
    }
    {
        const OhneRechte niemand;
        QCOMPARE(Rekordbox(prozesse, programme).installationen(), QList<Installation>());
    }
    QFile::setPermissions(programme, QFile::Permissions(0x7755));
    QFile::setPermissions(innen, QFile::Permissions(0x7755));
}

void TestRekordbox::laeuft_data()
{
    QTest::addColumn<int>("haupt");
    QTest::addColumn<int>("agent");
    QTest::addColumn<bool>("hauptLaeuft");
    QTest::addColumn<bool>("laeuft");
    QTest::newRow("Nothing running") << 0 << 0 << false << false;
    QTest::newRow("Only rekordboxAgent running") << 0 << 1 << false << true;
    QTest::newRow("Only rekordbox running") << 1 << 0 << true << true;
    QTest::newRow("Both running, twice") << 2 << 2 << true << true;
}

void TestRekordbox::laeuft()
{
    QFETCH(const int, haupt);
    QFETCH(const int, agent);
    FakeProzesse tabelle;
    tabelle.laufend = {{u"rekordbox"_s, haupt}, {u"rekordboxAgent"_s, agent}, {u"Rekordbox"_s, 9}};
    const Rekordbox rekordbox(tabelle, ordner->path());
    std::optional<bool> hauptLaeuft;
    std::optional<bool> laeuft;
    rekordbox.hauptLaeuft(this, [&](bool ja) { hauptLaeuft = ja; });
    rekordbox.laeuft(this, [&](bool ja) { laeuft = ja; });
    QVERIFY(!hauptLaeuft && !laeuft); // from the event loop
    ereignisseAbarbeiten();
    QVERIFY(hauptLaeuft && laeuft);
    QTEST(*hauptLaeuft, "hauptLaeuft");
    QTEST(*laeuft, "laeuft");
}

void TestRekordbox::anzahl()
{
    FakeProzesse tabelle;
    tabelle.laufend = {{u"rekordbox"_s, 3}};
    const Rekordbox rekordbox(tabelle, ordner->path());
    QList<qsizetype> zahlen;
    for (const QString &name : {u"rekordbox"_s, u"anderes"_s}) {
        rekordbox.anzahl(name, this, [&](qsizetype anzahl) { zahlen.append(anzahl); });
    }
    ereignisseAbarbeiten();
    QCOMPARE(zahlen, QList<qsizetype>({3, 0}));
    QCOMPARE(tabelle.gefragt, QStringList({u"rekordbox"_s, u"anderes"_s}));
}

// Both names are asked together, so a slow table costs its time once; and whoever goes hears
// nothing.
void TestRekordbox::beideNamenZugleich()
{
    FakeProzesse tabelle;
    tabelle.zoegert = true;
    const Rekordbox rekordbox(tabelle, ordner->path());
    int antworten = 0;
    auto besitzer = std::make_unique<QObject>();
    rekordbox.laeuft(this, [&](bool) { ++antworten; });
    rekordbox.laeuft(besitzer.get(), [&](bool) { ++antworten; });
    QCOMPARE(tabelle.gefragt.mid(0, 2), QStringList({u"rekordbox"_s, u"rekordboxAgent"_s}));
    besitzer.reset();
    ereignisseAbarbeiten();
    QCOMPARE(antworten, 0);
    tabelle.antworten();
    ereignisseAbarbeiten();
    QCOMPARE(antworten, 1);
}

void TestRekordbox::kommtWaehrendGefragtWird_data()
{
    QTest::addColumn<QStringList>("vorher");
    QTest::addColumn<QStringList>("nachher");
    QTest::addColumn<bool>("hauptLaeuft");
    QTest::addColumn<bool>("laeuft");
    const QStringList app{u"/Applications/rekordbox 7/rekordbox.app"_s};
    const QStringList agent{u"/Applications/rekordbox 7/rekordboxAgent.app"_s};
    QTest::newRow("nothing") << QStringList() << QStringList{u"/x/Mail.app"_s} << false << false;
    QTest::newRow("rekordbox") << QStringList() << app << true << true;
    QTest::newRow("its agent") << QStringList() << agent << false << true;
    QTest::newRow("it was there, and only its process counts") << app << app << false << false;
}
// The count was taken before it came.
void TestRekordbox::kommtWaehrendGefragtWird()
{
    QFETCH(const QStringList, vorher);
    QFETCH(const QStringList, nachher);
    FakeProzesse tabelle;
    tabelle.zoegert = true;
    tabelle.buendelliste = vorher;
    const Rekordbox rekordbox(tabelle, ordner->path());
    std::optional<bool> hauptLaeuft;
    std::optional<bool> laeuft;
    rekordbox.hauptLaeuft(this, [&](bool ja) { hauptLaeuft = ja; });
    rekordbox.laeuft(this, [&](bool ja) { laeuft = ja; });
    tabelle.buendelliste = nachher;
    tabelle.antworten();
    ereignisseAbarbeiten();
    QVERIFY(hauptLaeuft && laeuft);
    QTEST(*hauptLaeuft, "hauptLaeuft");
    QTEST(*laeuft, "laeuft");
}

KALVARO_TEST(TestRekordbox)
#include "tst_rekordbox.moc"
