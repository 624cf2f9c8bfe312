#include "doubles/testschirme.h"
#include "fensterpruefstand.h"
#include "testlauf.h"

#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The sheet on screens and with fonts of every size.
class TestEinstellungenschirme final : public Fensterpruefstand
{
    Q_OBJECT

public:
    static void vorDerAnwendung()
    {
        schirmeEinrichten(
            {{2560, 1440}, {1024, 600}, {1093, 614}, {960, 540}, {800, 480}, {800, 440}});
    }

private Q_SLOTS:
    void sichernBleibtErreichbar_data();
    void sichernBleibtErreichbar();
    void zuerstWirdDerBaumNiedriger();
    void niedrigerSchirmZeigtGanzeZeilen_data();
    void niedrigerSchirmZeigtGanzeZeilen();
    void langeMeldungLaesstPlatz();
    void tastenRollenMit();
    void aktuelleZeileKommtInSicht();
    void mausradWaehltKeineVersion();
    void langeVersionWirdGekuerzt();
    void waechstMitDerSchrift();

private:
    // The system's font has this size while what is returned lives.
    [[nodiscard]] static auto schriftgroesse(int pixel)
    {
        const QFont vorher = QApplication::font();
        QFont groesser(u"Inter"_s);
        groesser.setPixelSize(pixel);
        QApplication::setFont(groesser);
        return qScopeGuard([vorher] { QApplication::setFont(vorher); });
    }
    void aufSchirm(int stelle) { eltern->setScreen(QGuiApplication::screens()[stelle]); }
    [[nodiscard]] QScrollArea *rollbereich() const { return fenster->findChild<QScrollArea *>(); }
    [[nodiscard]] bool rollt() const { return rollbereich()->verticalScrollBar()->isVisible(); }
    [[nodiscard]] bool ganzZuSehen(const QString &name) const
    {
        const auto *const teil = feld<QWidget>(name);
        return teil->visibleRegion() == QRegion(teil->rect());
    }
    [[nodiscard]] int zeilenhoehe() const
    {
        return feld<Baumansicht>(u"baum"_s)->itemDelegate()->sizeHint({}, {}).height();
    }
    [[nodiscard]] bool baumGanzZuSehen() const
    {
        const auto *const inhalt = feld<QAbstractScrollArea>(u"baum"_s)->viewport();
        return inhalt->visibleRegion() == QRegion(inhalt->rect());
    }
    // How many rows of the tree can be seen.
    [[nodiscard]] double sichtbareZeilen() const
    {
        const auto *const inhalt = feld<QAbstractScrollArea>(u"baum"_s)->viewport();
        return inhalt->visibleRegion().boundingRect().height() / double(zeilenhoehe());
    }
    void scheitern(const QString &meldung)
    {
        weg->dann(Scripttransport::antwort(200, "{}")); // the probe
        weg->dann(Scripttransport::antwort(500, alsText({{u"fehler"_s, meldung}})));
        fenster->laden();
        QTRY_VERIFY(info()->text().startsWith(u"Playlisten nicht ladbar"_s));
        ereignisseAbarbeiten();
    }
};

void TestEinstellungenschirme::sichernBleibtErreichbar_data()
{
    QTest::addColumn<int>("stelle");
    QTest::addColumn<int>("pixel");
    const auto schirme = QGuiApplication::screens();
    for (int stelle = 0; stelle < schirme.size(); ++stelle) {
        for (const int pixel : {13, 20, 26}) {
            QTest::addRow("%s, font %d", qPrintable(schirme[stelle]->name()), pixel)
                << stelle << pixel;
        }
    }
}

// So do "Abbrechen" and what the sheet has to say, however long that is.
void TestEinstellungenschirme::sichernBleibtErreichbar()
{
    QFETCH(const int, stelle);
    QFETCH(const int, pixel);
    const auto schrift = schriftgroesse(pixel);
    aufSchirm(stelle);
    const QRect frei = eltern->screen()->availableGeometry();
    oeffnen();
    const auto pruefen = [&] {
        ereignisseAbarbeiten();
        QVERIFY(frei.contains(fenster->frameGeometry()));
        for (const char *name : {"knSichern", "knAbbrechen", "lblInfo"}) {
            QVERIFY2(ganzZuSehen(QString::fromLatin1(name)), name);
        }
        const int rand = 22;
        const auto *const baum = feld<QWidget>(u"baum"_s);
        const int rechts = baum->mapTo(fenster.data(), QPoint(baum->width(), 0)).x();
        const auto *const knopf = feld<QWidget>(u"knSichern"_s);
        QCOMPARE(rechts, knopf->mapTo(fenster.data(), QPoint(knopf->width(), 0)).x());
        const int balken = rollt() ? rollbereich()->verticalScrollBar()->width() : 0;
        QCOMPARE(rechts, fenster->width() - rand - balken);
    };
    pruefen();
    scheitern(u"Die Musikplatte ist nicht da, und das hat viele Gründe. "_s.repeated(30));
    pruefen();
    laden(antwort(kette(40)));
    pruefen();
    feld<Baumansicht>(u"baum"_s)->alleAufklappen();
    pruefen();
}

void TestEinstellungenschirme::zuerstWirdDerBaumNiedriger()
{
    oeffnen();
    const int voll = fenster->height();
    QCOMPARE(feld<QWidget>(u"baum"_s)->height(), 280);
    delete fenster.data();

    aufSchirm(1);
    oeffnen();
    const int baum = feld<QWidget>(u"baum"_s)->height();
    QVERIFY(baum < 280 && baum >= 116);
    QVERIFY(!rollt());
    QCOMPARE(voll - fenster->height(), 280 - baum); // all else is as it was
    QCOMPARE(fenster->frameGeometry().height(), 600);
    QCOMPARE(fenster->width(), 480);
    delete fenster.data();

    aufSchirm(4); // then the gaps, and nothing scrolls
    oeffnen();
    QVERIFY(sichtbareZeilen() >= 3);
    QVERIFY(!rollt());
    QCOMPARE(fenster->frameGeometry().height(), 480);
    delete fenster.data();

    aufSchirm(0); // only on the low screen
    oeffnen();
    QCOMPARE(fenster->height(), voll);
}

void TestEinstellungenschirme::niedrigerSchirmZeigtGanzeZeilen_data()
{
    QTest::addColumn<int>("stelle");
    QTest::addColumn<int>("pixel");
    const auto schirme = QGuiApplication::screens();
    for (int stelle = 1; stelle < schirme.size(); ++stelle) {
        for (const int pixel : {13, 18, 20, 22, 24, 26}) {
            QTest::addRow("%s, font %d", qPrintable(schirme[stelle]->name()), pixel)
                << stelle << pixel;
        }
    }
}

// One and a half rows were in sight, and the second was cut through its middle. Whoever goes to the
// tree sees all of it, three rows at least where the screen has room for them.
void TestEinstellungenschirme::niedrigerSchirmZeigtGanzeZeilen()
{
    QFETCH(const int, stelle);
    QFETCH(const int, pixel);
    const auto schrift = schriftgroesse(pixel);
    aufSchirm(stelle);
    laden(antwort(beispiel()));
    const auto pruefen = [this] {
        const double zeilen = sichtbareZeilen();
        QVERIFY2(zeilen >= 3 || zeilen == std::floor(zeilen), qPrintable(QString::number(zeilen)));
    };
    pruefen();
    feld<QWidget>(u"suchfeld"_s)->setFocus();
    QTest::keyClick(fenster->focusWidget(), Qt::Key_Tab);
    QVERIFY(feld<QWidget>(u"baum"_s)->hasFocus());
    QVERIFY(baumGanzZuSehen());
    pruefen();
    const int platz = rollbereich()->viewport()->height();
    QVERIFY(sichtbareZeilen() >= std::min(3, (platz - 12) / zeilenhoehe()));
}

void TestEinstellungenschirme::langeMeldungLaesstPlatz()
{
    const QString lang = u"Die Musikplatte ist nicht da, und das hat viele Gründe. "_s.repeated(30);
    oeffnen();
    scheitern(lang);
    const int hoch = info()->height();
    delete fenster.data();

    aufSchirm(4);
    oeffnen();
    scheitern(lang);
    QVERIFY(info()->height() < hoch);
    QVERIFY(info()->height() <= 480 / 3);
    QVERIFY(info()->toolTip().contains(u"viele Gründe"_s)); // the whole
    QVERIFY(rollbereich()->viewport()->height() >= 480 / 3);
}

// From the buttons, which stand still, back to the first field.
void TestEinstellungenschirme::tastenRollenMit()
{
    const auto schrift = schriftgroesse(26);
    aufSchirm(4);
    laden(antwort(beispiel()));
    feld<QWidget>(u"suchfeld"_s)->setFocus();
    for (const char *name : {"baum", "knAbbrechen", "knSichern", "popVersion", "cbAuto",
                             "cbAnmeldung", "suchfeld", "baum"}) {
        QTest::keyClick(fenster->focusWidget(), Qt::Key_Tab);
        QCOMPARE(fenster->focusWidget()->objectName(), QString::fromLatin1(name));
        QVERIFY2(!fenster->focusWidget()->visibleRegion().isEmpty(), name);
        QVERIFY2(QByteArray(name) == "baum" || ganzZuSehen(QString::fromLatin1(name)), name);
    }
}

// Also after the sheet has been scrolled away by other means.
void TestEinstellungenschirme::aktuelleZeileKommtInSicht()
{
    const auto schrift = schriftgroesse(26);
    aufSchirm(4);
    laden(antwort(beispiel()));
    auto *const baum = feld<Baumansicht>(u"baum"_s);
    QScrollBar &balken = *rollbereich()->verticalScrollBar();
    QTest::keyClick(feld<QWidget>(u"suchfeld"_s), Qt::Key_Down);
    QVERIFY(baumGanzZuSehen());
    balken.setValue(0);
    QTest::keyClick(baum, Qt::Key_Down);
    QVERIFY(baumGanzZuSehen());

    // A click leaves things where they are: the pointer would be above another row.
    balken.setValue(balken.maximum() - 10);
    const int stand = balken.value();
    const QRect zeile = baum->visualRect(baum->zeile(0));
    QTest::mouseClick(baum->viewport(), Qt::LeftButton, {}, zeile.center());
    QCOMPARE(baum->currentIndex(), baum->zeile(0));
    QCOMPARE(balken.value(), stand);
}

void TestEinstellungenschirme::mausradWaehltKeineVersion()
{
    aufSchirm(4);
    oeffnen();
    auto *const auswahl = feld<QComboBox>(u"popVersion"_s);
    const auto drehen = [auswahl] {
        const QPointF ort = auswahl->rect().center();
        QWheelEvent rad(ort, auswahl->mapToGlobal(ort), {}, {0, -120}, {}, {}, Qt::NoScrollPhase,
                        false);
        QApplication::sendEvent(auswahl, &rad);
        return rad.isAccepted();
    };
    for (const char *wer : {"knSichern", "popVersion"}) { // has the keyboard
        feld<QWidget>(QString::fromLatin1(wer))->setFocus();
        QVERIFY(!drehen()); // so the sheet gets it
        QCOMPARE(auswahl->currentIndex(), 0);
    }
}

// It was cut through a letter, and the whole was nowhere to be read.
void TestEinstellungenschirme::langeVersionWirdGekuerzt()
{
    const QString lang = u"7.1.4 "_s + QString(60, u'W');
    installationen = {{lang, {}}, {lang.chopped(1) + u'i', {}}};
    oeffnen();
    auto *const auswahl = feld<QComboBox>(u"popVersion"_s);
    QCOMPARE(fenster->width(), 480);
    const auto bild = [auswahl](int stelle) {
        auswahl->setCurrentIndex(stelle);
        ereignisseAbarbeiten();
        return auswahl->grab().toImage();
    };
    // What differs stands behind the "…".
    const QImage erstes = bild(1);
    QCOMPARE(bild(2), erstes);
    const auto hinweis = [auswahl] {
        QHelpEvent frage(QEvent::ToolTip, {5, 5}, auswahl->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(auswahl, &frage);
        return auswahl->toolTip();
    };
    QVERIFY(hinweis().contains(lang.chopped(1) + u'i'));
    auswahl->setItemText(0, u"kurz"_s);
    auswahl->setCurrentIndex(0);
    QCOMPARE(hinweis(), QString());
    // The last of the text is "…": three dots at the base line, nothing above them.
    const QRect rechts(erstes.width() - 45, 0, 8, erstes.height() / 2);
    const QImage ecke = erstes.copy(rechts);
    for (int x = 0; x < ecke.width(); ++x) {
        for (int y = 4; y < ecke.height(); ++y) {
            QCOMPARE(ecke.pixel(x, y), ecke.pixel(0, 4));
        }
    }
}

void TestEinstellungenschirme::waechstMitDerSchrift()
{
    const auto schrift = schriftgroesse(26);
    oeffnen();
    QCOMPARE(fenster->width(), 2 * 480);
    QCOMPARE(feld<QWidget>(u"baum"_s)->height(), 2 * 280);
}

KALVARO_FENSTERTEST(TestEinstellungenschirme)
#include "tst_einstellungenschirme.moc"
