#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "platform/linux/dbusmitteilungen.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Notifications on a server that is in use out there, with real clicks.
class TestDunst final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void einKlickOeffnetDasZiel();
    void einNeuGestarteterServerZeigtDieNaechste();

private:
    void serverStarten();
    [[nodiscard]] QRect fenster() const;
    void zeigen(const QString &inhalt);

    Datenordner daten;
    std::optional<Anzeige> anzeige;
    QTemporaryDir ablage;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<Kindprogramm> server;
    std::unique_ptr<DBusMitteilungen> mitteilungen;
    QStringList klicks;
};

void TestDunst::initTestCase()
{
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"dunst"_s, u"xdotool"_s, u"import"_s);
    anzeige.emplace();
    dateiSchreiben(ablage.filePath(u"dunstrc"_s),
                   "[global]\norigin = top-left\noffset = 20x20\nwidth = 300\nmonitor = 0\n"
                   "mouse_left_click = do_action, close_current\nmarkup = full\n"
                   "[urgency_normal]\nbackground = \"#0000ff\"\nforeground = \"#ffffff\"\n"
                   "frame_color = \"#0000ff\"\ntimeout = 0\n");
}

void TestDunst::init()
{
    daten.leeren();
    klicks.clear();
    bus = std::make_unique<Testbus>();
    mitteilungen = std::make_unique<DBusMitteilungen>(bus->verbindung());
    mitteilungen->beiKlick([this](const QString &ziel) { klicks.append(ziel); });
    serverStarten();
}

void TestDunst::cleanup()
{
    mitteilungen.reset();
    server.reset();
    bus.reset();
}

void TestDunst::serverStarten()
{
    server.reset();
    server = std::make_unique<Kindprogramm>(
        u"dunst"_s, QStringList({u"-conf"_s, ablage.filePath(u"dunstrc"_s)}),
        anzeige->umgebung(bus->adresse()));
    const QDBusConnection frage = bus->verbindung();
    QTRY_VERIFY_WITH_TIMEOUT(
        frage.interface()->isServiceRegistered(u"org.freedesktop.Notifications"_s), 20000);
}

// Where the notification shows: all that is blue.
QRect TestDunst::fenster() const
{
    const QImage bild = anzeige->bild();
    QRect wo;
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < bild.width(); ++x) {
            if (bild.pixel(x, y) == qRgb(0, 0, 255)) {
                wo |= QRect(x, y, 1, 1);
            }
        }
    }
    return wo;
}

void TestDunst::zeigen(const QString &inhalt)
{
    mitteilungen->mitteilen(u"Neue <b>Version</b>"_s, inhalt, u"https://x.example/"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    QVERIFY(bald([this] { return !fenster().isEmpty(); }));
}

void TestDunst::einKlickOeffnetDasZiel()
{
    zeigen(u"Hier <i>klicken</i> & laden"_s);
    anzeige->klicken(fenster().center(), 1);
    QTRY_COMPARE(klicks, QStringList(u"https://x.example/"_s));
    QVERIFY(bald([this] { return fenster().isEmpty(); }));
    QTRY_COMPARE(mitteilungen->offene(), 0);
    QVERIFY(daten.protokollzeilen().isEmpty());
}

void TestDunst::einNeuGestarteterServerZeigtDieNaechste()
{
    zeigen(u"vorher"_s);
    serverStarten();
    QTRY_COMPARE(mitteilungen->offene(), 0);
    zeigen(u"nachher"_s);
    anzeige->klicken(fenster().center(), 1);
    QTRY_COMPARE(klicks, QStringList(u"https://x.example/"_s));
}

KALVARO_TEST(TestDunst)
#include "tst_dunst.moc"
