#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/karte.h"
#include "ui/pille.h"

#include <QApplication>
#include <QLayout>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// The best contrast that any pixel has with the ground: that of the pen.
double tintenkontrast(const QImage &bild, const QColor &grund)
{
    double bester = 1;
    for (int x = 0; x < bild.width(); ++x) {
        for (int y = 0; y < bild.height(); ++y) {
            bester = std::max(bester, Farbe::kontrast(bild.pixelColor(x, y), grund));
        }
    }
    return bester;
}

} // namespace

class TestPille final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setPalette(eigenePalette(false)); }

    void neueIstVerborgen();
    void leererTextVerbirgt();
    void schriftUndRaender();
    void fuellungUndForm();
    void textBleibtLesbar_data();
    void textBleibtLesbar();
    void folgtDerErscheinung();
};

void TestPille::neueIstVerborgen()
{
    const Pille pille;
    QVERIFY(pille.isHidden());
    QVERIFY(pille.label()->text().isEmpty());
}

void TestPille::leererTextVerbirgt()
{
    Pille pille;
    pille.setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    QVERIFY(!pille.isHidden());
    QCOMPARE(pille.label()->text(), u"Aktiv"_s);
    QCOMPARE(pille.label()->farbe(), Farbe::gut(pille.palette()));
    QVERIFY(pille.fuellung() == Farbton(Farbe::gutWeich));
    pille.setzen({}, Farbe::gut, Farbe::gutWeich);
    QVERIFY(pille.isHidden());
    pille.setzen(u" "_s, Farbe::gut, Farbe::gutWeich);
    QVERIFY(!pille.isHidden());
}

void TestPille::schriftUndRaender()
{
    Pille pille;
    pille.setzen(u"Probebetrieb"_s, Farbe::warn, Farbe::warnWeich);
    pille.resize(pille.sizeHint());
    pille.layout()->activate();
    const QFont schrift = pille.label()->font();
    QCOMPARE(qRound(schrift.pointSizeF() * pille.logicalDpiY() / 72), 11);
    QCOMPARE(schrift.weight(), QFont::DemiBold);
    QCOMPARE(pille.label()->geometry(), pille.rect().adjusted(10, 4, -10, -4));
    QVERIFY(pille.label()->toolTip().isEmpty());
}

void TestPille::fuellungUndForm()
{
    Pille pille;
    pille.setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    pille.resize(60, 40);
    const QImage bild = pille.grab().toImage();
    const QColor grund = Farbe::fenster(pille.palette());
    const QColor voll = Farbe::ueber(Farbe::gutWeich({}), grund);
    const auto istVoll = [&](int x, int y) {
        return qAbs(bild.pixelColor(x, y).red() - voll.red()) <= 1;
    };
    // A corner of radius 11: its arc crosses the diagonal 3.2 from the corner.
    QCOMPARE(bild.pixelColor(0, 0), grund);
    QCOMPARE(bild.pixelColor(2, 1), grund);
    QVERIFY(istVoll(4, 4));
    QVERIFY(istVoll(11, 0));
    QVERIFY(!istVoll(5, 0));
    QVERIFY(istVoll(0, 20));
}

void TestPille::textBleibtLesbar_data()
{
    QTest::addColumn<bool>("dunkel");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestPille::textBleibtLesbar()
{
    QFETCH(bool, dunkel);
    const QPalette palette = eigenePalette(dunkel);
    QApplication::setPalette(palette);
    for (const Farbton karte : {Farbton(Farbe::durchsichtig), Farbton(Farbe::gutWeich),
                                Farbton(Farbe::warnWeich), Farbton(Farbe::kritWeich)}) {
        Karte unterlage;
        unterlage.setFuellung(karte);
        const QColor hinten = unterlage.grundfarbe();
        Pille pille(&unterlage);
        pille.setzen(u"HHHH"_s, Farbe::warn, Farbe::warnWeich);
        unterlage.resize(pille.sizeHint());
        pille.resize(pille.sizeHint());
        const QColor grund = Farbe::ueber(Farbe::warnWeich(palette), hinten);
        const QImage text = unterlage.grab(pille.label()->geometry()).toImage();
        QVERIFY(tintenkontrast(text, grund) >= 4.4);
    }
}

void TestPille::folgtDerErscheinung()
{
    Pille pille;
    pille.setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    pille.resize(pille.sizeHint());
    QApplication::setPalette(eigenePalette(true));
    QTRY_COMPARE(pille.palette().color(QPalette::Window), QColor(0x1e1e20));
    const QImage gewechselt = pille.grab().toImage();

    Pille neu;
    neu.setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    neu.resize(neu.sizeHint());
    QCOMPARE(gewechselt, neu.grab().toImage());
}

KALVARO_FENSTERTEST(TestPille)
#include "tst_pille.moc"
