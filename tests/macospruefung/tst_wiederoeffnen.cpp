#include "attrappen.h"
#include "platform/macos/wiederoeffnen.h"
#include "testlauf.h"

using namespace kalvaro;

namespace {

// 'aevt' and 'rapp' of "Apple Event Manager".
constexpr unsigned int kern = 0x61657674;
constexpr unsigned int wiederoeffnen = 0x72617070;
constexpr unsigned int beenden = 0x71756974;

} // namespace

class TestWiederoeffnen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jedesMal()
    {
        int gerufen = 0;
        const auto halter = wiederoeffnenHoeren([&] { ++gerufen; });
        QVERIFY(attrappen::ereignis(kern, wiederoeffnen));
        QVERIFY(attrappen::ereignis(kern, wiederoeffnen));
        QCOMPARE(gerufen, 2);
    }

    void anderesBleibtDemSystem()
    {
        const auto halter = wiederoeffnenHoeren([] {});
        QVERIFY(!attrappen::ereignis(kern, beenden));
    }

    void bisDieAntwortGeht()
    {
        const auto zeuge = std::make_shared<int>();
        auto halter = wiederoeffnenHoeren([zeuge] {});
        QVERIFY(zeuge.use_count() > 1);
        halter.reset();
        QVERIFY(!attrappen::ereignis(kern, wiederoeffnen));
        QCOMPARE(zeuge.use_count(), 1L);
    }
};

KALVARO_TEST(TestWiederoeffnen)
#include "tst_wiederoeffnen.moc"
