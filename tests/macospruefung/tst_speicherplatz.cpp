#include "attrappen.h"
#include "foundation/speicherplatz.h"
#include "testlauf.h"

#include <QDir>

using namespace kalvaro;

class TestSpeicherplatz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(attrappen::system().lebende, 0); }

    void wasDasSystemFreiMachteZaehltMit()
    {
        attrappen::system().frei = 5'000'000'000'001;
        QCOMPARE(freiAufMac(), std::optional(5'000'000'000'001.0));
        QCOMPARE(attrappen::system().ort, QDir::homePath());
    }

    void nichtsIstAuchEineAntwort()
    {
        attrappen::system().frei = 0;
        QCOMPARE(freiAufMac(), std::optional(0.0));
    }

    void ohneAntwort()
    {
        attrappen::system().frei.reset();
        QCOMPARE(freiAufMac(), std::nullopt);
    }
};

KALVARO_TEST(TestSpeicherplatz)
#include "tst_speicherplatz.moc"
