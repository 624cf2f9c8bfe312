#include "doubles/stillstil.h"
#include "doubles/testuhr.h"
#include "testlauf.h"
#include "ui/rad.h"

#include <QApplication>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestRad final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QApplication::setStyle(u"fusion"_s); }

    void stehtAmAnfang();
    void drehtNurSichtbar();
    void anhaltenWaehrendVerborgen();
    void dreht();
    void wenigerBewegung();
    void endetMitDemWidget();

private:
    Testuhr uhr;
};

void TestRad::stehtAmAnfang()
{
    Rad rad(uhr);
    rad.show();
    QCOMPARE(uhr.offen(), 0);
}

void TestRad::drehtNurSichtbar()
{
    Rad rad(uhr);
    rad.drehen();
    QCOMPARE(uhr.offen(), 0);
    rad.show();
    QCOMPARE(uhr.offen(), 1);
    rad.drehen(); // no second timer
    QCOMPARE(uhr.offen(), 1);
    rad.hide();
    QCOMPARE(uhr.offen(), 0);
    rad.show(); // goes on by itself
    QCOMPARE(uhr.offen(), 1);
    rad.anhalten();
    QCOMPARE(uhr.offen(), 0);
}

void TestRad::anhaltenWaehrendVerborgen()
{
    Rad rad(uhr);
    rad.show();
    rad.drehen();
    rad.hide();
    rad.anhalten();
    rad.show();
    QCOMPARE(uhr.offen(), 0);
}

void TestRad::dreht()
{
    Rad rad(uhr);
    rad.setFixedSize(44, 44);
    rad.show();
    rad.drehen();
    const QImage anfang = rad.grab().toImage();
    uhr.vor(Sekunden(0.25));
    QVERIFY(rad.grab().toImage() != anfang);
    // Once around in 30 pictures, within 5 % of a second.
    uhr.vor(Sekunden(1.02 - 0.25));
    QCOMPARE(rad.grab().toImage(), anfang);
}

void TestRad::wenigerBewegung()
{
    QApplication::setStyle(new Stillstil);
    Rad rad(uhr);
    rad.setFixedSize(44, 44);
    rad.show();
    rad.drehen();
    QCOMPARE(uhr.offen(), 0);
    const QImage anfang = rad.grab().toImage();
    uhr.vor(Sekunden(0.5));
    QCOMPARE(rad.grab().toImage(), anfang);
}

void TestRad::endetMitDemWidget()
{
    {
        Rad rad(uhr);
        rad.show();
        rad.drehen();
    }
    QCOMPARE(uhr.offen(), 0);
}

KALVARO_FENSTERTEST(TestRad)
#include "tst_rad.moc"
