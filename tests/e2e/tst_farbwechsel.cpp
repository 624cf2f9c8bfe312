#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "doubles/testportal.h"
#include "e2e/anzeige.h"
#include "e2e/xeinstellungen.h"
#include "testlauf.h"
#include "ui/erscheinung.h"

#include <QDir>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds

} // namespace

// The real program in sessions that are light or dark, and change.
class TestFarbwechsel final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void dunklesThema();
    void themaKommtSpaeter();
    void portalGehtVor();
    void haengendesPortalHaeltNichtsAuf();
    void bilderBleibenHell();
    void kdeWechseltSeineFarben();

private:
    void starten() { starten(umgebung()); }
    void starten(const QProcessEnvironment &worin);
    [[nodiscard]] bool zuSehen(const QColor &fensterfarbe) const;
    // Whether the window comes to show our own palette.
    [[nodiscard]] bool wird(bool dunkel) const
    {
        const QColor farbe = eigenePalette(dunkel).color(QPalette::Window);
        return bald([&] { return zuSehen(farbe); }, geduld);
    }
    [[nodiscard]] QProcessEnvironment umgebung() const;

    Datenordner daten;
    std::unique_ptr<Anzeige> anzeige;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<QProcess> kalvaro;
};

void TestFarbwechsel::initTestCase()
{
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"import"_s);
    if (!Testportal::vorhanden()) {
        QSKIP("needs python3-dbusmock");
    }
    // Nobody listens there.
    daten.schreiben(u"konto.json"_s, R"({"name":"Demo-Mac","geraet":"demo-mac",
        "schluessel":"demo-schluessel","server":["http://127.0.0.1:1"]})");
}

void TestFarbwechsel::init()
{
    anzeige = std::make_unique<Anzeige>();
    bus = std::make_unique<Testbus>();
}

void TestFarbwechsel::cleanup()
{
    if (kalvaro) {
        kalvaro->terminate();
        kalvaro->waitForFinished();
        kalvaro.reset();
    }
    bus.reset();
    anzeige.reset();
}

QProcessEnvironment TestFarbwechsel::umgebung() const
{
    QProcessEnvironment liste = anzeige->umgebung(bus->adresse());
    liste.insert(u"XDG_DATA_HOME"_s, qEnvironmentVariable("XDG_DATA_HOME"));
    liste.remove(u"GTK_THEME"_s);
    return liste;
}

void TestFarbwechsel::starten(const QProcessEnvironment &worin)
{
    kalvaro = std::make_unique<QProcess>();
    kalvaro->setProcessEnvironment(worin);
    kalvaro->setProcessChannelMode(QProcess::ForwardedChannels);
    anTestBinden(*kalvaro);
    kalvaro->start(QStringLiteral(KALVARO_PROGRAMM), QStringList());
    QVERIFY(kalvaro->waitForStarted(geduld));
}

bool TestFarbwechsel::zuSehen(const QColor &fensterfarbe) const
{
    constexpr int vieles = 20'000; // pixels, of more than 200,000 of the window
    const QRgb gesucht = fensterfarbe.rgb();
    const QImage bild = anzeige->bild();
    int anzahl = 0;
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < bild.width(); ++x) {
            anzahl += bild.pixel(x, y) == gesucht ? 1 : 0;
        }
    }
    return anzahl > vieles;
}

void TestFarbwechsel::dunklesThema()
{
    XEinstellungen thema(anzeige->name(), "Greybird-dark");
    starten();
    QVERIFY(wird(true));
    thema.themaSetzen("Greybird");
    QVERIFY(wird(false));
    thema.themaSetzen("Adwaita-dark");
    QVERIFY(wird(true));
}

void TestFarbwechsel::themaKommtSpaeter()
{
    starten();
    QVERIFY(wird(false));
    XEinstellungen thema(anzeige->name(), "Adwaita-dark");
    QVERIFY(wird(true));
    thema.themaSetzen("Adwaita");
    QVERIFY(wird(false));
}

void TestFarbwechsel::portalGehtVor()
{
    Testportal portal(*bus, u"dbus.UInt32(1)"_s);
    const XEinstellungen thema(anzeige->name(), "Adwaita");
    starten();
    QVERIFY(wird(true));
    portal.schemaMelden(2);
    QVERIFY(wird(false));
    portal.schemaMelden(1);
    QVERIFY(wird(true));
    portal.schemaMelden(0);
    QVERIFY(wird(false));
}

void TestFarbwechsel::haengendesPortalHaeltNichtsAuf()
{
    Testportal portal(*bus, u"dbus.UInt32(1)"_s);
    portal.anhalten();
    starten();
    QVERIFY(wird(false));
    portal.fortsetzen();
    QVERIFY(wird(true));
    portal.schemaMelden(2);
    QVERIFY(wird(false));
}

void TestFarbwechsel::bilderBleibenHell()
{
    const Testportal portal(*bus, u"dbus.UInt32(1)"_s);
    const QString pfad = bus->ordner() + u"/bild.png"_s;
    QProcess zeichner;
    zeichner.setProcessEnvironment(umgebung());
    anTestBinden(zeichner);
    zeichner.start(QStringLiteral(KALVARO_PROGRAMM), {u"--bild"_s, pfad});
    QVERIFY(zeichner.waitForFinished(geduld));
    const QImage bild(pfad);
    QCOMPARE(bild.pixelColor(2, 2), eigenePalette(false).color(QPalette::Window));
}

// The desktop's own palette is taken up while the program runs, also where the portal's wish has
// come first.
void TestFarbwechsel::kdeWechseltSeineFarben()
{
    const auto farbsatz = [](const QByteArray &flaeche, const QByteArray &schrift) {
        QByteArray alles("[General]\nColorScheme=Eigenes\n");
        for (const char *bereich : {"Window", "View", "Button", "Tooltip", "Selection"}) {
            alles += "[Colors:" + QByteArray(bereich) + "]\nBackgroundNormal=" + flaeche +
                     "\nForegroundNormal=" + schrift + "\nForegroundLink=" + schrift +
                     "\nForegroundVisited=" + schrift + '\n';
        }
        return alles;
    };
    QProcessEnvironment kde = umgebung();
    kde.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    kde.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    const QString datei = kde.value(u"XDG_CONFIG_HOME"_s) + u"/kdeglobals"_s;
    QVERIFY(QDir().mkpath(kde.value(u"XDG_CONFIG_HOME"_s)));
    dateiSchreiben(datei, farbsatz("250,240,230", "20,10,0"));
    Testportal portal(*bus, u"dbus.UInt32(2)"_s);
    starten(kde);
    QVERIFY(bald([this] { return zuSehen(QColor(250, 240, 230)); }, geduld));

    portal.schemaMelden(1);
    QVERIFY(wird(true)); // as long as the palette is the light one
    dateiSchreiben(datei, farbsatz("10,20,40", "240,240,250"));
    portal.melden(u"org.kde.kdeglobals.General"_s, u"ColorScheme"_s, u"Eigenes"_s);
    QVERIFY(bald([this] { return zuSehen(QColor(10, 20, 40)); }, geduld));
}

KALVARO_TEST(TestFarbwechsel)
#include "tst_farbwechsel.moc"
