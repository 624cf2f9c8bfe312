#include "doubles/testuhr.h"
#include "mainwindow/countdown.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/knoepfe.h"

#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QString zeile(int sekunden)
{
    return u"rekordbox startet in %1 s  ·"_s.arg(sekunden);
}

} // namespace

class TestCountdown final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        uhr = std::make_unique<Testuhr>();
        countdown = std::make_unique<Countdown>(*uhr);
        label = countdown->findChild<Beschriftung *>(u"lblCountdown"_s);
        link = countdown->findChild<Verweis *>(u"knCountdown"_s);
        ende = std::make_unique<QSignalSpy>(countdown.get(), &Countdown::abgelaufen);
    }
    void cleanup() { countdown.reset(); }

    void ruht();
    void zaehltVonFuenf();
    void abbrechen_data();
    void abbrechen();
    void stoppOhneLauf();
    void neuerErsetztDenAlten();
    void ruhtSchonBeimEnde();
    void ansageNurAmAnfang();
    void endetMitDemWidget();

private:
    std::unique_ptr<Testuhr> uhr;
    std::unique_ptr<Countdown> countdown;
    Beschriftung *label = nullptr;
    Verweis *link = nullptr;
    std::unique_ptr<QSignalSpy> ende;
};

void TestCountdown::ruht()
{
    QVERIFY(countdown->isHidden());
    QVERIFY(link->isHidden());
    QVERIFY(label->text().isEmpty());
    QVERIFY(!countdown->countdownArt());
    QCOMPARE(uhr->offen(), 0);
}

void TestCountdown::zaehltVonFuenf()
{
    countdown->start(u"start"_s, 5);
    QVERIFY(!countdown->isHidden());
    QVERIFY(!link->isHidden());
    QCOMPARE(link->text(), u"Abbrechen"_s);
    QCOMPARE(countdown->countdownArt(), u"start"_s);
    for (const int sekunden : {5, 4, 3, 2, 1}) {
        QCOMPARE(label->text(), zeile(sekunden));
        QCOMPARE(ende->size(), 0);
        uhr->vor(Sekunden(0.999));
        QCOMPARE(label->text(), zeile(sekunden));
        uhr->vor(Sekunden(0.001));
    }
    QCOMPARE(ende->size(), 1);
    QCOMPARE(ende->first().first().toString(), u"start"_s);
    ruht();
    uhr->vor(Sekunden(10));
    QCOMPARE(ende->size(), 1);
}

void TestCountdown::abbrechen_data()
{
    QTest::addColumn<int>("vergangen");
    for (int sekunden = 0; sekunden < 5; ++sekunden) {
        QTest::addRow("after %d seconds", sekunden) << sekunden;
    }
}

void TestCountdown::abbrechen()
{
    QFETCH(int, vergangen);
    countdown->start(u"start"_s, 5);
    uhr->vor(Sekunden(vergangen));
    QTest::mouseClick(link, Qt::LeftButton);
    ruht();
    uhr->vor(Sekunden(10));
    QCOMPARE(ende->size(), 0);
}

void TestCountdown::stoppOhneLauf()
{
    countdown->stopp();
    countdown->stopp();
    ruht();
}

void TestCountdown::neuerErsetztDenAlten()
{
    countdown->start(u"alt"_s, 5);
    uhr->vor(Sekunden(3));
    countdown->start(u"start"_s, 5);
    QCOMPARE(label->text(), zeile(5));
    QCOMPARE(uhr->offen(), 1);
    uhr->vor(Sekunden(4));
    QCOMPARE(label->text(), zeile(1));
    uhr->vor(Sekunden(1));
    QCOMPARE(ende->size(), 1);
    QCOMPARE(ende->first().first().toString(), u"start"_s);
}

void TestCountdown::ruhtSchonBeimEnde()
{
    bool ruhte = false;
    connect(countdown.get(), &Countdown::abgelaufen, this,
            [&] { ruhte = !countdown->countdownArt() && countdown->isHidden(); });
    countdown->start(u"start"_s, 1);
    uhr->vor(Sekunden(1));
    QVERIFY(ruhte);
}

void TestCountdown::ansageNurAmAnfang()
{
    countdown->start(u"start"_s, 5);
    uhr->vor(Sekunden(2));
    QCOMPARE(label->text(), zeile(3));
    QCOMPARE(label->accessibleName(), zeile(5));
    countdown->stopp();
    countdown->start(u"start"_s, 4);
    QCOMPARE(label->accessibleName(), zeile(4));
}

void TestCountdown::endetMitDemWidget()
{
    countdown->start(u"start"_s, 5);
    countdown.reset();
    QCOMPARE(uhr->offen(), 0);
}

KALVARO_FENSTERTEST(TestCountdown)
#include "tst_countdown.moc"
