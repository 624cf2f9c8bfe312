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
    void hakenAnklicken();
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
    QTest::keyClick(link.get(), Qt::Key_Return);
    QTest::keyClick(link.get(), Qt::Key_Enter);
    QCOMPARE(rufe, 3);
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
    QTRY_COMPARE(flaeche(), QColor(0x2f7df6));
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
