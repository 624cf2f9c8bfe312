#include "doubles/datenordner.h"
#include "doubles/einschraenkung.h"
#include "foundation/datenordner.h"
#include "foundation/einstellungen.h"
#include "testlauf.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestEinstellungen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void gelesen_data();
    void gelesen();
    void ohneDateiGeltenDieVorgaben();
    void unlesbareDateiGibtVorgaben_data();
    void unlesbareDateiGibtVorgaben();

    void ersteSpeicherungLegtDieDateiAn();
    void gespeichertWirdKnappUndVollstaendig_data();
    void gespeichertWirdKnappUndVollstaendig();
    void gespeichertesKommtWieder();
    void speichernErsetztDieDateiGanz_data();
    void speichernErsetztDieDateiGanz();
    void speichernErsetztAufEinenSchlag();
    void schreibenEinesFeldesSpeichertNicht();
    void nachDemStartWirdNichtNeuGelesen();

    void volleFestplatteLaesstDieAlteDateiGanz_data();
    void volleFestplatteLaesstDieAlteDateiGanz();
    void gesperrterOrdnerLaesstDieAlteDateiGanz();
    void ohneOrdnerGeschiehtNichts();
    void ordnerAnStelleDerDateiBleibt();
    void pipeAnStelleDerDateiWirdErsetzt();
    void riesigeDateiKostetNichts();
    void ungeleseneDateiGehtNichtVerloren_data();
    void ungeleseneDateiGehtNichtVerloren();

private:
    [[nodiscard]] static QString pfad() { return datei(u"einstellungen.json"_s); }
    [[nodiscard]] static QStringList dateien()
    {
        return QDir(appOrdner())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QJsonObject gespeichert() const
    {
        return QJsonDocument::fromJson(ordner.inhalt(u"einstellungen.json"_s)).object();
    }

    Datenordner ordner;
};

void TestEinstellungen::init()
{
    ordner.leeren();
    QTest::failOnWarning(QRegularExpression(u"."_s));
}

void TestEinstellungen::gelesen_data()
{
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<bool>("autostart");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("updateGemeldet");

    const QString v = u"7.0.4"_s;
    const QString u = u"1.5|2026-03-13"_s;
    const QString leer;

    QTest::newRow("all three keys")
        << QByteArray(R"({"autostart":true,"version":"7.0.4","update_gemeldet":"1.5|2026-03-13"})")
        << true << v << u;
    QTest::newRow("autostart false")
        << QByteArray(R"({"autostart":false,"version":"7.0.4","update_gemeldet":"1.5|2026-03-13"})")
        << false << v << u;
    QTest::newRow("only the key version with a string")
        << QByteArray(R"({"version":"7.0.4"})") << false << v << leer;
    QTest::newRow("only the key autostart")
        << QByteArray(R"({"autostart":true})") << true << leer << leer;
    QTest::newRow("only the key update_gemeldet")
        << QByteArray(R"({"update_gemeldet":"1.5|2026-03-13"})") << false << leer << u;
    QTest::newRow("autostart given as a string that reads true: not a boolean, so false")
        << QByteArray(R"({"autostart":"true","version":"7.0.4"})") << false << v << leer;
    QTest::newRow("autostart 1 counts as true")
        << QByteArray(R"({"autostart":1})") << true << leer << leer;
    QTest::newRow("autostart 1.0 counts as true")
        << QByteArray(R"({"autostart":1.0})") << true << leer << leer;
    QTest::newRow("autostart 0 counts as false")
        << QByteArray(R"({"autostart":0})") << false << leer << leer;
    QTest::newRow("autostart 2 is neither, so false")
        << QByteArray(R"({"autostart":2})") << false << leer << leer;
    QTest::newRow("autostart -1 is neither, so false")
        << QByteArray(R"({"autostart":-1})") << false << leer << leer;
    QTest::newRow("autostart null") << QByteArray(R"({"autostart":null})") << false << leer << leer;
    QTest::newRow("autostart a list")
        << QByteArray(R"({"autostart":[true]})") << false << leer << leer;
    QTest::newRow("a mistyped version resets only itself")
        << QByteArray(R"({"autostart":true,"version":7,"update_gemeldet":"1.5|2026-03-13"})")
        << true << leer << u;
    QTest::newRow("a mistyped update_gemeldet resets only itself")
        << QByteArray(R"({"autostart":true,"version":"7.0.4","update_gemeldet":{"a":1}})") << true
        << v << leer;
    QTest::newRow("a mistyped autostart resets only itself")
        << QByteArray(R"({"autostart":{},"version":"7.0.4","update_gemeldet":"1.5|2026-03-13"})")
        << false << v << u;
    QTest::newRow("extra keys are passed over")
        << QByteArray(R"({"x":{"autostart":true},"version":"7.0.4","updateGemeldet":"nein"})")
        << false << v << leer;
    QTest::newRow("texts are taken as they are")
        << QByteArray(R"({"version":" 7 \u00fc "})") << false << u" 7 ü "_s << leer;

    const QList<std::pair<const char *, QByteArray>> keinObjekt{
        {"an empty file", ""},
        {"a malformed file", R"({"autostart":true,"version":"7.0.)"},
        {"a list", R"([{"autostart":true}])"},
        {"a string", R"("autostart")"},
        {"a number", "1"},
        {"true", "true"},
        {"null", "null"},
        {"zero bytes", QByteArray(32, '\0')},
        {"nested without end", QByteArray(100'000, '[')},
    };
    for (const auto &[name, inhalt] : keinObjekt) {
        QTest::newRow(name) << inhalt << false << leer << leer;
    }
}

void TestEinstellungen::gelesen()
{
    QFETCH(QByteArray, inhalt);
    ordner.schreiben(u"einstellungen.json"_s, inhalt);

    const Einstellungen e;

    QTEST(e.autostart, "autostart");
    QTEST(e.version, "version");
    QTEST(e.updateGemeldet, "updateGemeldet");
    QCOMPARE(ordner.inhalt(u"einstellungen.json"_s), inhalt);
}

void TestEinstellungen::ohneDateiGeltenDieVorgaben()
{
    const Einstellungen e;

    QVERIFY(!e.autostart);
    QVERIFY(e.version.isEmpty());
    QVERIFY(e.updateGemeldet.isEmpty());
    QVERIFY2(dateien().isEmpty(), "reading must not create the file");
}

void TestEinstellungen::unlesbareDateiGibtVorgaben_data()
{
    QTest::addColumn<QString>("art");

    QTest::newRow("a file without the right to read it") << u"rechte"_s;
    QTest::newRow("a folder") << u"ordner"_s;
    QTest::newRow("a pipe that nobody writes must not block") << u"pipe"_s;
}

void TestEinstellungen::unlesbareDateiGibtVorgaben()
{
    QFETCH(QString, art);
    const Rechte oben(QFileInfo(appOrdner()).path(), lesbarFuerAlle | QFile::WriteOwner);
    if (art == u"rechte") {
        ordner.schreiben(u"einstellungen.json"_s, R"({"autostart":true})");
        QFile::setPermissions(pfad(), {});
    } else if (art == u"ordner") {
        QVERIFY(QDir().mkdir(pfad()));
    } else {
        QCOMPARE(mkfifo(QFile::encodeName(pfad()).constData(), 0600), 0);
    }

    const OhneRechte niemand;
    const Einstellungen e;

    QVERIFY(!e.autostart);
}

void TestEinstellungen::ersteSpeicherungLegtDieDateiAn()
{
    const Einstellungen e;

    e.speichern();

    QCOMPARE(gespeichert(), (QJsonObject{{u"autostart"_s, false},
                                         {u"version"_s, QString()},
                                         {u"update_gemeldet"_s, QString()}}));
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::gespeichertWirdKnappUndVollstaendig_data()
{
    QTest::addColumn<bool>("autostart");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("updateGemeldet");

    QTest::newRow("everything set") << true << u"7.0.4"_s << u"1.5|2026-03-13"_s;
    QTest::newRow("everything empty") << false << QString() << QString();
    QTest::newRow("texts that JSON escapes") << true << u"7 \"ü\"\n\\"_s << u"\u2028/</x>"_s;
}

void TestEinstellungen::gespeichertWirdKnappUndVollstaendig()
{
    Einstellungen e;
    QFETCH(bool, autostart);
    QFETCH(QString, version);
    QFETCH(QString, updateGemeldet);
    e.autostart = autostart;
    e.version = version;
    e.updateGemeldet = updateGemeldet;

    e.speichern();

    const QJsonObject soll{{u"autostart"_s, autostart},
                           {u"version"_s, version},
                           {u"update_gemeldet"_s, updateGemeldet}};
    QCOMPARE(gespeichert(), soll);
    QCOMPARE(ordner.inhalt(u"einstellungen.json"_s),
             QJsonDocument(soll).toJson(QJsonDocument::Compact));
}

void TestEinstellungen::gespeichertesKommtWieder()
{
    {
        Einstellungen e;
        e.autostart = true;
        e.version = u"7.0.4"_s;
        e.updateGemeldet = u"1.5|2026-03-13"_s;
        e.speichern();
    }

    const Einstellungen wieder;

    QVERIFY(wieder.autostart);
    QCOMPARE(wieder.version, u"7.0.4"_s);
    QCOMPARE(wieder.updateGemeldet, u"1.5|2026-03-13"_s);
}

void TestEinstellungen::speichernErsetztDieDateiGanz_data()
{
    QTest::addColumn<QByteArray>("vorher");
    QTest::addColumn<QString>("version");

    QTest::newRow("extra keys are dropped by the next save")
        << QByteArray(R"({"x":1,"version":"7","farbe":"rot"})") << u"7"_s;
    QTest::newRow("a file with one key has all three afterwards")
        << QByteArray(R"({"version":"7"})") << u"7"_s;
    QTest::newRow("a malformed file is replaced whole")
        << QByteArray("{\"version\":") + QByteArray(5000, 'x') << QString();
    QTest::newRow("a list is replaced") << QByteArray("[1,2]") << QString();
}

void TestEinstellungen::speichernErsetztDieDateiGanz()
{
    QFETCH(QByteArray, vorher);
    ordner.schreiben(u"einstellungen.json"_s, vorher);
    const Einstellungen e;

    e.speichern();

    QFETCH(QString, version);
    QCOMPARE(gespeichert(), (QJsonObject{{u"autostart"_s, false},
                                         {u"version"_s, version},
                                         {u"update_gemeldet"_s, QString()}}));
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::speichernErsetztAufEinenSchlag()
{
    const QByteArray alt = R"({"version":"alt"})";
    ordner.schreiben(u"einstellungen.json"_s, alt);
    Einstellungen e;
    e.version = u"neu"_s;
    QFile leser(pfad());
    QVERIFY(leser.open(QIODevice::ReadOnly));

    e.speichern();

    // Who has the old file open keeps the whole old file: it was replaced, not rewritten.
    QCOMPARE(leser.readAll(), alt);
    QCOMPARE(gespeichert()[u"version"].toString(), u"neu"_s);
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::schreibenEinesFeldesSpeichertNicht()
{
    Einstellungen e;

    e.autostart = true;

    QVERIFY(dateien().isEmpty());
}

void TestEinstellungen::nachDemStartWirdNichtNeuGelesen()
{
    Einstellungen e;
    e.version = u"7"_s;
    ordner.schreiben(u"einstellungen.json"_s, R"({"autostart":true,"version":"8"})");

    e.speichern();

    QVERIFY(!e.autostart);
    QCOMPARE(gespeichert()[u"version"].toString(), u"7"_s);
    QCOMPARE(gespeichert()[u"autostart"], QJsonValue(false));
}

void TestEinstellungen::volleFestplatteLaesstDieAlteDateiGanz_data()
{
    QTest::addColumn<int>("platz");
    QTest::addColumn<int>("laenge");

    QTest::newRow("no byte left") << 0 << 10;
    QTest::newRow("a few bytes left") << 8 << 10;
    QTest::newRow("room for the first buffer, not for the rest") << 20'000 << 200'000;
}

void TestEinstellungen::volleFestplatteLaesstDieAlteDateiGanz()
{
    const QByteArray alt = R"({"autostart":true,"version":"alt","update_gemeldet":""})";
    ordner.schreiben(u"einstellungen.json"_s, alt);
    QFETCH(int, platz);
    QFETCH(int, laenge);
    Einstellungen e;
    e.version = QString(laenge, u'n');

    {
        const Grenze voll(RLIMIT_FSIZE, static_cast<rlim_t>(platz));
        e.speichern();
    }

    QCOMPARE(ordner.inhalt(u"einstellungen.json"_s), alt);
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::gesperrterOrdnerLaesstDieAlteDateiGanz()
{
    const QByteArray alt = R"({"version":"alt"})";
    ordner.schreiben(u"einstellungen.json"_s, alt);
    Einstellungen e;
    e.version = u"neu"_s;
    const Rechte oben(QFileInfo(appOrdner()).path(), lesbarFuerAlle | QFile::WriteOwner);
    const Rechte gesperrt(appOrdner(), lesbarFuerAlle);
    // The file itself could be written: only the folder is closed.
    QFile::setPermissions(pfad(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                      QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther);

    {
        const OhneRechte niemand;
        e.speichern();
    }

    QCOMPARE(ordner.inhalt(u"einstellungen.json"_s), alt);
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::ohneOrdnerGeschiehtNichts()
{
    QVERIFY(QDir(appOrdner()).removeRecursively());
    const Einstellungen e;

    e.speichern();

    QVERIFY(!QFileInfo::exists(appOrdner()));
}

void TestEinstellungen::ordnerAnStelleDerDateiBleibt()
{
    QVERIFY(QDir().mkdir(pfad()));
    const Einstellungen e;

    e.speichern();

    QVERIFY(QFileInfo(pfad()).isDir());
    QCOMPARE(dateien(), QStringList{u"einstellungen.json"_s});
}

void TestEinstellungen::pipeAnStelleDerDateiWirdErsetzt()
{
    QCOMPARE(mkfifo(QFile::encodeName(pfad()).constData(), 0600), 0);
    const Einstellungen e;

    e.speichern();

    QCOMPARE(gespeichert().size(), 3);
}

// Read whole, it took all memory there was.
void TestEinstellungen::riesigeDateiKostetNichts()
{
    QFile riese(pfad());
    QVERIFY(riese.open(QIODevice::WriteOnly) && riese.resize(qint64{20} * 1024 * 1024 * 1024));
    riese.close();

    const Einstellungen e;

    QVERIFY(!e.autostart);
}

void TestEinstellungen::ungeleseneDateiGehtNichtVerloren_data()
{
    QTest::addColumn<qsizetype>("groesse");
    QTest::addColumn<bool>("lesbar");
    QTest::addColumn<bool>("bleibt");

    QTest::newRow("a byte too many") << qsizetype{4 * 1024 * 1024 + 1} << true << true;
    QTest::newRow("as many as are read") << qsizetype{4 * 1024 * 1024} << true << false;
    QTest::newRow("without the right to read it") << qsizetype{100} << false << true;
}

void TestEinstellungen::ungeleseneDateiGehtNichtVerloren()
{
    QFETCH(qsizetype, groesse);
    QFETCH(bool, lesbar);
    QFETCH(bool, bleibt);
    const QByteArray alt = QByteArray(R"({"version":"alt"})").leftJustified(groesse, ' ');
    ordner.schreiben(u"einstellungen.json"_s, alt);
    const Rechte oben(QFileInfo(appOrdner()).path(), lesbarFuerAlle | QFile::WriteOwner);
    const Rechte offen(appOrdner(), QFile::Permissions(0x7777));
    QFile::setPermissions(pfad(), QFile::Permissions(lesbar ? 0x6666 : 0x2222));

    {
        const OhneRechte niemand;
        Einstellungen e;
        QCOMPARE(e.version, bleibt ? QString() : u"alt"_s);
        e.autostart = true;
        e.speichern();
        e.version = u"neu"_s;
        e.speichern();
    }

    QCOMPARE(gespeichert()[u"version"].toString(), u"neu"_s);
    // It keeps its rights, too.
    QFile::setPermissions(pfad() + u".ungelesen"_s, lesbarFuerAlle);
    QCOMPARE(ordner.inhalt(u"einstellungen.json.ungelesen"_s), bleibt ? alt : QByteArray());
}

KALVARO_TEST(TestEinstellungen)
#include "tst_einstellungen.moc"
