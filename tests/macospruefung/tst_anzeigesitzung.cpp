#include "attrappen.h"
#include "platform/macos/anzeigesitzung.h"
#include "testlauf.h"

using namespace kalvaro;

class TestAnzeigesitzung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void daOderNicht()
    {
        const int vorher = attrappen::system().lebende;
        for (const bool da : {true, false, true}) {
            attrappen::system().sitzung = da;
            QCOMPARE(anzeigesitzungDa(), da);
        }
        QCOMPARE(attrappen::system().lebende, vorher);
    }
};

KALVARO_TEST(TestAnzeigesitzung)
#include "tst_anzeigesitzung.moc"
