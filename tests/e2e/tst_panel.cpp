#include "doubles/testbus.h"
#include "e2e/statusprogramm.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>

#include <memory>
#include <utility>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The item in a panel that is in use out there, with its menu opened by real clicks.
class TestPanel final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void klicksOeffnenDasMenue_data();
    void klicksOeffnenDasMenue();
    void panelKommtSpaeterUndStartetNeu_data();
    void panelKommtSpaeterUndStartetNeu();

private:
    void panelStarten();
    void programmStarten();
    void befehl(const QString &zeile);
    [[nodiscard]] QImage bildMit(const QString &symbol);
    [[nodiscard]] QRect elementSuchen();
    [[nodiscard]] qsizetype geoeffnet() { return programm->zeilen().count(u"oeffnet"_s); }

    std::unique_ptr<Anzeige> anzeige;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<Kindprogramm> panel;
    std::unique_ptr<Statusprogramm> programm;
};

namespace {

constexpr int geduld = 60000; // milliseconds for a panel to come up

void wege()
{
    QTest::addColumn<bool>("mitBus");
    QTest::newRow("StatusNotifier") << true;
    QTest::newRow("XEmbed") << false;
}

// Where `a` and `nochmal` agree and `b` differs: what stands still otherwise, unlike a clock.
QRect unterschied(const QImage &a, const QImage &b, const QImage &nochmal)
{
    QRect wo;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) == nochmal.pixel(x, y) && a.pixel(x, y) != b.pixel(x, y)) {
                wo |= QRect(x, y, 1, 1);
            }
        }
    }
    return wo;
}

} // namespace

void TestPanel::initTestCase()
{
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"xfce4-panel"_s, u"xdotool"_s, u"import"_s);
}

void TestPanel::init()
{
    anzeige = std::make_unique<Anzeige>();
    auto umgebung = anzeige->umgebung(QString());
    umgebung.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
    bus = std::make_unique<Testbus>(umgebung, u"/usr/share/dbus-1/services"_s);
}

void TestPanel::cleanup()
{
    programm.reset();
    panel.reset();
    bus.reset();
    anzeige.reset();
}

// Until its tray is there for programs with and without a bus.
void TestPanel::panelStarten()
{
    auto umgebung = anzeige->umgebung(bus->adresse());
    umgebung.insert(u"XFCE_PANEL_MIGRATE_DEFAULT"_s, u"1"_s); // asks nothing at its first start
    panel = std::make_unique<Kindprogramm>(u"xfce4-panel"_s, QStringList(u"--disable-wm-check"_s),
                                           umgebung);
    const QDBusConnection frage = bus->verbindung();
    QTRY_VERIFY_WITH_TIMEOUT(
        frage.interface()->isServiceRegistered(u"org.kde.StatusNotifierWatcher"_s), geduld);
}

void TestPanel::programmStarten()
{
    QFETCH(bool, mitBus);
    programm = std::make_unique<Statusprogramm>(
        anzeige->umgebung(mitBus ? bus->adresse() : u"disabled:"_s));
    QVERIFY(programm->bereit());
}

void TestPanel::befehl(const QString &zeile)
{
    QVERIFY(programm->befehl(zeile));
}

QImage TestPanel::bildMit(const QString &symbol)
{
    befehl(u"symbol "_s + symbol);
    return anzeige->bild();
}

// Where the item is; empty while it is not there, or not yet drawn.
QRect TestPanel::elementSuchen()
{
    const QImage a = bildMit(u"exclamationmark.icloud.fill"_s);
    const QImage b = bildMit(u"icloud.slash"_s);
    const QRect wo = unterschied(a, b, bildMit(u"exclamationmark.icloud.fill"_s));
    // While the panel is coming up, other things appear and go.
    const bool passt = wo.width() >= 8 && wo.width() <= 64 && wo.height() >= 8 && wo.height() <= 64;
    return passt ? wo : QRect();
}

void TestPanel::klicksOeffnenDasMenue_data()
{
    wege();
}

void TestPanel::klicksOeffnenDasMenue()
{
    panelStarten();
    programmStarten();
    QRect wo;
    const auto steht = [&] { // where it was the time before, too: a panel that comes up moves it
        const QRect zuvor = std::exchange(wo, elementSuchen());
        return !wo.isEmpty() && wo == zuvor;
    };
    QVERIFY(bald(steht));

    const QImage zu = anzeige->bild();
    anzeige->klicken(wo.center(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(geoeffnet(), 1, geduld);
    QImage offen;
    QVERIFY(bald([&] { return (offen = anzeige->bild()) != zu; }));
    anzeige->ausfuehren(u"xdotool"_s, {u"key"_s, u"Escape"_s});
    QVERIFY(bald([&] { return anzeige->bild() != offen; }));
    anzeige->klicken(wo.center(), 3);
    QTRY_COMPARE_WITH_TIMEOUT(geoeffnet(), 2, geduld);
}

void TestPanel::panelKommtSpaeterUndStartetNeu_data()
{
    wege();
}

void TestPanel::panelKommtSpaeterUndStartetNeu()
{
    programmStarten();
    panelStarten();
    QVERIFY(bald([this] { return !elementSuchen().isEmpty(); }));
    panel->toeten();
    QVERIFY(bald([this] { return elementSuchen().isEmpty(); }));
    panelStarten();
    QVERIFY(bald([this] { return !elementSuchen().isEmpty(); }));
}

KALVARO_TEST(TestPanel)
#include "tst_panel.moc"
