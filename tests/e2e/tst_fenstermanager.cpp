// The real program's window and a window manager.

#include "app/zuhause.h"
#include "doubles/kindprogramm.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "e2e/leiste.h"
#include "testlauf.h"

#include <csignal>
#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds

} // namespace

class TestFenstermanager final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        KALVARO_BRAUCHT_EIGENE_PROZESSE();
        KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"openbox"_s, u"xdotool"_s, u"xprop"_s);
    }
    void init();
    void cleanup();

    void einZweiterStartHoltVonDerAnderenArbeitsflaeche_data();
    void einZweiterStartHoltVonDerAnderenArbeitsflaeche();
    void einZweiterStartRolltAus();
    void derHinweisOhneKontoLiegtVorn();
    void ohneLeisteLegtSchliessenNurAb();
    void mitLeisteVerschwindetEs();

private:
    void programmStarten();
    [[nodiscard]] int nocheinmal(const QString &startkennung = {}) const;
    [[nodiscard]] QString xdotool(const QStringList &argumente) const;
    [[nodiscard]] QString aktives() const;
    // Whether the active window has that title and is on the desktop that is shown.
    [[nodiscard]] bool vorn(const QString &titel) const;
    [[nodiscard]] bool protokolliert(const QString &teil, int mal) const;
    // The states of the only window, as the window manager sets them.
    [[nodiscard]] QString zustand() const;
    [[nodiscard]] bool dieFlaecheWechseln(int flaeche) const;

    std::unique_ptr<Zuhause> zuhause;
    std::unique_ptr<Anzeige> anzeige;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<Mitteilungsserver> mitteilungen;
    std::unique_ptr<Kindprogramm> manager;
    std::unique_ptr<Kindprogramm> kalvaro;
    QProcessEnvironment umgebung;
};

void TestFenstermanager::init()
{
    zuhause = std::make_unique<Zuhause>();
    anzeige = std::make_unique<Anzeige>();
    bus = std::make_unique<Testbus>();
    mitteilungen = std::make_unique<Mitteilungsserver>(bus->verbindung(), QStringList{u"body"_s});
    umgebung = zuhause->umgebung();
    const auto dort = anzeige->umgebung(bus->adresse());
    for (const QString &name :
         {u"DISPLAY"_s, u"QT_QPA_PLATFORM"_s, u"DBUS_SESSION_BUS_ADDRESS"_s}) {
        umgebung.insert(name, dort.value(name));
    }
    manager = std::make_unique<Kindprogramm>(
        u"openbox"_s, QStringList{u"--sm-disable"_s, u"--config-file"_s, u"/dev/null"_s}, dort);
    QVERIFY(bald([this] { return xdotool({u"get_num_desktops"_s}).toInt() > 0; }, geduld));
    anzeige->ausfuehren(u"xdotool"_s, {u"set_num_desktops"_s, u"2"_s});
    QVERIFY(bald([this] { return xdotool({u"get_num_desktops"_s}) == u"2"; }, geduld));
    QVERIFY(dieFlaecheWechseln(0));
}

void TestFenstermanager::cleanup()
{
    kalvaro.reset();
    manager.reset();
    mitteilungen.reset();
    bus.reset();
    anzeige.reset();
    zuhause.reset();
}

void TestFenstermanager::programmStarten()
{
    kalvaro =
        std::make_unique<Kindprogramm>(QStringLiteral(KALVARO_PROGRAMM), QStringList(), umgebung);
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
}

int TestFenstermanager::nocheinmal(const QString &startkennung) const
{
    auto seine = umgebung;
    if (!startkennung.isEmpty()) {
        seine.insert(u"DESKTOP_STARTUP_ID"_s, startkennung);
    }
    Kindprogramm zweiter(QStringLiteral(KALVARO_PROGRAMM), {}, seine);
    return zweiter.ende();
}

QString TestFenstermanager::xdotool(const QStringList &argumente) const
{
    return anzeige->ausgabe(u"xdotool"_s, argumente).trimmed();
}

QString TestFenstermanager::aktives() const
{
    return xdotool({u"getactivewindow"_s});
}

bool TestFenstermanager::vorn(const QString &titel) const
{
    const QString fenster = aktives();
    return !fenster.isEmpty() && xdotool({u"getwindowname"_s, fenster}) == titel &&
           xdotool({u"get_desktop_for_window"_s, fenster}) == xdotool({u"get_desktop"_s});
}

bool TestFenstermanager::dieFlaecheWechseln(int flaeche) const
{
    anzeige->ausfuehren(u"xdotool"_s, {u"set_desktop"_s, QString::number(flaeche)});
    return bald([&] { return xdotool({u"get_desktop"_s}).toInt() == flaeche; }, geduld);
}

bool TestFenstermanager::protokolliert(const QString &teil, int mal) const
{
    return bald([&] { return zuhause->protokoll().filter(teil).size() == mal; }, geduld);
}

QString TestFenstermanager::zustand() const
{
    const QString fenster = xdotool({u"search"_s, u"--name"_s, u"^kalvaro$"_s}).section(u'\n', -1);
    return anzeige->ausgabe(u"xprop"_s, {u"-id"_s, fenster, u"_NET_WM_STATE"_s});
}

void TestFenstermanager::einZweiterStartHoltVonDerAnderenArbeitsflaeche_data()
{
    QTest::addColumn<QString>("kennung");
    QTest::newRow("from a terminal") << QString();
    QTest::newRow("from a launcher") << u"starter-1-rechner-kalvaro-0_TIME1"_s;
}

// A window on another workspace only blinked in the task bar.
void TestFenstermanager::einZweiterStartHoltVonDerAnderenArbeitsflaeche()
{
    QFETCH(const QString, kennung);
    zuhause->kontoSchreiben(u"http://127.0.0.1:9"_s);
    programmStarten();
    QVERIFY(dieFlaecheWechseln(1));
    QVERIFY(!vorn(u"kalvaro"_s));
    QCOMPARE(nocheinmal(kennung), 0);
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
}

// Only its title bar came to the front, where the window manager leaves that to who asks (xfwm4).
void TestFenstermanager::einZweiterStartRolltAus()
{
    KALVARO_BRAUCHT(u"xfwm4"_s);
    const auto aufgerollt = [this] { return zustand().contains(u"_NET_WM_STATE_SHADED"_s); };
    manager = std::make_unique<Kindprogramm>(u"xfwm4"_s, QStringList{u"--replace"_s},
                                             anzeige->umgebung(bus->adresse()));
    const auto bereit = [this] { // an extension that openbox does not know
        return anzeige->ausgabe(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTED"_s})
            .contains(u"_GTK_FRAME_EXTENTS"_s);
    };
    QVERIFY(bald(bereit, geduld));
    zuhause->kontoSchreiben(u"http://127.0.0.1:9"_s);
    programmStarten();
    aufrollen(anzeige->name(), aktives().toUInt());
    QVERIFY(bald(aufgerollt, geduld));
    QCOMPARE(nocheinmal(), 0);
    QVERIFY(bald([&] { return !aufgerollt(); }, geduld));
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
}

void TestFenstermanager::derHinweisOhneKontoLiegtVorn()
{
    programmStarten();
    QVERIFY(anzeige->ausgabe(u"xprop"_s, {u"-id"_s, aktives(), u"_NET_WM_ICON"_s})
                .contains(u"_NET_WM_ICON(CARDINAL)"_s));
    QVERIFY(dieFlaecheWechseln(1));
    QCOMPARE(nocheinmal(), 0);
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
}

// It was gone, and nothing on such a desktop (GNOME) told where to.
void TestFenstermanager::ohneLeisteLegtSchliessenNurAb()
{
    zuhause->kontoSchreiben(u"http://127.0.0.1:9"_s);
    programmStarten();
    const QString fenster = aktives();
    QVERIFY(protokolliert(u"Abgleich (vorstart) ..."_s, 1));
    QVERIFY(protokolliert(u"  -> "_s, 1));

    schliessen(anzeige->name(), aktives().toUInt());
    QVERIFY(bald([this] { return zustand().contains(u"_NET_WM_STATE_HIDDEN"_s); }, geduld));
    QVERIFY(bald([this] { return mitteilungen->mitteilungen().size() == 1; }, geduld));
    QCOMPARE(mitteilungen->mitteilungen().first().titel, u"kalvaro läuft weiter"_s);

    QCOMPARE(nocheinmal(), 0);
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
    QVERIFY(protokolliert(u"Abgleich (vorstart) ..."_s, 2));

    // From the task bar, on the other workspace: as if it was opened.
    QVERIFY(protokolliert(u"  -> "_s, 2));
    anzeige->ausfuehren(u"xdotool"_s, {u"key"_s, u"ctrl+w"_s});
    QVERIFY(bald([this] { return zustand().contains(u"_NET_WM_STATE_HIDDEN"_s); }, geduld));
    anzeige->ausfuehren(u"xdotool"_s, {u"windowactivate"_s, fenster});
    QVERIFY(bald([this] { return vorn(u"kalvaro"_s); }, geduld));
    QVERIFY(protokolliert(u"Abgleich (vorstart) ..."_s, 3));
    QCOMPARE(mitteilungen->mitteilungen().size(), 1);

    QVERIFY(kalvaro->beenden(SIGTERM) >= 0);
    QCOMPARE(mitteilungen->mitteilungen().size(), 1);
}

// A bar that comes later takes the window in; one that goes gives it back.
void TestFenstermanager::mitLeisteVerschwindetEs()
{
    zuhause->kontoSchreiben(u"http://127.0.0.1:9"_s);
    programmStarten();
    std::optional<Statushost> leiste;
    leiste.emplace(bus->verbindung());
    QVERIFY(bald([&] { return leiste->elemente().size() == 1; }, geduld));
    schliessen(anzeige->name(), aktives().toUInt());
    QVERIFY(bald([this] { return !zustand().contains(u"_NET_WM_STATE("_s); }, geduld));
    QVERIFY(mitteilungen->mitteilungen().isEmpty());
    leiste.reset();
    QVERIFY(bald([this] { return zustand().contains(u"_NET_WM_STATE_HIDDEN"_s); }, geduld));
    QVERIFY(bald([this] { return mitteilungen->mitteilungen().size() == 1; }, geduld));
}

KALVARO_TEST(TestFenstermanager)
#include "tst_fenstermanager.moc"
