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

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The sheet on screens and with fonts of every size.
class TestEinstellungenschirme final : public Fensterpruefstand
{
    Q_OBJECT

public:
    static void vorDerAnwendung()
    {
        schirmeEinrichten({{2560, 1440}, {1024, 600}, {1093, 614}, {960, 540}, {800, 480}});
    }

private Q_SLOTS:
    void sichernBleibtErreichbar_data();
    void sichernBleibtErreichbar();
    void zuerstWirdDerBaumNiedriger();
    void langeMeldungLaesstPlatz();
    void tastenRollenMit();
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

    aufSchirm(4);
    oeffnen();
    QCOMPARE(feld<QWidget>(u"baum"_s)->height(), 116);
    QVERIFY(rollt());
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
