// The real program and a computer that sleeps.

#include "app/zuhause.h"
#include "democloud.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <csignal>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 40'000; // milliseconds; the program itself lets 20 s pass after the wake

} // namespace

class TestAufwachen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        KALVARO_BRAUCHT_EIGENE_PROZESSE();
        KALVARO_BRAUCHT(u"dbus-daemon"_s);
    }

    // From the signal of logind on the system bus to the sync that the cloud is asked for.
    void nachDemAufwachenFolgtEinAbgleich()
    {
        const Zuhause zuhause;
        const auto protokolliert = [&](const QString &zeile) {
            return bald([&] { return zuhause.protokoll().contains(zeile); }, geduld);
        };
        Democloud cloud;
        QVERIFY(cloud.starten());
        zuhause.kontoSchreiben(cloud.adresse());
        Testbus systembus;
        QDBusConnection logind = systembus.verbindung();
        QVERIFY(logind.registerService(u"org.freedesktop.login1"_s));
        auto umgebung = zuhause.umgebung();
        umgebung.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, systembus.adresse());
        Kindprogramm kalvaro(QStringLiteral(KALVARO_PROGRAMM), {}, umgebung);
        // It listens before it opens its window, and that is what syncs.
        QVERIFY(protokolliert(u"Abgleich (vorstart) ..."_s));

        for (const bool beginnt : {true, false}) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                                     u"org.freedesktop.login1.Manager"_s,
                                                     u"PrepareForSleep"_s);
            signal.setArguments({beginnt});
            QVERIFY(logind.send(signal));
        }

        QVERIFY(protokolliert(u"Abgleich (aufgewacht) ..."_s));
        QVERIFY(kalvaro.beenden(SIGTERM) >= 0);
    }
};

KALVARO_TEST(TestAufwachen)
#include "tst_aufwachen.moc"
