// What the desktop offers, looked at without waking anybody.

#include "platform/linux/linuxschreibtisch.h"

#include "doubles/dateien.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "platform/linux/autostarteintrag.h"
#include "testlauf.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Dienst = Schreibtischauskunft::Mitteilungsdienst;
using Eintrag = Schreibtischauskunft::Anmeldeeintrag;
using Leiste = Schreibtischauskunft::Leiste;

// The questions block, and the services that answer live in this process: so they are asked from
// another thread, over a connection of its own.
template<typename Frage>
auto gefragt(const QDBusConnection &bus, const Frage &frage)
{
    std::optional<decltype(frage(std::declval<const LinuxSchreibtisch &>()))> antwort;
    const std::unique_ptr<QThread> frager(
        QThread::create([&] { antwort = frage(LinuxSchreibtisch(bus, {})); }));
    frager->start();
    if (!QTest::qWaitFor([&frager] { return frager->isFinished(); }, 20'000)) {
        qFatal("The desktop is asked for ever");
    }
    return *antwort;
}

Dienst dienst(const QDBusConnection &bus)
{
    return gefragt(bus, [](const LinuxSchreibtisch &s) { return s.mitteilungsdienst(); });
}

Leiste leiste(const QDBusConnection &bus)
{
    return gefragt(bus, [](const LinuxSchreibtisch &s) { return s.leiste(); });
}

const QByteArray eigener = "[Desktop Entry]\nType=Application\nName=kalvaro\nExec=";

} // namespace

class TestLinuxschreibtisch final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        KALVARO_BRAUCHT(u"dbus-daemon"_s);
        qunsetenv("DISPLAY");
    }

    void ohneBus()
    {
        const LinuxSchreibtisch s(QDBusConnection(u"keiner"_s), {});
        QVERIFY(!s.sitzungsbus());
        QCOMPARE(s.mitteilungsdienst(), Dienst());
        QCOMPARE(s.leiste(), Leiste::Keine);
    }

    void leererBus()
    {
        Testbus bus;
        const LinuxSchreibtisch s(bus.verbindung(), {});
        QVERIFY(s.sitzungsbus());
        QCOMPARE(s.mitteilungsdienst(), Dienst());
        QCOMPARE(s.leiste(), Leiste::Keine);
    }

    void haengenderBus()
    {
        Testbus bus;
        const LinuxSchreibtisch s(bus.verbindung(), {});
        bus.anhalten();
        QElapsedTimer zeit;
        zeit.start();
        QVERIFY(!s.sitzungsbus());
        QVERIFY2(zeit.elapsed() < 5000, qPrintable(QString::number(zeit.elapsed())));
        bus.fortsetzen();
    }

    void mitteilungsdienst()
    {
        Testbus bus;
        Mitteilungsserver server(bus.verbindung(), {});
        QCOMPARE(dienst(bus.verbindung()), (Dienst{Dienst::Zustand::Laeuft, u"Testdienst 2.7"_s}));
        QCOMPARE(server.fragen(), 0);
        QVERIFY(server.mitteilungen().isEmpty());
    }

    void stummerMitteilungsdienst()
    {
        Testbus bus;
        Mitteilungsserver server(bus.verbindung(), {});
        server.schweigen(true);
        QCOMPARE(dienst(bus.verbindung()), (Dienst{Dienst::Zustand::Stumm, {}}));
    }

    // It could be started, and is not.
    void mitteilungsdienstBeiBedarf()
    {
        const QTemporaryDir ordner;
        const QString spur = ordner.filePath(u"gestartet"_s);
        dateiSchreiben(ordner.filePath(u"dienst.service"_s),
                       "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/usr/bin/touch " +
                           spur.toUtf8() + "\n");
        dateiSchreiben(ordner.filePath(u"leiste.service"_s),
                       "[D-BUS Service]\nName=org.kde.StatusNotifierWatcher\nExec=/usr/bin/touch " +
                           spur.toUtf8() + "\n");
        Testbus bus(QProcessEnvironment::systemEnvironment(), ordner.path());
        const LinuxSchreibtisch s(bus.verbindung(), {});
        QCOMPARE(s.mitteilungsdienst(), (Dienst{Dienst::Zustand::BeiBedarf, {}}));
        QCOMPARE(s.leiste(), Leiste::Keine);
        QVERIFY(!QFile::exists(spur));
    }

    void leisteAufDemBus()
    {
        Testbus bus;
        Statushost host(bus.verbindung(), false);
        QCOMPARE(leiste(bus.verbindung()), Leiste::Keine);
        host.hostAnmelden();
        QCOMPARE(leiste(bus.verbindung()), Leiste::StatusNotifier);
        QCOMPARE(host.elemente(), QStringList());
    }

    void keinEintrag()
    {
        const QTemporaryDir ordner;
        const LinuxSchreibtisch s(QDBusConnection(u"keiner"_s), ordner.path());
        QCOMPARE(s.anmeldeeintrag(),
                 (Eintrag{ordner.filePath(u"de.kalvaro.kalvaro.desktop"_s), false, {}, {}, false}));
    }

    // What the program itself writes is sound, whatever it is called.
    void eigenerEintrag_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"kalvaro"_s;
        QTest::newRow("blanks and quotes") << u"mein \"kalvaro\" `5$\\"_s;
        QTest::newRow("per cent and equals") << u"50%=halb"_s;
        QTest::newRow("umlauts") << u"größer"_s;
    }
    void eigenerEintrag()
    {
        QFETCH(const QString, name);
        const QTemporaryDir ordner;
        const QString programm = ordner.filePath(name);
        dateiSchreiben(programm, "#!/bin/sh\n", true);
        XdgAnmeldestart(programm, ordner.path()).setzen(true);
        const LinuxSchreibtisch s(QDBusConnection(u"keiner"_s), ordner.path());
        QCOMPARE(
            s.anmeldeeintrag(),
            (Eintrag{ordner.filePath(u"de.kalvaro.kalvaro.desktop"_s), true, {}, programm, true}));
    }

    void eintrag_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::addColumn<QString>("abgeschaltet");
        QTest::addColumn<QString>("programm");
        QTest::addColumn<bool>("ausfuehrbar");
        const auto zeile = [](const char *name, const QByteArray &inhalt, const QString &programm,
                              bool ausfuehrbar, const QString &abgeschaltet = {}) {
            QTest::newRow(name) << inhalt << abgeschaltet << programm << ausfuehrbar;
        };
        zeile("a name on the path", eigener + "sh --hintergrund\n", u"sh"_s, true);
        zeile("a name that is nowhere", eigener + "gibtesnicht\n", u"gibtesnicht"_s, false);
        zeile("a program that is gone", eigener + "/gibt/es/nicht\n", u"/gibt/es/nicht"_s, false);
        zeile("a folder", eigener + "/usr/bin\n", u"/usr/bin"_s, false);
        zeile("no program", eigener + "\n", {}, false);
        zeile("no entry", "Exec=/bin/sh\n", {}, false);
        zeile("another group", "[Desktop Action x]\nExec=/bin/sh\n", {}, false);
        zeile("nothing", "", {}, false);
        zeile("hidden", eigener + "/bin/sh\nHidden=true\n", u"/bin/sh"_s, true, u"Hidden=true"_s);
        zeile("hidden, with blanks", eigener + "/bin/sh\nHidden = true\n", u"/bin/sh"_s, true,
              u"Hidden=true"_s);
        zeile("not hidden", eigener + "/bin/sh\nHidden=false\n", u"/bin/sh"_s, true);
        zeile("switched off by GNOME", eigener + "/bin/sh\nX-GNOME-Autostart-enabled=false\n",
              u"/bin/sh"_s, true, u"X-GNOME-Autostart-enabled=false"_s);
        zeile("a condition that fails", eigener + "/bin/sh\nTryExec=/gibt/es/nicht\n",
              u"/gibt/es/nicht"_s, false);
    }
    void eintrag()
    {
        QFETCH(const QByteArray, inhalt);
        QFETCH(const QString, abgeschaltet);
        QFETCH(const QString, programm);
        QFETCH(const bool, ausfuehrbar);
        const QTemporaryDir ordner;
        const QString datei = ordner.filePath(u"de.kalvaro.kalvaro.desktop"_s);
        dateiSchreiben(datei, inhalt);
        const LinuxSchreibtisch s(QDBusConnection(u"keiner"_s), ordner.path());
        QCOMPARE(s.anmeldeeintrag(), (Eintrag{datei, true, abgeschaltet, programm, ausfuehrbar}));
    }

    // Neither would ever end when it was read.
    void eintragDerKeineDateiIst()
    {
        const QTemporaryDir ordner;
        const QString datei = ordner.filePath(u"de.kalvaro.kalvaro.desktop"_s);
        QVERIFY(QFile::link(u"/dev/zero"_s, datei));
        const LinuxSchreibtisch s(QDBusConnection(u"keiner"_s), ordner.path());
        QCOMPARE(s.anmeldeeintrag(), (Eintrag{datei, true, {}, {}, false}));
    }

    void kommando_data()
    {
        QTest::addColumn<QByteArray>("exec");
        QTest::addColumn<QStringList>("erwartet");
        QTest::newRow("words") << QByteArray("a  b c ") << QStringList{u"a"_s, u"b"_s, u"c"_s};
        QTest::newRow("quoted") << QByteArray("\"a b\" c") << QStringList{u"a b"_s, u"c"_s};
        QTest::newRow("quoted, escaped")
            << QByteArray("\"a\\\\\"b\\\\\\\\c\\\\$\"") << QStringList{u"a\"b\\c$"_s};
        QTest::newRow("an empty argument") << QByteArray("a \"\"") << QStringList{u"a"_s, u""_s};
        QTest::newRow("field codes")
            << QByteArray("a %U 5%% %") << QStringList{u"a"_s, u"5%"_s, u"%"_s};
        QTest::newRow("a quote that does not end") << QByteArray("\"a b") << QStringList{u"a b"_s};
    }
    void kommando()
    {
        QFETCH(const QByteArray, exec);
        const QByteArray inhalt = "[Desktop Entry]\nExec=" + exec + "\n";
        QTEST(autostarteintragLesen(inhalt).kommando, "erwartet");
    }
};

KALVARO_TEST(TestLinuxschreibtisch)
#include "tst_linuxschreibtisch.moc"
