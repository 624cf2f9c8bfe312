#include "doubles/stillstil.h"
#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/karte.h"

#include <QApplication>
#include <QLayout>
#include <QScreen>

#include <cmath>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr QRect platz(30, 30, 200, 100); // of the card on its ground

// A card that lies on a ground.
struct Muster
{
    Grund grund;
    Karte karte{&grund};

    Muster()
    {
        grund.resize(260, 160);
        karte.setGeometry(platz);
    }

    [[nodiscard]] QImage bild() { return grund.grab().toImage(); }
    [[nodiscard]] QColor mitte() { return bild().pixelColor(platz.center()); }
};

// The share of the pixel's area that lies within a circle around (mitte, mitte).
double imKreis(int x, int y, double mitte, double radius)
{
    constexpr int punkte = 16;
    int drin = 0;
    for (int i = 0; i < punkte * punkte; ++i) {
        const double dx = x + (i % punkte + 0.5) / punkte - mitte;
        const double dy = y + (double(i / punkte) + 0.5) / punkte - mitte;
        drin += dx * dx + dy * dy <= radius * radius ? 1 : 0;
    }
    return double(drin) / (punkte * punkte);
}

} // namespace

class TestKarte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(u"fusion"_s); }
    void init() { QApplication::setPalette(eigenePalette(false)); }
    void cleanup() { QApplication::setStyle(u"fusion"_s); }

    void radius();
    void schatten_data();
    void schatten();
    void schattenNurSichtbarerKarten();
    void fuellung_data();
    void fuellung();
    void ohneFuellung();
    void einsetzen_data();
    void einsetzen();
    void wechselLaeuftUndEndet();
    void wechselZurueckMittendrin();
    void wechselVerborgen();
    void wechselBeiWenigerBewegung();
    void erscheinungMittenImWechsel();
    void maltSichSelbst_data();
    void maltSichSelbst();
    void grundFolgtDerErscheinung();
    void haarlinie();
    void haarlinienSindGleichBreit_data();
    void haarlinienSindGleichBreit();
};

// Red card on white: the red share of each pixel at the corner tells its coverage.
void TestKarte::radius()
{
    QPalette palette = eigenePalette(false);
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::Base, Qt::red);
    Karte karte;
    karte.setPalette(palette);
    karte.setAutoFillBackground(true);
    karte.resize(80, 60);
    const QImage bild = karte.grab().toImage();
    for (int x = 0; x < 14; ++x) {
        for (int y = 0; y < 14; ++y) {
            const double deckung = 1 - bild.pixelColor(x, y).greenF();
            QVERIFY2(std::abs(deckung - imKreis(x, y, 14, 14)) < 0.12,
                     qPrintable(u"%1, %2"_s.arg(x).arg(y)));
        }
    }
    QCOMPARE(bild.pixelColor(14, 0), QColor(Qt::red));
    QCOMPARE(bild.pixelColor(0, 14), QColor(Qt::red));
}

void TestKarte::schatten_data()
{
    QTest::addColumn<QPoint>("ort");
    QTest::addColumn<double>("abstand"); // from the edge of the shadow, which falls one down
    const int x = platz.center().x();
    for (const int ring : {0, 1, 2, 4, 6}) {
        QTest::addRow("below %d", ring) << QPoint(x, platz.bottom() + 1 + ring) << ring + 0.5 - 1;
        QTest::addRow("above %d", ring) << QPoint(x, platz.top() - 1 - ring) << ring + 0.5 + 1;
        QTest::addRow("right %d", ring)
            << QPoint(platz.right() + 1 + ring, platz.center().y()) << ring + 0.5;
    }
    QTest::newRow("far away") << QPoint(2, 2) << 30.0;
}

// Black at 0.08, blurred by 3.
void TestKarte::schatten()
{
    QFETCH(QPoint, ort);
    QFETCH(double, abstand);
    QPalette palette = eigenePalette(false);
    palette.setColor(QPalette::Window, Qt::white);
    QApplication::setPalette(palette);
    Muster muster;
    const double deckung = 0.08 * 0.5 * std::erfc(abstand / (3 * std::sqrt(2.0)));
    const QColor farbe = muster.bild().pixelColor(ort);
    QVERIFY2(std::abs(farbe.red() - 255 * (1 - deckung)) < 1.2, qPrintable(farbe.name()));
    QCOMPARE(farbe.red(), farbe.green());
    QCOMPARE(farbe.red(), farbe.blue());
}

void TestKarte::schattenNurSichtbarerKarten()
{
    Muster muster;
    muster.karte.hide();
    const QPoint darunter(platz.center().x(), platz.bottom() + 1);
    QCOMPARE(muster.bild().pixelColor(darunter), Farbe::fenster(QApplication::palette()));
}

void TestKarte::fuellung_data()
{
    QTest::addColumn<bool>("dunkel");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestKarte::fuellung()
{
    QFETCH(bool, dunkel);
    const QPalette palette = eigenePalette(dunkel);
    QApplication::setPalette(palette);
    Muster muster;
    for (const Farbton ton :
         {Farbton(Farbe::gutWeich), Farbton(Farbe::warnWeich), Farbton(Farbe::kritWeich)}) {
        muster.karte.setFuellung(ton);
        QVERIFY(muster.karte.fuellung() == ton);
        const QColor erwartet = Farbe::ueber(ton(palette), Farbe::flaeche(palette));
        QCOMPARE(muster.karte.grundfarbe().rgb(), erwartet.rgb());
        QCOMPARE(muster.mitte().rgb(), erwartet.rgb());
    }
}

void TestKarte::ohneFuellung()
{
    Muster muster;
    QVERIFY(muster.karte.fuellung() == Farbton(Farbe::durchsichtig));
    QCOMPARE(muster.mitte(), Farbe::flaeche(QApplication::palette()));
}

void TestKarte::einsetzen_data()
{
    QTest::addColumn<QList<int>>("raender");
    QTest::addColumn<QRect>("erwartet");
    QTest::newRow("as usual") << QList<int>{} << QRect(18, 16, 164, 68);
    QTest::newRow("given") << QList<int>{5, 7} << QRect(5, 7, 190, 86);
}

void TestKarte::einsetzen()
{
    QFETCH(QList<int>, raender);
    Karte karte;
    auto *const inhalt = new QWidget;
    if (raender.isEmpty()) {
        karte.einsetzen(inhalt);
    } else {
        karte.einsetzen(inhalt, raender[0], raender[1]);
    }
    karte.resize(200, 100);
    karte.layout()->activate();
    QCOMPARE(inhalt->parentWidget(), &karte);
    QTEST(inhalt->geometry(), "erwartet");
}

void TestKarte::wechselLaeuftUndEndet()
{
    Muster muster;
    muster.grund.show();
    const QColor vorher = muster.mitte();
    muster.karte.setFuellung(Farbe::kritWeich);
    QCOMPARE(muster.mitte().rgb(), vorher.rgb()); // no jump
    QTRY_COMPARE(muster.mitte().rgb(), muster.karte.grundfarbe().rgb());
    QVERIFY(muster.mitte() != vorher);
}

void TestKarte::wechselZurueckMittendrin()
{
    Muster muster;
    muster.grund.show();
    const QColor vorher = muster.mitte();
    muster.karte.setFuellung(Farbe::kritWeich);
    QTRY_VERIFY(muster.mitte().rgb() != vorher.rgb());
    muster.karte.setFuellung(Farbe::durchsichtig);
    QTRY_COMPARE(muster.mitte().rgb(), vorher.rgb());
}

void TestKarte::wechselVerborgen()
{
    Muster muster;
    muster.karte.setFuellung(Farbe::kritWeich);
    QCOMPARE(muster.mitte().rgb(), muster.karte.grundfarbe().rgb());
}

void TestKarte::wechselBeiWenigerBewegung()
{
    QApplication::setStyle(new Stillstil);
    Muster muster;
    muster.grund.show();
    muster.karte.setFuellung(Farbe::kritWeich);
    QCOMPARE(muster.mitte().rgb(), muster.karte.grundfarbe().rgb());
}

// It once ended on the colour of the appearance in which it had begun.
void TestKarte::erscheinungMittenImWechsel()
{
    Muster muster;
    muster.grund.show();
    muster.karte.setFuellung(Farbe::kritWeich);
    QApplication::setPalette(eigenePalette(true));
    QTRY_COMPARE(muster.karte.palette().color(QPalette::Base), QColor(0x2a2a2d));
    QCOMPARE(muster.mitte().rgb(), muster.karte.grundfarbe().rgb());
}

void TestKarte::maltSichSelbst_data()
{
    QTest::addColumn<bool>("still");
    QTest::newRow("fading") << false;
    QTest::newRow("less motion") << true;
}

// What stands on the screen, without asking the card for a picture.
void TestKarte::maltSichSelbst()
{
    QFETCH(const bool, still);
    if (still) {
        QApplication::setStyle(new Stillstil);
    }
    Muster muster;
    const auto schirm = [&muster] {
        const QRect wo(muster.grund.mapToGlobal(QPoint()), muster.grund.size());
        return muster.grund.screen()
            ->grabWindow(0, wo.x(), wo.y(), wo.width(), wo.height())
            .toImage()
            .pixelColor(platz.center())
            .rgb();
    };
    muster.grund.show();
    QTRY_COMPARE(schirm(), muster.karte.grundfarbe().rgb());
    for (const Farbton ton : {Farbton(Farbe::kritWeich), Farbton(Farbe::durchsichtig)}) {
        const QRgb vorher = schirm();
        muster.karte.setFuellung(ton);
        QVERIFY(muster.karte.grundfarbe().rgb() != vorher);
        QTRY_COMPARE(schirm(), muster.karte.grundfarbe().rgb());
    }
    const QRgb hell = schirm();
    QApplication::setPalette(eigenePalette(true));
    QTRY_VERIFY(schirm() != hell);
    QCOMPARE(schirm(), muster.karte.grundfarbe().rgb());
}

void TestKarte::grundFolgtDerErscheinung()
{
    Muster muster;
    QCOMPARE(muster.bild().pixelColor(1, 1), QColor(0xf2f2f4));
    QApplication::setPalette(eigenePalette(true));
    QTRY_COMPARE(muster.bild().pixelColor(1, 1), QColor(0x1e1e20));
}

void TestKarte::haarlinie()
{
    Haarlinie waagrecht(Qt::Horizontal);
    Haarlinie senkrecht(Qt::Vertical);
    waagrecht.resize(50, 50);
    senkrecht.resize(50, 50);
    QCOMPARE(waagrecht.size(), QSize(50, 1));
    QCOMPARE(senkrecht.size(), QSize(1, 50));
    QCOMPARE(waagrecht.grab().toImage().pixelColor(25, 0), QColor(0xe6e6ea));
}

void TestKarte::haarlinienSindGleichBreit_data()
{
    QTest::addColumn<double>("massstab");
    QTest::addColumn<int>("pixel");
    QTest::newRow("1") << 1.0 << 1;
    QTest::newRow("1.25") << 1.25 << 1;
    QTest::newRow("1.5") << 1.5 << 1;
    QTest::newRow("1.75") << 1.75 << 1;
    QTest::newRow("2") << 2.0 << 2;
    QTest::newRow("2.5") << 2.5 << 2;
}

// In the screen's own pixels, wherever they lie. At 1.5 every second one was twice as wide.
void TestKarte::haarlinienSindGleichBreit()
{
    QFETCH(const double, massstab);
    QFETCH(const int, pixel);
    constexpr int stellen = 12;
    constexpr int abstand = 11; // between two lines
    constexpr int seite = stellen * abstand;
    for (const Qt::Orientation richtung : {Qt::Horizontal, Qt::Vertical}) {
        const bool waagrecht = richtung == Qt::Horizontal;
        QWidget unterlage;
        unterlage.resize(seite, seite);
        for (int i = 0; i < stellen; ++i) {
            auto *const linie = new Haarlinie(richtung, &unterlage);
            const QRect ort(i * abstand + 5, 0, 1, seite);
            linie->setGeometry(waagrecht ? ort.transposed().translated(-ort.x(), ort.x()) : ort);
        }
        const int ganz = qCeil(seite * massstab);
        QImage bild(ganz, ganz, QImage::Format_RGB32);
        bild.setDevicePixelRatio(massstab);
        unterlage.render(&bild);
        QList<int> breiten;
        bool davor = false;
        for (int i = 0; i < ganz; ++i) {
            const bool tinte = (waagrecht ? bild.pixelColor(ganz / 2, i)
                                          : bild.pixelColor(i, ganz / 2)) == QColor(0xe6e6ea);
            if (tinte && !davor) {
                breiten.append(0);
            }
            if (tinte) {
                ++breiten.last();
            }
            davor = tinte;
        }
        QCOMPARE(breiten, QList<int>(stellen, pixel));
    }
}

KALVARO_FENSTERTEST(TestKarte)
#include "tst_karte.moc"
