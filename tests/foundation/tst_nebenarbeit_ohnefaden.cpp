#include "doubles/einschraenkung.h"
#include "foundation/nebenarbeit.h"
#include "testlauf.h"

#include <QThread>

#include <system_error>
#include <thread>

using namespace kalvaro;

// Linux counts threads as processes, of which a user can be given fewer.
class TestNebenarbeitOhnefaden final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ohneFadenAufDemHauptfaden();
};

// As long as nobody else's threads have left a stack behind, none can be had.
void TestNebenarbeitOhnefaden::ohneFadenAufDemHauptfaden()
{
    QThread *wo = nullptr;
    bool gleich = true;
    QObject besitzer;
    {
        const OhneRechte ohne;
        const Grenze keineMehr(RLIMIT_NPROC, 0);
        bool geht = true;
        try {
            std::thread([] {}).join();
        } catch (const std::system_error &) {
            geht = false;
        }
        QVERIFY(!geht);
        new Nebenarbeit<int>(
            [&](const Abbruch &) {
                wo = QThread::currentThread();
                return 7;
            },
            &besitzer, [&](int wert) { gleich = wert == 7; });
        QVERIFY(wo == nullptr); // not before the call has returned
        gleich = false;
        QTRY_VERIFY(gleich);
    }
    QCOMPARE(wo, QThread::currentThread());
}

KALVARO_TEST(TestNebenarbeitOhnefaden)
#include "tst_nebenarbeit_ohnefaden.moc"
