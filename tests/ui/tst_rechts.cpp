#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"
#include "ui/knoepfe.h"
#include "ui/schrift.h"
#include "ui/stil.h"
#include "ui/stilteile.h"
#include "ui/tabellenzahl.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QStyleOptionMenuItem>
#include <QStyleOptionSlider>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString hebraeisch = u"השירים האהובים"_s;

QImage bild(QWidget &widget, Qt::LayoutDirection anordnung)
{
    QApplication::setLayoutDirection(anordnung);
    return widget.grab().toImage();
}

// What differs between two pictures of one size.
QRect unterschied(const QImage &eines, const QImage &anderes)
{
    QRect wo;
    for (int y = 0; y < eines.height(); ++y) {
        for (int x = 0; x < eines.width(); ++x) {
            if (eines.pixel(x, y) != anderes.pixel(x, y)) {
                wo |= QRect(x, y, 1, 1);
            }
        }
    }
    return wo;
}

// Where there is anything but the colour of the middle of the upper edge.
QRect tinte(const QImage &gezeichnet)
{
    QImage leer = gezeichnet;
    leer.fill(gezeichnet.pixel(gezeichnet.width() / 2, 0));
    return unterschied(gezeichnet, leer);
}

QRect gespiegelt(const QRect &stueck, const QRect &ganz)
{
    return QStyle::visualRect(Qt::RightToLeft, ganz, stueck);
}

void texte()
{
    QTest::addColumn<QString>("inhalt");
    QTest::newRow("brackets and a number") << u"(5 Sekunden, nachdem der Abgleich fertig ist)"_s;
    QTest::newRow("dots at the end") << u"Die Cloud wird gefragt …"_s;
    QTest::newRow("a number in front") << u"3 Titel, 2 Playlisten."_s;
    QTest::newRow("Hebrew in a German sentence") << u"„"_s + hebraeisch + u"“ (1) folgt."_s;
    QTest::newRow("only signs") << u"12.345 (2)"_s;
}

} // namespace

// On a desktop that is read from right to left the places change sides, but a German sentence stays
// one.
class TestRechts final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(new Stil);
        QApplication::setPalette(eigenePalette(false));
    }
    void cleanup()
    {
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setStyle(u"fusion"_s);
    }

    void beschriftungen_data() { texte(); }
    void beschriftungen();
    void beschriftungMitUmbruch();
    void hebraeischeBeschriftung();
    void hinweis();
    void knopftitel_data() { texte(); }
    void knopftitel();
    void hakenKaestchen();
    void hakenTitel();
    void hakenAnklicken();
    void hakenRing();
    void tabellenzahl();
    void auswahl();
    void menuezeile();
    void rollbalken();
};

// At the right edge, and in the order in which it is read.
void TestRechts::beschriftungen()
{
    QFETCH(const QString, inhalt);
    constexpr QRect platz(0, 0, 500, 20);
    const std::unique_ptr<Beschriftung> eines(beschriftung(inhalt, 12));
    eines->resize(platz.size());
    QImage erwartet = bild(*std::make_unique<QWidget>(), Qt::RightToLeft).copy(platz);
    erwartet.fill(Farbe::fenster(eines->palette()));
    QPainter maler(&erwartet);
    maler.setFont(eines->font());
    maler.setPen(eines->farbe());
    maler.setLayoutDirection(Qt::LeftToRight);
    maler.drawText(platz, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, inhalt);
    maler.end();
    QCOMPARE(bild(*eines, Qt::RightToLeft), erwartet);
}

void TestRechts::beschriftungMitUmbruch()
{
    const QString satz = u"Die Cloud ist nicht erreichbar, Zahlen folgen beim Abgleich (5 s)."_s;
    const std::unique_ptr<Beschriftung> eines(
        beschriftung(satz, 12, QFont::Normal, Farbe::schrift, 200));
    eines->resize(300, eines->heightForWidth(300));
    QVERIFY(eines->height() > eines->fontMetrics().height());
    const QRect links = tinte(bild(*eines, Qt::LeftToRight));
    const QRect rechts = tinte(bild(*eines, Qt::RightToLeft));
    QVERIFY(links.left() <= 4);
    QVERIFY(rechts.right() >= 300 - 4);
    QVERIFY(qAbs(rechts.width() - links.width()) <= 2);
}

void TestRechts::hebraeischeBeschriftung()
{
    const std::unique_ptr<Beschriftung> eines(beschriftung(hebraeisch + u" (2)"_s, 12));
    eines->resize(500, 20);
    QCOMPARE(bild(*eines, Qt::RightToLeft), bild(*eines, Qt::LeftToRight));
    QVERIFY(tinte(bild(*eines, Qt::RightToLeft)).left() > 250);
}

void TestRechts::hinweis()
{
    QVERIFY(alsHinweis(u"(5 Sekunden)"_s).contains(u"dir='ltr'"_s));
    QVERIFY(alsHinweis(hebraeisch).contains(u"dir='rtl'"_s));
}

// What stands in the middle looks the same.
void TestRechts::knopftitel()
{
    QFETCH(const QString, inhalt);
    Verweis link(inhalt);
    Startknopf start(inhalt);
    QPushButton einfach(inhalt);
    for (QPushButton *knopf : std::initializer_list<QPushButton *>{&link, &start, &einfach}) {
        knopf->resize(knopf->sizeHint() + QSize(20, 0));
        const QImage links = bild(*knopf, Qt::LeftToRight);
        QCOMPARE(bild(*knopf, Qt::RightToLeft), links);
    }
    start.resize(160, 38); // where it is cut
    const QImage links = bild(start, Qt::LeftToRight);
    QCOMPARE(bild(start, Qt::RightToLeft), links);
}

void TestRechts::hakenKaestchen()
{
    Haken haken(u"Titel\n(5 Sekunden später)"_s);
    haken.setChecked(true);
    haken.resize(300, haken.sizeHint().height());
    const QRect kasten(0, 0, kaestchen(), haken.height());
    QCOMPARE(bild(haken, Qt::RightToLeft).copy(gespiegelt(kasten, haken.rect())),
             bild(haken, Qt::LeftToRight).copy(kasten));
}

void TestRechts::hakenTitel()
{
    const QString titel = u"(5 Sekunden, nachdem der Abgleich fertig ist)"_s;
    Haken haken(titel);
    haken.resize(500, haken.sizeHint().height());
    const int platz = 500 - kaestchen() - 8;
    const std::unique_ptr<Beschriftung> daneben(beschriftung(titel, 13));
    daneben->resize(platz, haken.height());
    const QImage erwartet = bild(*daneben, Qt::RightToLeft);
    const QImage text = bild(haken, Qt::RightToLeft).copy(0, 0, platz, haken.height());
    QCOMPARE(text.copy(tinte(text)), erwartet.copy(tinte(erwartet)));
    QCOMPARE(tinte(text).right(), tinte(erwartet).right());
}

void TestRechts::hakenAnklicken()
{
    Haken haken(u"Titel\nzweite Zeile"_s);
    haken.resize(400, haken.sizeHint().height());
    QApplication::setLayoutDirection(Qt::RightToLeft);
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(391, 8)); // the box
    QVERIFY(haken.isChecked());
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(360, haken.height() - 6));
    QVERIFY(!haken.isChecked());
    QTest::mouseClick(&haken, Qt::LeftButton, {}, QPoint(10, 8)); // beside the text
    QVERIFY(!haken.isChecked());
}

void TestRechts::hakenRing()
{
    QWidget fenster;
    QHBoxLayout layout(&fenster);
    Haken haken(u"Titel"_s);
    layout.addWidget(&haken);
    fenster.resize(400, 60);
    fenster.show();
    fenster.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fenster));
    const auto ring = [&](Qt::LayoutDirection anordnung) {
        haken.clearFocus();
        const QImage ohne = bild(haken, anordnung);
        haken.setFocus(Qt::TabFocusReason);
        return unterschied(bild(haken, anordnung), ohne);
    };
    const QRect links = ring(Qt::LeftToRight);
    QVERIFY(links.width() > 20);
    QCOMPARE(ring(Qt::RightToLeft), gespiegelt(links, haken.rect()));
}

// Above its caption, at the edge where that begins.
void TestRechts::tabellenzahl()
{
    Tabellenzahl zahl(u"12.345"_s);
    zahl.setFont(systemschrift(22, QFont::DemiBold));
    for (const int breite : {300, 40, 20}) { // whole, shrunk, cut
        zahl.resize(breite, 30);
        const QRect links = tinte(bild(zahl, Qt::LeftToRight));
        const QRect rechts = tinte(bild(zahl, Qt::RightToLeft));
        QVERIFY(qAbs(rechts.width() - links.width()) <= 1);
        QVERIFY2(rechts.right() >= breite - 4, qPrintable(QString::number(rechts.right())));
    }
}

// The angle at the left, the text at the right.
void TestRechts::auswahl()
{
    QComboBox feld;
    feld.addItem(u"(5) Version …"_s);
    feld.resize(300, feld.sizeHint().height());
    const auto ohneText = [&](Qt::LayoutDirection anordnung) {
        feld.setCurrentIndex(-1);
        return bild(feld, anordnung);
    };
    const QRect winkel = QRect(271, 6, 24, feld.height() - 12);
    QCOMPARE(ohneText(Qt::RightToLeft).copy(gespiegelt(winkel, feld.rect())).mirrored(true, false),
             ohneText(Qt::LeftToRight).copy(winkel));
    const auto text = [&](Qt::LayoutDirection anordnung) {
        const QImage leer = ohneText(anordnung);
        feld.setCurrentIndex(0);
        const QImage voll = bild(feld, anordnung);
        const QRect wo = unterschied(voll, leer);
        return std::pair(wo, voll.copy(wo));
    };
    const auto [ortLinks, textLinks] = text(Qt::LeftToRight);
    const auto [ortRechts, textRechts] = text(Qt::RightToLeft);
    QVERIFY(qAbs(ortRechts.right() - gespiegelt(ortLinks, feld.rect()).right()) <= 3);
    QCOMPARE(textRechts.width(), textLinks.width());
    // It begins with a bracket, not with the dots.
    QVERIFY(tinte(textLinks.copy(0, 0, 6, textLinks.height())).height() > 6);
    QVERIFY(tinte(textRechts.copy(0, 0, 6, textRechts.height())).height() > 6);
}

// Texts of ours in a menu: the dots stay behind them.
void TestRechts::menuezeile()
{
    const auto zeile = [](const QString &titel) {
        QStyleOptionMenuItem option;
        option.direction = Qt::RightToLeft;
        option.palette = QApplication::palette();
        option.rect = QRect(0, 0, 300, 26);
        option.text = titel;
        option.state = QStyle::State_Enabled;
        option.font = QApplication::font();
        QImage gezeichnet(option.rect.size(), QImage::Format_RGB32);
        gezeichnet.fill(Qt::white);
        QPainter maler(&gezeichnet);
        maler.setLayoutDirection(Qt::RightToLeft);
        QApplication::style()->drawControl(QStyle::CE_MenuItem, &option, &maler, nullptr);
        return gezeichnet;
    };
    const auto amRand = [&](const QString &titel) { // the ink at the right end of the text
        const QRect ganz = unterschied(zeile(titel), zeile({}));
        const QRect ende(ganz.right() - 8, 0, 9, 26);
        return unterschied(zeile(titel).copy(ende), zeile({}).copy(ende));
    };
    QVERIFY(amRand(u"Einstellungen"_s).height() > 6);
    QVERIFY(amRand(u"Einstellungen …"_s).height() <= 3);
    QVERIFY(amRand(u"Einstellungen …\tStrg+,"_s).height() <= 3);
    QVERIFY(amRand(hebraeisch + u" …"_s).height() > 6); // that one ends at the left
}

// Its thumb is where its value is: at the right for the least.
void TestRechts::rollbalken()
{
    QStyleOptionSlider option;
    option.orientation = Qt::Horizontal;
    option.rect = QRect(0, 0, 200, 12);
    option.maximum = 100;
    option.pageStep = 100;
    option.sliderPosition = 20;
    for (const auto stueck :
         {QStyle::SC_ScrollBarSlider, QStyle::SC_ScrollBarSubPage, QStyle::SC_ScrollBarAddPage}) {
        option.direction = Qt::LeftToRight;
        const QRect links = rollbalkenstueck(option, stueck);
        option.direction = Qt::RightToLeft;
        QCOMPARE(rollbalkenstueck(option, stueck), gespiegelt(links, option.rect));
    }
    option.orientation = Qt::Vertical;
    option.rect = option.rect.transposed();
    const QRect senkrecht = rollbalkenstueck(option, QStyle::SC_ScrollBarSlider);
    option.direction = Qt::LeftToRight;
    QCOMPARE(rollbalkenstueck(option, QStyle::SC_ScrollBarSlider), senkrecht);
}

KALVARO_FENSTERTEST(TestRechts)
#include "tst_rechts.moc"
