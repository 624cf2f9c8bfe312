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

// Window and cards of these colours, the rest as in the appearance.
QPalette flaechen(const QColor &fenster, const QColor &karte, bool dunkel)
{
    QPalette palette = eigenePalette(dunkel);
    palette.setColor(QPalette::Window, fenster);
    palette.setColor(QPalette::Base, karte);
    return palette;
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
    void haarlinieIstZuSehen_data();
    void haarlinieIstZuSehen();
    void karteIstZuSehen_data();
    void karteIstZuSehen();
    void kartenrandIstEineHaarlinie_data() { haarlinienSindGleichBreit_data(); }
    void kartenrandIstEineHaarlinie();
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

void TestKarte::haarlinieIstZuSehen_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("ours, light") << eigenePalette(false);
    QTest::newRow("ours, dark") << eigenePalette(true);
    QTest::newRow("black") << flaechen(Qt::black, Qt::black, true);
    QPalette grau = flaechen(QColor(0xc0c0c0), Qt::white, false);
    grau.setColor(QPalette::Midlight, QColor(0xc0c0c0));
    QTest::newRow("that of the window, on cards") << grau;
    QPalette blass = flaechen(Qt::white, Qt::white, false);
    blass.setColor(QPalette::Midlight, Qt::white);
    blass.setColor(QPalette::WindowText, QColor(0xf4f4f4));
    QTest::newRow("a text that is none") << blass;
}

// In a card, filled or not, and in the window. Ours are as the palette has them.
void TestKarte::haarlinieIstZuSehen()
{
    QFETCH(const QPalette, palette);
    QApplication::setPalette(palette);
    Muster muster;
    Haarlinie inKarte(Qt::Horizontal, &muster.karte);
    Haarlinie imFenster(Qt::Horizontal, &muster.grund);
    inKarte.setGeometry(20, 50, 100, 1);
    imFenster.setGeometry(20, 4, 100, 1);
    for (const Farbton ton : {Farbton(Farbe::durchsichtig), Farbton(Farbe::warnWeich)}) {
        muster.karte.setFuellung(ton);
        for (Haarlinie *linie : {&inKarte, &imFenster}) {
            const QColor farbe = linie->grab().toImage().pixelColor(50, 0);
            const double erreicht = Farbe::kontrast(farbe, untergrund(*linie));
            QVERIFY2(erreicht >= 1.1, qPrintable(QString::number(erreicht)));
            const bool eigene = palette == eigenePalette(false) || palette == eigenePalette(true);
            if (eigene && ton == Farbton(Farbe::durchsichtig)) {
                QCOMPARE(farbe, palette.color(QPalette::Midlight));
            }
        }
    }
}

void TestKarte::karteIstZuSehen_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<bool>("rand");
    QTest::newRow("ours, light") << eigenePalette(false) << false;
    QTest::newRow("ours, dark") << eigenePalette(true) << false;
    QTest::newRow("black on black") << flaechen(Qt::black, Qt::black, true) << true;
    QTest::newRow("white on white") << flaechen(Qt::white, Qt::white, false) << true;
    QTest::newRow("nearly the same, light") << flaechen(QColor(0xfcfcfc), Qt::white, false) << true;
    QTest::newRow("nearly the same, dark")
        << flaechen(QColor(0x1e1e20), QColor(0x202022), true) << true;
    QTest::newRow("grey") << flaechen(Qt::gray, Qt::gray, false) << true;
    QTest::newRow("told apart") << flaechen(QColor(0xeff0f1), QColor(0xfcfcfc), false) << false;
}

// By its colour, else by an edge, which all cards have then, whatever lies over them.
void TestKarte::karteIstZuSehen()
{
    QFETCH(const QPalette, palette);
    QFETCH(const bool, rand);
    QApplication::setPalette(palette);
    Muster muster;
    for (const Farbton ton : {Farbton(Farbe::durchsichtig), Farbton(Farbe::gutWeich)}) {
        muster.karte.setFuellung(ton);
        const QImage bild = muster.bild();
        const QColor innen = bild.pixelColor(platz.center());
        QCOMPARE(innen.rgb(), muster.karte.grundfarbe().rgb());
        const int mitte = platz.center().y();
        QCOMPARE(bild.pixelColor(platz.left() + 1, mitte), innen);
        for (const int x : {platz.left(), platz.right()}) {
            const QColor kante = bild.pixelColor(x, mitte);
            if (!rand) {
                QCOMPARE(kante, innen);
                continue;
            }
            const double erreicht = Farbe::kontrast(kante, Farbe::fenster(palette));
            QVERIFY2(erreicht >= 3, qPrintable(QString::number(erreicht)));
        }
    }
}

void TestKarte::kartenrandIstEineHaarlinie()
{
    QFETCH(const double, massstab);
    QFETCH(const int, pixel);
    QApplication::setPalette(flaechen(Qt::black, Qt::black, true));
    Muster muster;
    QImage bild(muster.grund.size() * massstab, QImage::Format_RGB32);
    bild.setDevicePixelRatio(massstab);
    muster.grund.render(&bild);
    const int y = qRound(platz.center().y() * massstab);
    const int x = qRound(platz.center().x() * massstab);
    QList<QColor> waagrecht;
    QList<QColor> senkrecht;
    for (int i = 0; i < bild.width(); ++i) {
        waagrecht.append(bild.pixelColor(i, y));
    }
    for (int i = 0; i < bild.height(); ++i) {
        senkrecht.append(bild.pixelColor(x, i));
    }
    for (QList<QColor> *reihe : {&waagrecht, &senkrecht}) {
        reihe->removeIf([](const QColor &farbe) { return farbe.lightness() < 5; }); // black
        QCOMPARE(reihe->size(), 2 * pixel);
        for (const QColor &farbe : std::as_const(*reihe)) {
            QVERIFY(Farbe::kontrast(farbe, Qt::black) > 2.9); // but for rounding
        }
    }
}

KALVARO_FENSTERTEST(TestKarte)
#include "tst_karte.moc"
