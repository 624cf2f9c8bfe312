#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/farbe.h"
#include "ui/knoepfe.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QSignalSpy>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

enum class Art { Link, Start, Kasten };

std::unique_ptr<QAbstractButton> knopf(Art art, const QString &titel)
{
    switch (art) {
    case Art::Link:
        return std::make_unique<Verweis>(titel);
    case Art::Start:
        return std::make_unique<Startknopf>(titel);
    case Art::Kasten:
        return std::make_unique<Haken>(titel);
    }
    return {};
}

QString nameVon(QWidget &widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

void arten()
{
    QTest::addColumn<int>("art");
    QTest::newRow("link") << int(Art::Link);
    QTest::newRow("start button") << int(Art::Start);
    QTest::newRow("check box") << int(Art::Kasten);
}

} // namespace

class TestKnoepfe final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(u"fusion"_s);
        QApplication::setPalette(eigenePalette(false));
    }

    void verweisRuftSeineAktion();
    void verweisMitTasten();
    void verweisBeschaeftigt();
    void startknopfWirkungslos();
    void verweisOhneZiel();
    void zielIstWeg();
    void verweisAussehen();
    void undZeichen_data() { arten(); }
    void undZeichen();
    void fokusNurMitTasten_data() { arten(); }
    void fokusNurMitTasten();
    void fokusKommtMitDemFensterWieder();
    void startknopfMasse();
    void startknopfFarben();
    void startknopfKuerztInDerMitte();
    void hakenZweiZeilen();
    void hakenKaestchenStehtOben();
    void hakenRingIstGanzZuSehen();
    void hakenAnklicken();
    void umrisseSindZuSehen_data();
    void umrisseSindZuSehen();
    void hinweisNurWoGekuerzt();
};

void TestKnoepfe::verweisRuftSeineAktion()
{
    QObject ziel;
    int rufe = 0;
    const std::unique_ptr<Verweis> link(verweis(u"Abbrechen"_s, &ziel, [&] { ++rufe; }));
    QCOMPARE(link->text(), u"Abbrechen"_s);
    QTest::mouseClick(link.get(), Qt::LeftButton);
    QCOMPARE(rufe, 1);
    QTest::mouseClick(link.get(), Qt::RightButton);
    QCOMPARE(rufe, 1);
    link->setEnabled(false);
    QTest::mouseClick(link.get(), Qt::LeftButton);
    QCOMPARE(rufe, 1);
}

void TestKnoepfe::verweisMitTasten()
{
    int rufe = 0;
    const std::unique_ptr<Verweis> link(verweis(u"Abbrechen"_s, this, [&] { ++rufe; }));
    QTest::keyClick(link.get(), Qt::Key_Space);
    QCOMPARE(rufe, 1);
}

// What it does is under way: nothing presses it, but the keyboard stays.
void TestKnoepfe::verweisBeschaeftigt()
{
    QWidget fenster;
    QHBoxLayout layout(&fenster);
    int rufe = 0;
    Verweis *const link = verweis(u"Jetzt abgleichen"_s, this, [&] { ++rufe; });
    layout.addWidget(link);
    fenster.show();
    fenster.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fenster));
    link->setFocus(Qt::TabFocusReason);
    const auto farbe = [&] { // of the letters
        QSet<QRgb> farben;
        const QImage bild = link->grab().toImage();
        for (int y = 4; y < bild.height() - 6; ++y) {
            for (int x = 6; x < bild.width() - 6; ++x) {
                farben.insert(bild.pixel(x, y));
            }
        }
        return farben;
    };
    const QRgb blau = Farbe::verweis(link->palette()).rgb();
    const auto *const zugang = QAccessible::queryAccessibleInterface(link);
    QVERIFY(farbe().contains(blau));
    QVERIFY(!zugang->state().disabled && !zugang->state().busy);

    link->setBeschaeftigt(u"Der Abgleich läuft noch."_s);
    QVERIFY(link->hasFocus());
    QVERIFY(!farbe().contains(blau));
    QVERIFY(zugang->state().disabled && zugang->state().busy && zugang->state().focused);
    QCOMPARE(zugang->text(QAccessible::Description), u"Der Abgleich läuft noch."_s);
    QTest::mouseClick(link, Qt::LeftButton);
    QTest::keyClick(link, Qt::Key_Space);
    QTest::keyClick(link, Qt::Key_Select);
    link->click();
    auto *const aktionen = QAccessible::queryAccessibleInterface(link)->actionInterface();
    QVERIFY(aktionen->actionNames().contains(QAccessibleActionInterface::pressAction()));
    aktionen->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(!link->isDown());
    QCOMPARE(rufe, 0);

    link->setBeschaeftigt({});
    QVERIFY(link->hasFocus());
    QVERIFY(farbe().contains(blau));
    QVERIFY(!zugang->state().disabled && !zugang->state().busy);
    aktionen->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(rufe, 1);
}

void TestKnoepfe::startknopfWirkungslos()
{
    Startknopf start(u"rekordbox starten"_s);
    start.resize(472, 38);
    const auto bild = [&] { return start.grab().toImage(); };
    const QImage bunt = bild();
    QCOMPARE(start.cursor().shape(), Qt::PointingHandCursor);
    start.setEnabled(false);
    const QImage grau = bild();
    start.setEnabled(true);
    start.setWirkungslos(u"Grund"_s);
    QVERIFY(start.isEnabled());
    QCOMPARE(bild(), grau);
    QCOMPARE(start.toolTip(), u"Grund"_s);
    QCOMPARE(start.cursor().shape(), Qt::ArrowCursor);
    start.setDown(true);
    QCOMPARE(bild(), grau);
    start.setDown(false);
    start.setWirkungslos({});
    QCOMPARE(bild(), bunt);
    QVERIFY(start.toolTip().isEmpty());
}

void TestKnoepfe::verweisOhneZiel()
{
    const std::unique_ptr<Verweis> link(verweis(u"Abbrechen"_s));
    QSignalSpy gedrueckt(link.get(), &QPushButton::clicked);
    QTest::mouseClick(link.get(), Qt::LeftButton);
    QCOMPARE(gedrueckt.size(), 1);
}

void TestKnoepfe::zielIstWeg()
{
    int rufe = 0;
    auto ziel = std::make_unique<QObject>();
    const std::unique_ptr<Verweis> link(verweis(u"Abbrechen"_s, ziel.get(), [&] { ++rufe; }));
    ziel.reset();
    QTest::mouseClick(link.get(), Qt::LeftButton);
    QCOMPARE(rufe, 0);
}

void TestKnoepfe::verweisAussehen()
{
    const Verweis link(u"Jetzt abgleichen"_s);
    QVERIFY(link.isFlat());
    QVERIFY(qAbs(link.font().pointSizeF() * link.logicalDpiY() / 72 - 12.5) < 0.05);
    QCOMPARE(link.sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QVERIFY(link.sizeHint().width() >= link.fontMetrics().horizontalAdvance(link.text()));
}

void TestKnoepfe::undZeichen()
{
    QFETCH(int, art);
    const auto einer = knopf(Art(art), u"Rock & Roll"_s);
    QCOMPARE(einer->text(), u"Rock && Roll"_s);
    QVERIFY(einer->shortcut().isEmpty());
    QCOMPARE(nameVon(*einer), u"Rock & Roll"_s);
    // Drawn as one sign.
    const auto mass = einer->fontMetrics();
    const auto ohne = knopf(Art(art), u"Rock  Roll"_s);
    const int mehr = einer->sizeHint().width() - ohne->sizeHint().width();
    QVERIFY(qAbs(mehr - mass.horizontalAdvance(u'&')) <= 1);
    titelSetzen(*einer, u"A & B"_s);
    QCOMPARE(einer->text(), u"A && B"_s);
    QCOMPARE(nameVon(*einer), u"A & B"_s);
}

void TestKnoepfe::fokusNurMitTasten()
{
    QFETCH(int, art);
    QWidget fenster;
    QHBoxLayout layout(&fenster);
    const auto einer = knopf(Art(art), u"Titel"_s);
    const auto anderer = std::make_unique<QPushButton>(u"x"_s);
    layout.addWidget(einer.get());
    layout.addWidget(anderer.get());
    fenster.show();
    fenster.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fenster));

    anderer->setFocus();
    const QImage ohne = einer->grab().toImage();
    for (const auto grund : {Qt::MouseFocusReason, Qt::OtherFocusReason}) {
        einer->setFocus(grund);
        QVERIFY(einer->hasFocus());
        QCOMPARE(einer->grab().toImage(), ohne);
        anderer->setFocus();
    }
    for (const auto grund : {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
        einer->setFocus(grund);
        QVERIFY(einer->grab().toImage() != ohne);
        // A click takes it away, also where the focus was there before.
        QTest::mousePress(einer.get(), Qt::LeftButton, {}, QPoint(12, 8));
        QTest::mouseRelease(einer.get(), Qt::LeftButton, {}, QPoint(-50, -50));
        QVERIFY(einer->hasFocus());
        QCOMPARE(einer->grab().toImage(), ohne);
        anderer->setFocus();
        QCOMPARE(einer->grab().toImage(), ohne);
    }
}

void TestKnoepfe::fokusKommtMitDemFensterWieder()
{
    QWidget fenster;
    QHBoxLayout layout(&fenster);
    Verweis mitTasten(u"Titel"_s);
    layout.addWidget(&mitTasten);
    fenster.show();
    fenster.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fenster));
    mitTasten.clearFocus();
    const QImage ohne = mitTasten.grab().toImage();
    mitTasten.setFocus(Qt::TabFocusReason);
    mitTasten.clearFocus();
    mitTasten.setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(mitTasten.grab().toImage() != ohne);
    mitTasten.setFocus(Qt::MouseFocusReason);
    mitTasten.clearFocus();
    mitTasten.setFocus(Qt::MouseFocusReason);
    mitTasten.clearFocus();
    mitTasten.setFocus(Qt::ActiveWindowFocusReason);
    QCOMPARE(mitTasten.grab().toImage(), ohne);
}

void TestKnoepfe::startknopfMasse()
{
    const Startknopf start(u"rekordbox starten"_s);
    QCOMPARE(start.sizeHint().height(), 38);
    QVERIFY(start.minimumSizeHint().width() <= 80);
    QCOMPARE(start.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QVERIFY(!start.isDefault());
}

void TestKnoepfe::startknopfFarben()
{
    Startknopf start(u"rekordbox starten"_s);
    start.resize(472, 38);
    const auto flaeche = [&] { return start.grab().toImage().pixelColor(40, 8); };
    QCOMPARE(flaeche(), QColor(0x0a66d8));
    start.setDown(true);
    QVERIFY(flaeche().lightness() < QColor(0x0a66d8).lightness());
    start.setDown(false);
    start.setEnabled(false);
    QVERIFY(flaeche().saturation() < 20);
    QApplication::setPalette(eigenePalette(true));
    start.setEnabled(true);
    QTRY_COMPARE(flaeche(), QColor(0x2470ea));
}

void TestKnoepfe::startknopfKuerztInDerMitte()
{
    Startknopf lang(u"rekordbox "_s + QString(500, u'7') + u" starten"_s);
    lang.resize(472, 38);
    const QImage bild = lang.grab().toImage();
    // The margins stay free of ink.
    for (int y = 4; y < 34; ++y) {
        QCOMPARE(bild.pixelColor(12, y), QColor(0x0a66d8));
        QCOMPARE(bild.pixelColor(472 - 13, y), QColor(0x0a66d8));
    }
}

void TestKnoepfe::hakenZweiZeilen()
{
    const Haken eine(u"rekordbox automatisch starten"_s);
    const Haken zwei(u"rekordbox automatisch starten\n(5 Sekunden später)"_s);
    QVERIFY(zwei.sizeHint().height() > eine.sizeHint().height() + 10);
    QCOMPARE(zwei.sizeHint().width(), eine.sizeHint().width());
    QCOMPARE(zwei.accessibleName(), u"rekordbox automatisch starten (5 Sekunden später)"_s);
}

void TestKnoepfe::hakenKaestchenStehtOben()
{
    Haken zwei(u"rekordbox automatisch starten\n(5 Sekunden später)"_s);
    zwei.setChecked(true);
    zwei.resize(zwei.sizeHint());
    const QImage bild = zwei.grab().toImage();
    QCOMPARE(bild.pixelColor(3, 6), QColor(0x0a66d8));
    for (int y = zwei.height() / 2 + 4; y < zwei.height(); ++y) {
        QCOMPARE(bild.pixelColor(8, y), QColor(0xf2f2f4));
    }
}

void TestKnoepfe::hakenRingIstGanzZuSehen()
{
    QWidget fenster;
    QHBoxLayout layout(&fenster);
    Haken haken(u"Titel\nzweite Zeile, die länger ist"_s);
    layout.addWidget(&haken);
    fenster.resize(400, 80);
    fenster.show();
    fenster.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fenster));
    haken.clearFocus();
    const QImage ohne = haken.grab().toImage();
    haken.setFocus(Qt::TabFocusReason);
    const QImage mit = haken.grab().toImage();
    QRect ring;
    for (int y = 0; y < mit.height(); ++y) {
        for (int x = 0; x < mit.width(); ++x) {
            if (mit.pixel(x, y) != ohne.pixel(x, y)) {
                ring |= QRect(x, y, 1, 1);
            }
        }
    }
    // As thick on each of its sides.
    const auto dicke = [&](QPoint ort, const QPoint &schritt) {
        int zahl = 0;
        for (; mit.pixel(ort) != ohne.pixel(ort); ort += schritt) {
            ++zahl;
        }
        return zahl;
    };
    const QPoint mitte = ring.center();
    QCOMPARE(dicke({ring.left(), mitte.y()}, {1, 0}), 2);
    QCOMPARE(dicke({ring.right(), mitte.y()}, {-1, 0}), 2);
    QCOMPARE(dicke({mitte.x(), ring.top()}, {0, 1}), 2);
    QCOMPARE(dicke({mitte.x(), ring.bottom()}, {0, -1}), 2);
}

void TestKnoepfe::hakenAnklicken()
{
    Haken haken(u"Titel\nzweite Zeile"_s);
    haken.resize(400, haken.sizeHint().height());
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(8, 8));
    QVERIFY(haken.isChecked());
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(40, haken.height() - 6));
    QVERIFY(!haken.isChecked());
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(390, 8)); // beside the text
    QVERIFY(!haken.isChecked());
    QTest::keyClick(&haken, Qt::Key_Space);
    QVERIFY(haken.isChecked());
}

void TestKnoepfe::umrisseSindZuSehen_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("ours, light") << eigenePalette(false);
    QTest::newRow("ours, dark") << eigenePalette(true);
    QPalette kontrast = eigenePalette(true);
    for (const auto rolle : {QPalette::Window, QPalette::Base, QPalette::Button}) {
        kontrast.setColor(rolle, Qt::black);
    }
    kontrast.setColor(QPalette::Highlight, QColor(0x0a0a20));
    QTest::newRow("an accent that is lost on its ground") << kontrast;
}

// The edge of a check box, and of one that is checked; the ring; the edge of the start button.
void TestKnoepfe::umrisseSindZuSehen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    const QColor grund = Farbe::fenster(palette);
    const auto staerkster = [&](QWidget &widget, const QRect &wo) {
        const QImage bild = widget.grab(wo).toImage();
        double bester = 1;
        for (int x = 0; x < bild.width(); ++x) {
            bester =
                std::max(bester, Farbe::kontrast(bild.pixelColor(x, bild.height() / 2), grund));
        }
        return bester;
    };
    Haken haken(u"eins"_s);
    haken.resize(haken.sizeHint());
    const QRect kastenrand(0, haken.height() / 2 - 1, 2, 3);
    QVERIFY(staerkster(haken, kastenrand) > 2.9);
    haken.setChecked(true);
    QVERIFY(staerkster(haken, kastenrand) > 2.9);
    haken.setEnabled(false);
    QVERIFY(staerkster(haken, kastenrand) > 2.9);

    Startknopf start(u"rekordbox starten"_s);
    start.resize(472, 38);
    QVERIFY(staerkster(start, QRect(0, 18, 4, 3)) > 2.9);

    Verweis verweis(u"Verweis"_s);
    verweis.resize(verweis.sizeHint());
    verweis.show();
    QFocusEvent mitTab(QEvent::FocusIn, Qt::TabFocusReason);
    verweis.setFocus(Qt::TabFocusReason);
    QCoreApplication::sendEvent(&verweis, &mitTab);
    QTRY_VERIFY(verweis.hasFocus());
    QVERIFY(staerkster(verweis, QRect(0, verweis.height() / 2 - 1, 2, 3)) > 2.9);
}

void TestKnoepfe::hinweisNurWoGekuerzt()
{
    Haken haken(u"Titel\nzweite <Zeile> & noch mehr"_s);
    Startknopf start(u"rekordbox <7.1.4> & mehr starten"_s);
    for (QAbstractButton *knopf : std::initializer_list<QAbstractButton *>{&haken, &start}) {
        for (const bool knapp : {false, true, false}) {
            knopf->resize(knopf->sizeHint().width() - (knapp ? 1 : 0), knopf->sizeHint().height());
            QHelpEvent frage(QEvent::ToolTip, {5, 5}, knopf->mapToGlobal(QPoint(5, 5)));
            QApplication::sendEvent(knopf, &frage);
            QCOMPARE(knopf->toolTip(), knapp ? alsHinweis(knopf->accessibleName()) : QString());
        }
    }
    QCOMPARE(haken.accessibleName(), u"Titel zweite <Zeile> & noch mehr"_s);
}

KALVARO_FENSTERTEST(TestKnoepfe)
#include "tst_knoepfe.moc"
