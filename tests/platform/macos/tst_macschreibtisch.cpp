#include "platform/macos/macschreibtisch.h"
#include "testlauf.h"

#include <QTemporaryDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Dienst = Schreibtischauskunft::Mitteilungsdienst;
using Leiste = Schreibtischauskunft::Leiste;

// What there is comes with the session. The start at login is in the contract.
class TestMacschreibtisch final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mitSitzung()
    {
        const MacSchreibtisch s([] { return true; }, heim.path());
        QVERIFY(s.sitzungsbus());
        QCOMPARE(s.mitteilungsdienst(),
                 (Dienst{Dienst::Zustand::Laeuft, u"Mitteilungszentrale"_s}));
        QCOMPARE(s.leiste(), Leiste::StatusNotifier);
    }

    void ohneSitzung()
    {
        const MacSchreibtisch s([] { return false; }, heim.path());
        QVERIFY(!s.sitzungsbus());
        QCOMPARE(s.mitteilungsdienst(), Dienst());
        QCOMPARE(s.leiste(), Leiste::Keine);
    }

    // Somebody may log in meanwhile.
    void fragtJedesMal()
    {
        bool da = false;
        const MacSchreibtisch s([&da] { return da; }, heim.path());
        QVERIFY(!s.sitzungsbus());
        da = true;
        QVERIFY(s.sitzungsbus());
    }

private:
    const QTemporaryDir heim;
};

KALVARO_TEST(TestMacschreibtisch)
#include "tst_macschreibtisch.moc"
