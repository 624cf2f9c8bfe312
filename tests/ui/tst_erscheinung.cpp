#include "doubles/testuhr.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"
#include "ui/karte.h"
#include "ui/knoepfe.h"
#include "ui/pille.h"
#include "ui/rad.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/stil.h"
#include "ui/symbole.h"
#include "ui/tabellenzahl.h"

#include <QApplication>
#include <QMenuBar>
#include <QStyle>
#include <QStyleFactory>
#include <QVBoxLayout>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

Farbwunsch thema(bool dunkel)
{
    return {.thema = dunkel ? Helligkeit::Dunkel : Helligkeit::Hell};
}

// One of each view.
std::unique_ptr<QWidget> allesauf(Uhr &uhr)
{
    auto *const zeichen = new Zeichen(44);
    zeichen->setzen(u"checkmark.circle.fill"_s, Farbe::systemGruen, {});
    auto *const rad = new Rad(uhr);
    rad->setFixedSize(44, 44);
    auto *const pille = new Pille;
    pille->setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    auto *const gesperrt = new Startknopf(u"gesperrt"_s);
    gesperrt->setEnabled(false);
    auto *const haken = new Haken(u"eins\nzwei"_s);
    haken->setChecked(true);

    auto grund = std::make_unique<Grund>();
    auto *const reihe = new QVBoxLayout(grund.get());
    for (const Farbton fuellung : {Farbton(Farbe::gutWeich), Farbton(Farbe::durchsichtig)}) {
        auto *const karte = new Karte;
        karte->einsetzen(
            stapel({beschriftung(u"Titel"_s, 17, QFont::Bold, Farbe::gut),
                    beschriftung(u"Detail"_s, 12, QFont::Normal, Farbe::sekundaer, 300)},
                   Qt::Vertical));
        karte->setFuellung(fuellung);
        reihe->addWidget(karte);
    }
    for (QWidget *widget : std::initializer_list<QWidget *>{
             zeichen, rad, pille, gesperrt, haken, new Startknopf(u"Start"_s), new Haken(u"aus"_s),
             new Verweis(u"Verweis"_s), new Haarlinie(Qt::Horizontal),
             new Tabellenzahl(u"12.345"_s), new QPushButton(u"Knopf"_s)}) {
        reihe->addWidget(widget);
    }
    grund->resize(400, grund->sizeHint().height());
    return grund;
}

} // namespace

class TestErscheinung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(u"fusion"_s);
        QApplication::setPalette(QPalette());
        QApplication::setFont(grundschrift);
    }

    void ohneDesktopDieEigene_data();
    void ohneDesktopDieEigene();
    void paletteDesDesktopsBleibt();
    void wasDerDesktopWill_data();
    void wasDerDesktopWill();
    void wuenscheImLaufenden();
    void menuesUndAlarmeSindLesbar();
    void stilDesDesktopsBleibt();
    void gesperrtesIstBlasser();
    void linieUnterDerMenueleisteIstGanz();
    void wechselImLaufenden_data();
    void wechselImLaufenden();
    void schriftfaktor_data();
    void schriftfaktor();
    void systemschrift();

private:
    const QFont grundschrift = QApplication::font();
};

void TestErscheinung::ohneDesktopDieEigene_data()
{
    QTest::addColumn<bool>("dunkel");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestErscheinung::ohneDesktopDieEigene()
{
    QFETCH(bool, dunkel);
    erscheinungEinrichten(*qApp, thema(dunkel));
    QVERIFY(qobject_cast<Stil *>(QApplication::style()) != nullptr);
    QCOMPARE(QApplication::palette().color(QPalette::Window),
             eigenePalette(dunkel).color(QPalette::Window));
    QCOMPARE(Farbe::istDunkel(QApplication::palette()), dunkel);
}

void TestErscheinung::paletteDesDesktopsBleibt()
{
    QPalette fremd = QApplication::style()->standardPalette();
    fremd.setColor(QPalette::Window, QColor(1, 2, 3));
    QApplication::setPalette(fremd);
    erscheinungEinrichten(*qApp);
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(1, 2, 3));
}

void TestErscheinung::wasDerDesktopWill_data()
{
    using enum Helligkeit;
    QTest::addColumn<std::optional<bool>>("mitgebrachte"); // dark
    QTest::addColumn<Farbwunsch>("wunsch");
    QTest::addColumn<bool>("dunkel");
    QTest::addColumn<bool>("eigene");
    const std::optional<bool> keine;
    const std::optional helle(false);
    const std::optional dunkle(true);
    QTest::newRow("nothing at all") << keine << Farbwunsch{} << false << true;
    QTest::newRow("dark wanted") << keine << Farbwunsch{Dunkel, Offen} << true << true;
    QTest::newRow("light wanted in spite of a dark theme")
        << keine << Farbwunsch{Hell, Dunkel} << false << true;
    QTest::newRow("dark theme") << keine << Farbwunsch{Offen, Dunkel} << true << true;
    QTest::newRow("light theme") << keine << Farbwunsch{Offen, Hell} << false << true;
    QTest::newRow("a palette and no wish") << dunkle << Farbwunsch{} << true << false;
    QTest::newRow("a palette goes before a theme")
        << helle << Farbwunsch{Offen, Dunkel} << false << false;
    QTest::newRow("a palette as it is wanted")
        << dunkle << Farbwunsch{Dunkel, Offen} << true << false;
    QTest::newRow("a light palette where dark is wanted")
        << helle << Farbwunsch{Dunkel, Offen} << true << true;
    QTest::newRow("a dark palette where light is wanted")
        << dunkle << Farbwunsch{Hell, Offen} << false << true;
}

void TestErscheinung::wasDerDesktopWill()
{
    QFETCH(std::optional<bool>, mitgebrachte);
    QFETCH(Farbwunsch, wunsch);
    QFETCH(bool, dunkel);
    QFETCH(bool, eigene);
    if (mitgebrachte) {
        QPalette fremd = eigenePalette(*mitgebrachte);
        fremd.setColor(QPalette::Highlight, QColor(1, 2, 3));
        QApplication::setPalette(fremd);
    }
    erscheinungEinrichten(*qApp, wunsch);
    QCOMPARE(Farbe::istDunkel(QApplication::palette()), dunkel);
    QCOMPARE(Farbe::akzent(QApplication::palette()) != QColor(1, 2, 3), eigene);
}

void TestErscheinung::wuenscheImLaufenden()
{
    QPalette fremd = eigenePalette(false);
    fremd.setColor(QPalette::Highlight, QColor(1, 2, 3));
    QApplication::setPalette(fremd);
    Erscheinung erscheinung(*qApp);
    QCOMPARE(Farbe::akzent(QApplication::palette()), QColor(1, 2, 3));
    erscheinung.anpassen({.ausdruecklich = Helligkeit::Dunkel});
    QVERIFY(Farbe::istDunkel(QApplication::palette()));
    erscheinung.anpassen({});
    QCOMPARE(Farbe::akzent(QApplication::palette()), QColor(1, 2, 3));
    QVERIFY(!Farbe::istDunkel(QApplication::palette()));
}

// The style makes readable what a desktop's palette leaves unreadable, also while it runs.
void TestErscheinung::menuesUndAlarmeSindLesbar()
{
    erscheinungEinrichten(*qApp);
    QPalette palette = eigenePalette(true);
    palette.setColor(QPalette::PlaceholderText, Qt::black);
    palette.setColor(QPalette::ToolTipText, palette.color(QPalette::ToolTipBase));
    QApplication::style()->polish(palette);
    QVERIFY(Farbe::kontrast(palette.color(QPalette::PlaceholderText),
                            palette.color(QPalette::Base)) >= 4.5);
    QVERIFY(Farbe::kontrast(palette.color(QPalette::ToolTipText),
                            palette.color(QPalette::ToolTipBase)) >= 4.5);
}

void TestErscheinung::stilDesDesktopsBleibt()
{
    QVERIFY(QStyleFactory::keys().contains(u"Windows"_s));
    QApplication::setStyle(u"windows"_s);
    erscheinungEinrichten(*qApp);
    QCOMPARE(QApplication::style()->name(), u"windows"_s);
    QVERIFY(qobject_cast<Stil *>(QApplication::style()) == nullptr);
}

void TestErscheinung::gesperrtesIstBlasser()
{
    for (const bool dunkel : {false, true}) {
        const QPalette p = eigenePalette(dunkel);
        const QColor grund = p.color(QPalette::Base);
        QVERIFY(Farbe::kontrast(p.color(QPalette::Disabled, QPalette::ButtonText), grund) <
                Farbe::kontrast(p.color(QPalette::Active, QPalette::ButtonText), grund));
    }
}

// At a scale of two each title left a gap in it.
void TestErscheinung::linieUnterDerMenueleisteIstGanz()
{
    erscheinungEinrichten(*qApp);
    QMenuBar leiste;
    leiste.addMenu(u"kalvaro"_s);
    leiste.addMenu(u"Fenster"_s);
    leiste.resize(300, leiste.sizeHint().height());
    QImage bild(leiste.size() * 2, QImage::Format_RGB32);
    bild.setDevicePixelRatio(2);
    leiste.render(&bild);
    const int unten = bild.height() - 1;
    QVERIFY(bild.pixel(bild.width() / 2, unten - 1) != bild.pixel(bild.width() / 2, unten - 6));
    for (int y = unten - 4; y <= unten; ++y) {
        for (int x = 2; x < bild.width() - 2; ++x) {
            QVERIFY2(bild.pixel(x, y) == bild.pixel(bild.width() / 2 + 200, y),
                     qPrintable(u"%1, %2"_s.arg(x).arg(y)));
        }
    }
}

void TestErscheinung::wechselImLaufenden_data()
{
    ohneDesktopDieEigene_data();
}

// What was open while the appearance changed looks like what is built afterwards.
void TestErscheinung::wechselImLaufenden()
{
    QFETCH(bool, dunkel);
    Testuhr uhr;
    erscheinungEinrichten(*qApp, thema(!dunkel));
    const auto offen = allesauf(uhr);
    offen->show();
    const QImage vorher = offen->grab().toImage();

    QApplication::setPalette(eigenePalette(dunkel));
    const auto neu = allesauf(uhr);
    neu->show();
    QTRY_COMPARE(offen->grab().toImage(), neu->grab().toImage());
    QVERIFY(offen->grab().toImage() != vorher);
}

void TestErscheinung::schriftfaktor_data()
{
    QTest::addColumn<int>("pixel");
    QTest::addColumn<double>("faktor");
    QTest::newRow("small") << 10 << 1.0;
    QTest::newRow("as most have it") << 13 << 1.0;
    QTest::newRow("the largest usual one") << 15 << 1.0;
    QTest::newRow("30 % larger") << 17 << 17 / 13.0;
    QTest::newRow("twice as large") << 26 << 2.0;
}

void TestErscheinung::schriftfaktor()
{
    QFETCH(int, pixel);
    QFont schrift = grundschrift;
    schrift.setPixelSize(pixel);
    QApplication::setFont(schrift);
    QTEST(kalvaro::schriftfaktor(), "faktor");
}

void TestErscheinung::systemschrift()
{
    QFont gross = grundschrift;
    gross.setPixelSize(26);
    QCOMPARE(QFontInfo(kalvaro::systemschrift(20)).pixelSize(), 20);
    QCOMPARE(kalvaro::systemschrift(20, QFont::Bold).weight(), QFont::Bold);
    QApplication::setFont(gross);
    QCOMPARE(QFontInfo(kalvaro::systemschrift(20)).pixelSize(), 40);
}

KALVARO_FENSTERTEST(TestErscheinung)
#include "tst_erscheinung.moc"
