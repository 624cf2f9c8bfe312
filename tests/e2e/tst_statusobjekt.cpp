#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "e2e/leiste.h"
#include "e2e/statusprogramm.h"
#include "testlauf.h"

#include <QColor>
#include <QDir>
#include <QMap>
#include <QtEndian>

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The item in the tray of a display of our own. Each test is a process of its own that has the
// item, because Qt decides once per process what kind of tray there is.
class TestStatusobjekt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void hostVonAnfangAn();
    void hostErscheintSpaeter();
    void nurDerWaechterGenuegtNicht();
    void hostStartetNeu();
    void hostKommtNie();
    void symbolAlsMaskeInAllenGroessen();
    void symbolInDerFarbeDerLeiste_data();
    void symbolInDerFarbeDerLeiste();
    void symbolAusDemThema();
    void hinweisIstText();
    void menueUeberDenBus();
    void einKlickOeffnetDasMenue();
    void einUnterstrichIstText();
    void derKlickGibtSeineMarkeWeiter();
    void nachXEmbedKommtEinHost();
    void nachDemHostKommtXEmbed();
    void obEsEinenPlatzGibt();
    void xembedKommtUndGeht();
    void falscheAnsagenGeltenNicht_data();
    void falscheAnsagenGeltenNicht();
    void einXEmbedDasUnsinnSagt();
    void eineFarbeDieKeineIst_data();
    void eineFarbeDieKeineIst();
    void xembedWarSchonDa();

private:
    void programmStarten();
    void befehl(const QString &zeile);
    [[nodiscard]] QString lage();
    void andocken();

    std::optional<Anzeige> anzeige;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<Statushost> host;
    std::unique_ptr<Leiste> xembed;
    std::unique_ptr<Statusprogramm> programm;
    QProcessEnvironment umgebung;
};

void TestStatusobjekt::initTestCase()
{
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s);
    anzeige.emplace();
}

void TestStatusobjekt::init()
{
    bus = std::make_unique<Testbus>();
    umgebung = anzeige->umgebung(bus->adresse());
}

void TestStatusobjekt::cleanup()
{
    programm.reset();
    host.reset();
    xembed.reset();
    bus.reset();
}

void TestStatusobjekt::programmStarten()
{
    programm = std::make_unique<Statusprogramm>(umgebung);
    QVERIFY(programm->bereit());
}

void TestStatusobjekt::befehl(const QString &zeile)
{
    QVERIFY(programm->befehl(zeile));
}

void TestStatusobjekt::hostVonAnfangAn()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->eigenschaft(u"Status"_s).toString(), u"Active"_s);
    QCOMPARE(host->eigenschaft(u"Category"_s).toString(), u"ApplicationStatus"_s);
}

void TestStatusobjekt::hostErscheintSpaeter()
{
    programmStarten();
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(host->elemente().size(), 1);
}

void TestStatusobjekt::nurDerWaechterGenuegtNicht()
{
    host = std::make_unique<Statushost>(bus->verbindung(), false);
    programmStarten();
    befehl(u"hinweis noch nicht"_s);
    QVERIFY(host->elemente().isEmpty());
    host->hostAnmelden();
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->hinweis(), u"noch nicht"_s);
}

void TestStatusobjekt::hostStartetNeu()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    host.reset();
    befehl(u"hinweis inzwischen"_s);
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->hinweis(), u"inzwischen"_s);
}

void TestStatusobjekt::hostKommtNie()
{
    programmStarten();
    befehl(u"symbol icloud.slash"_s);
    befehl(u"hinweis niemand sieht es"_s);
    befehl(u"zeile niemand liest es"_s);
    QCOMPARE(programm->zeilen(), (QStringList{u"bereit"_s, u"getan"_s, u"getan"_s, u"getan"_s}));
    QCOMPARE(programm->ende(), 0);
}

void TestStatusobjekt::symbolAlsMaskeInAllenGroessen()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->eigenschaft(u"IconName"_s).toString(), QString());
    const QList<Pixmap> pixmaps = host->pixmaps();
    QList<int> groessen;
    for (const Pixmap &eine : pixmaps) {
        groessen.append(eine.breite);
        QCOMPARE(eine.hoehe, eine.breite);
        QCOMPARE(eine.bytes.size(), qsizetype(4) * eine.breite * eine.hoehe);
        int gedeckt = 0;
        for (qsizetype i = 0; i < eine.bytes.size(); i += 4) {
            if (static_cast<uchar>(eine.bytes[i]) > 0x80) { // in tones of black and white alone
                QCOMPARE(eine.bytes[i + 1], eine.bytes[i + 2]);
                QCOMPARE(eine.bytes[i + 1], eine.bytes[i + 3]);
                gedeckt += eine.bytes[i + 1] == '\0' ? 1 : 0;
            }
        }
        QVERIFY(gedeckt > 0);
    }
    std::sort(groessen.begin(), groessen.end());
    QCOMPARE(groessen, QList<int>({22, 24, 32, 44, 48, 64}));
    befehl(u"symbol icloud.slash"_s);
    QTRY_VERIFY(host->pixmaps().value(0).bytes != pixmaps.value(0).bytes);
}

void TestStatusobjekt::symbolInDerFarbeDerLeiste_data()
{
    QTest::addColumn<bool>("mitLeiste");
    QTest::addColumn<std::optional<QColor>>("schrift");
    QTest::addColumn<QString>("desktop");
    QTest::addColumn<QColor>("strich");
    QTest::addColumn<QColor>("rand");
    const std::optional<QColor> keine;
    const std::optional<QColor> eine = QColor(0xe0, 0x70, 0x12);
    const QColor schwarz(Qt::black);
    const QColor weiss(Qt::white);
    QTest::newRow("the panel's own") << true << eine << u"XFCE"_s << *eine << QColor();
    QTest::newRow("the panel's own, on a desktop whose panel is dark")
        << true << eine << u"GNOME"_s << *eine << QColor();
    QTest::newRow("a panel that does not say") << true << keine << u"XFCE"_s << schwarz << weiss;
    QTest::newRow("a desktop whose panel is dark")
        << false << keine << u"ubuntu:GNOME"_s << weiss << schwarz;
    QTest::newRow("any other") << false << keine << u"KDE"_s << schwarz << weiss;
}

void TestStatusobjekt::symbolInDerFarbeDerLeiste()
{
    QFETCH(const bool, mitLeiste);
    QFETCH(const std::optional<QColor>, schrift);
    QFETCH(const QString, desktop);
    QFETCH(const QColor, strich);
    QFETCH(const QColor, rand);
    std::optional<Leiste> leiste;
    if (mitLeiste) {
        leiste.emplace(anzeige->name(), schrift);
    }
    umgebung.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    const QList<Pixmap> pixmaps = host->pixmaps();
    QCOMPARE(pixmaps.size(), 6);
    QMap<QRgb, int> deckend; // how many pixels
    for (const Pixmap &eine : pixmaps) {
        for (qsizetype i = 0; i < eine.bytes.size(); i += 4) {
            const auto farbe = qFromBigEndian<quint32>(eine.bytes.constData() + i);
            deckend[farbe] += qAlpha(farbe) == 0xff ? 1 : 0;
        }
    }
    QVERIFY(deckend.value(strich.rgb()) > 100);
    if (rand.isValid()) {
        QVERIFY(deckend.value(rand.rgb()) > 100);
    } else {
        const int alle = std::accumulate(deckend.begin(), deckend.end(), 0);
        QCOMPARE(alle, deckend.value(strich.rgb()));
    }
}

void TestStatusobjekt::symbolAusDemThema()
{
    const QString name = u"de.kalvaro.kalvaro-icloud-symbolic"_s;
    const QString thema = umgebung.value(u"XDG_DATA_HOME"_s) + u"/icons/hicolor"_s;
    QVERIFY(QDir().mkpath(thema + u"/scalable/status"_s));
    QVERIFY(QFile::copy(u"/usr/share/icons/hicolor/index.theme"_s, thema + u"/index.theme"_s) ||
            QFile::exists(thema + u"/index.theme"_s));
    QFile::copy(QStringLiteral(SYMBOLE) + u"/icloud.svg"_s,
                thema + u"/scalable/status/"_s + name + u".svg"_s);
    // The program's own icon is no symbol, though names are matched up to a dash.
    QFile::copy(QStringLiteral(SYMBOLE) + u"/icloud.svg"_s,
                thema + u"/scalable/status/de.kalvaro.kalvaro.svg"_s);
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->eigenschaft(u"IconName"_s).toString(), name);
    QVERIFY(!host->pixmaps().isEmpty()); // for hosts that do not find it
    befehl(u"symbol icloud.slash"_s);
    QTRY_COMPARE(host->eigenschaft(u"IconName"_s).toString(), QString());
    QVERIFY(QDir(umgebung.value(u"XDG_DATA_HOME"_s) + u"/icons"_s).removeRecursively());
}

void TestStatusobjekt::hinweisIstText()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    befehl(u"hinweis kalvaro – <b>fett</b> &amp; mehr"_s);
    QTRY_COMPARE(host->hinweis(), u"kalvaro – <b>fett</b> &amp; mehr"_s);
    befehl(u"hinweis "_s + u"😀"_s.repeated(600));
    QTRY_COMPARE(host->hinweis(), u"😀"_s.repeated(250));
}

void TestStatusobjekt::menueUeberDenBus()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    host->menueOeffnen();
    QTRY_VERIFY(programm->zeilen().contains(u"oeffnet"_s));
    QTRY_COMPARE(host->menue().size(), 4);
    QCOMPARE(host->menue().at(0).angaben.value(u"label"_s).toString(), u"kopf"_s);
    QCOMPARE(host->menue().at(0).angaben.value(u"enabled"_s, true).toBool(), false);
    QCOMPARE(host->menue().at(1).angaben.value(u"type"_s).toString(), u"separator"_s);
    QTRY_COMPARE(host->menue().at(3).angaben.value(u"toggle-state"_s).toInt(), 1);
    host->menueOeffnen();
    QTRY_COMPARE(host->menue().at(3).angaben.value(u"toggle-state"_s).toInt(), 0);
    befehl(u"zeile jetzt anders"_s);
    QTRY_COMPARE(host->menue().at(0).angaben.value(u"label"_s).toString(), u"jetzt anders"_s);
    host->menueKlicken(host->menue().at(2).id);
    QTRY_VERIFY(programm->zeilen().contains(u"eins"_s));
}

void TestStatusobjekt::einKlickOeffnetDasMenue()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    host->klicken();
    QTRY_VERIFY(programm->zeilen().contains(u"oeffnet"_s));
}

// A version "1_4" lost its stroke and got one below a letter.
void TestStatusobjekt::einUnterstrichIstText()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    befehl(u"zeile Version 1_4__ && &mehr &"_s);
    QTRY_COMPARE(host->menue().at(0).angaben.value(u"label"_s).toString(),
                 u"Version 1__4____ & _mehr "_s);
}

void TestStatusobjekt::derKlickGibtSeineMarkeWeiter()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    QVERIFY(host->eigenschaft(u"ItemIsMenu"_s).toBool());
    const int eins = host->menue().at(2).id;
    host->markeGeben(u" marke"_s);
    host->menueKlicken(eins);
    QTRY_VERIFY(programm->zeilen().contains(u"eins marke"_s));
    host->menueKlicken(eins); // it is good for one click
    QTRY_VERIFY(programm->zeilen().contains(u"eins"_s));
    host->menueKlicken(host->menue().at(0).id); // a row that only tells
    host->menueKlicken(99);
    befehl(u"hinweis x"_s);
    QCOMPARE(programm->zeilen().filter(u"eins"_s).size(), 2);
}

// Waits until the item has asked the tray to take it.
void TestStatusobjekt::andocken()
{
    QVERIFY(bald([this] { return xembed->bitten() > 0; }, 10'000));
}

QString TestStatusobjekt::lage()
{
    befehl(u"lage"_s);
    return programm->zeilen()
        .filter(u"erreichbar"_s)
        .value(programm->zeilen().filter(u"erreichbar"_s).size() - 1);
}

// Qt decides once for all which kind of tray there is; its item then never came to the other.
void TestStatusobjekt::nachXEmbedKommtEinHost()
{
    xembed = std::make_unique<Leiste>(anzeige->name());
    programmStarten();
    andocken();
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(host->hinweis(), u"kalvaro"_s);
    QVERIFY(!host->pixmaps().isEmpty());
    host.reset();
    andocken();
}

void TestStatusobjekt::nachDemHostKommtXEmbed()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    host.reset();
    xembed = std::make_unique<Leiste>(anzeige->name());
    andocken();
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(host->elemente().size(), 1);
    QCOMPARE(xembed->bitten(), 0);
}

void TestStatusobjekt::obEsEinenPlatzGibt()
{
    programmStarten();
    QCOMPARE(lage(), u"unerreichbar"_s);
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(programm->zeilen().last(), u"erreichbar"_s);
    QCOMPARE(lage(), u"erreichbar"_s);
    host.reset();
    QTRY_COMPARE(programm->zeilen().last(), u"unerreichbar"_s);
    xembed = std::make_unique<Leiste>(anzeige->name());
    QCOMPARE(lage(), u"erreichbar"_s); // though the item comes later
    xembed.reset();
    QCOMPARE(lage(), u"unerreichbar"_s);
}

void TestStatusobjekt::xembedKommtUndGeht()
{
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    programmStarten();
    QCOMPARE(lage(), u"unerreichbar"_s);
    for (int i = 0; i < 3; ++i) {
        xembed = std::make_unique<Leiste>(anzeige->name());
        andocken();
        // Docking is asked for over X, the line comes after it over a pipe.
        QTRY_COMPARE(programm->zeilen().filter(u"erreichbar"_s).last(), u"erreichbar"_s);
        // A panel that changes its visual or moves the tray takes another window for it.
        xembed->fensterWechseln(i == 0);
        andocken();
        QCOMPARE(lage(), u"erreichbar"_s);
        xembed.reset();
        QTRY_COMPARE(programm->zeilen().filter(u"erreichbar"_s).last(), u"unerreichbar"_s);
    }
}

void TestStatusobjekt::falscheAnsagenGeltenNicht_data()
{
    QTest::addColumn<Leiste::Ansage>("ansage");
    QTest::newRow("none") << Leiste::Ansage::Keine;
    QTest::newRow("of another selection") << Leiste::Ansage::FalscheAuswahl;
    QTest::newRow("of another kind") << Leiste::Ansage::FalscheNachricht;
}

// The tray is there all the same, and is found as soon as it says so.
void TestStatusobjekt::falscheAnsagenGeltenNicht()
{
    QFETCH(const Leiste::Ansage, ansage);
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    programmStarten();
    xembed = std::make_unique<Leiste>(anzeige->name(), std::nullopt, ansage);
    befehl(u"hinweis eins"_s);
    befehl(u"hinweis zwei"_s);
    QCOMPARE(xembed->bitten(), 0);
    QVERIFY(programm->zeilen().filter(u"erreichbar"_s).isEmpty());
    xembed->ansagen(Leiste::Ansage::Richtig);
    andocken();
}

void TestStatusobjekt::einXEmbedDasUnsinnSagt()
{
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    xembed = std::make_unique<Leiste>(anzeige->name(), std::nullopt, Leiste::Ansage::Keine);
    xembed->setzen("_NET_SYSTEM_TRAY_VISUAL", 32, {4'000'000'000U}); // a VISUALID that nobody has
    xembed->setzen("_NET_SYSTEM_TRAY_COLORS", 6, {1, 2});            // fewer than a colour has
    programmStarten();
    andocken();
    befehl(u"symbol icloud.slash"_s);
    QCOMPARE(lage(), u"erreichbar"_s);
}

void TestStatusobjekt::eineFarbeDieKeineIst_data()
{
    QTest::addColumn<std::vector<uint32_t>>("werte");
    QTest::addColumn<int>("format");
    QTest::newRow("too few") << std::vector<uint32_t>{0xFFFF, 0xFFFF} << 32;
    QTest::newRow("bytes") << std::vector<uint32_t>(12, 0xFFFFFFFF) << 8;
}

// Then it is the one that the windows have.
void TestStatusobjekt::eineFarbeDieKeineIst()
{
    QFETCH(const std::vector<uint32_t>, werte);
    QFETCH(const int, format);
    host = std::make_unique<Statushost>(bus->verbindung());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    const QByteArray ohne = host->pixmaps().value(0).bytes;
    programm.reset();
    QTRY_VERIFY(host->elemente().isEmpty());
    constexpr uint32_t kardinal = 6;
    xembed = std::make_unique<Leiste>(anzeige->name());
    xembed->setzen("_NET_SYSTEM_TRAY_COLORS", kardinal, werte, static_cast<uint8_t>(format));
    xembed->ansagen(Leiste::Ansage::Richtig);
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    QVERIFY(!ohne.isEmpty());
    QCOMPARE(host->pixmaps().value(0).bytes, ohne);
}

// A bus is there, so Qt has not looked at the tray yet.
void TestStatusobjekt::xembedWarSchonDa()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    xembed = std::make_unique<Leiste>(anzeige->name());
    programmStarten();
    QTRY_COMPARE(host->elemente().size(), 1);
    host.reset();
    andocken();
    xembed.reset();
    QTRY_COMPARE(programm->zeilen().filter(u"erreichbar"_s).last(), u"unerreichbar"_s);
}

KALVARO_TEST(TestStatusobjekt)
#include "tst_statusobjekt.moc"
