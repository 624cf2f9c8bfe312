#include "foundation/uhr.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

using namespace kalvaro;
using namespace std::chrono_literals;

// The adapter over the system's timers is the one place where a test has to let real time pass:
// milliseconds, in an event loop that the clock itself ends.
class TestUhr final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jetztIstDieOrtszeit();
    void nachRuftEinmal();
    void nachRuftNichtZuFrueh();
    void nachNullRuftErstAusDerEreignisschleife();
    void alleRuftImmerWieder();
    void fristenLaufenInDerReihenfolgeIhrerZeit();
    void werDenWeckrufZerstoertHoertNichts_data();
    void werDenWeckrufZerstoertHoertNichts();
    void derWeckrufDarfSichImRufSelbstZerstoeren_data();
    void derWeckrufDarfSichImRufSelbstZerstoeren();

private:
    // Runs the event loop until everything due within `dauer` is done.
    void vergehenLassen(Sekunden dauer)
    {
        QEventLoop schleife;
        const Weckruf ende = uhr.nach(dauer, [&] { schleife.quit(); });
        schleife.exec();
    }

    Systemuhr uhr;
};

void TestUhr::jetztIstDieOrtszeit()
{
    const QDateTime vorher = QDateTime::currentDateTime();

    const QDateTime jetzt = uhr.jetzt();

    QVERIFY(vorher <= jetzt && jetzt <= QDateTime::currentDateTime());
    QCOMPARE(jetzt.timeSpec(), Qt::LocalTime);
}

void TestUhr::nachRuftEinmal()
{
    int rufe = 0;
    const Weckruf wecker = uhr.nach(2ms, [&] { ++rufe; });
    QCOMPARE(rufe, 0);

    vergehenLassen(20ms);

    QCOMPARE(rufe, 1);
}

void TestUhr::nachRuftNichtZuFrueh()
{
    QElapsedTimer stoppuhr;
    stoppuhr.start();
    qint64 gewartet = 0;
    const Weckruf wecker = uhr.nach(Sekunden(0.05), [&] { gewartet = stoppuhr.elapsed(); });

    vergehenLassen(60ms);

    QVERIFY2(gewartet >= 49, qPrintable(QString::number(gewartet)));
}

void TestUhr::nachNullRuftErstAusDerEreignisschleife()
{
    int rufe = 0;
    const Weckruf wecker = uhr.nach(0s, [&] { ++rufe; });
    QCOMPARE(rufe, 0);

    vergehenLassen(1ms);

    QCOMPARE(rufe, 1);
}

void TestUhr::alleRuftImmerWieder()
{
    QElapsedTimer stoppuhr;
    stoppuhr.start();
    QEventLoop schleife;
    int rufe = 0;
    const Weckruf wecker = uhr.alle(10ms, [&] {
        if (++rufe == 3) {
            schleife.quit();
        }
    });
    QTimer::singleShot(10s, &schleife, [&] { schleife.exit(1); });

    QCOMPARE(schleife.exec(), 0);

    QCOMPARE(rufe, 3);
    QVERIFY2(stoppuhr.elapsed() >= 29, qPrintable(QString::number(stoppuhr.elapsed())));
}

void TestUhr::fristenLaufenInDerReihenfolgeIhrerZeit()
{
    QList<int> folge;
    const Weckruf spaet = uhr.nach(20ms, [&] { folge.append(20); });
    const Weckruf frueh = uhr.nach(5ms, [&] { folge.append(5); });
    const Weckruf mitte = uhr.nach(10ms, [&] { folge.append(10); });

    vergehenLassen(40ms);

    QCOMPARE(folge, (QList<int>{5, 10, 20}));
}

void TestUhr::werDenWeckrufZerstoertHoertNichts_data()
{
    QTest::addColumn<bool>("wiederholt");
    QTest::newRow("once") << false;
    QTest::newRow("repeatedly") << true;
}

void TestUhr::werDenWeckrufZerstoertHoertNichts()
{
    QFETCH(bool, wiederholt);
    int rufe = 0;
    const auto ruf = [&] { ++rufe; };
    Weckruf wecker = wiederholt ? uhr.alle(1ms, ruf) : uhr.nach(1ms, ruf);

    wecker.reset();
    vergehenLassen(20ms);

    QCOMPARE(rufe, 0);
}

void TestUhr::derWeckrufDarfSichImRufSelbstZerstoeren_data()
{
    werDenWeckrufZerstoertHoertNichts_data();
}

void TestUhr::derWeckrufDarfSichImRufSelbstZerstoeren()
{
    QFETCH(bool, wiederholt);
    int rufe = 0;
    Weckruf wecker;
    // What the call has captured must live until it returns.
    const auto ruf = [&, halten = std::make_shared<int>(7)] {
        wecker.reset();
        rufe += *halten;
    };
    wecker = wiederholt ? uhr.alle(1ms, ruf) : uhr.nach(1ms, ruf);

    vergehenLassen(20ms);

    QCOMPARE(rufe, 7);
    QVERIFY(!wecker);
}

KALVARO_TEST(TestUhr)
#include "tst_uhr.moc"
