#include "doubles/testschirme.h"
#include "mainwindow/fensterwelt.h"
#include "testlauf.h"
#include "ui/karte.h"
#include "ui/schrift.h"
#include "ui/symbole.h"

#include <QApplication>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The window on screens and with fonts of every size.
class TestHauptfensterSchirme final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung()
    {
        schirmeEinrichten(
            {{2560, 1440}, {1024, 600}, {1093, 614}, {960, 540}, {800, 480}, {1024, 580}});
    }

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        QApplication::setFont(grundschrift);
    }
    void cleanupTestCase() { QApplication::setFont(grundschrift); }

    void passtAufDenSchirm_data();
    void passtAufDenSchirm();
    void rahmenStehtInDerMitte();
    void ziehtAufEinenKleinerenSchirm();
    void countdownKommtInsBild_data();
    void countdownKommtInsBild();
    void updateKommtInsBild();
    void updateRolltNichtVomCountdownWeg();
    void statuskarteGibtPlatzHer();
    void waechstMitDerSchrift();
    void waechstNichtWaehrendEsAbgelegtIst();
    void bildIstVomSchirmUnabhaengig();

private:
    static void schriftgroesse(int pixel)
    {
        QFont groesser(u"Inter"_s);
        groesser.setPixelSize(pixel);
        QApplication::setFont(groesser);
    }
    [[nodiscard]] static QScreen *schirm(int stelle) { return QGuiApplication::screens()[stelle]; }

    // Every screen but the large one, with the usual font and larger ones.
    static void schirmeUndSchriften();

    [[nodiscard]] static QScrollArea *rollbereich(const Fensterwelt &p)
    {
        return p.fenster->findChild<QScrollArea *>();
    }
    [[nodiscard]] static bool ganzZuSehen(const Fensterwelt &p, const QString &name)
    {
        const QWidget *const teil = p.teil(name);
        return teil->visibleRegion() == QRegion(teil->rect());
    }

    Datenordner &daten = Testumgebung::ordner();
    const QFont grundschrift = QApplication::font();
};

void TestHauptfensterSchirme::schirmeUndSchriften()
{
    QTest::addColumn<int>("stelle");
    QTest::addColumn<int>("pixel");
    for (int stelle = 1; stelle < QGuiApplication::screens().size(); ++stelle) {
        for (const int pixel : {13, 20, 26}) {
            QTest::addRow("%s, font %d", qPrintable(schirm(stelle)->name()), pixel)
                << stelle << pixel;
        }
    }
}

void TestHauptfensterSchirme::passtAufDenSchirm_data()
{
    schirmeUndSchriften();
}

// With its frame, whatever it shows, and nothing of it out of reach to the right.
void TestHauptfensterSchirme::passtAufDenSchirm()
{
    QFETCH(const int, stelle);
    QFETCH(const int, pixel);
    schriftgroesse(pixel);
    Fensterwelt p({.autostart = true});
    p.fenster->setScreen(schirm(stelle));
    const QRect frei = schirm(stelle)->availableGeometry();
    const auto pruefen = [&] {
        Fensterwelt::ruhe();
        const QRect rahmen = p.fenster->frameGeometry();
        QVERIFY2(frei.contains(rahmen),
                 qPrintable(u"%1x%2"_s.arg(rahmen.width()).arg(rahmen.height())));
        const QScrollBar *const balken = rollbereich(p)->verticalScrollBar();
        QCOMPARE(p.teil(u"ganz"_s)->width(), rollbereich(p)->viewport()->width());
        // It scrolls only where all the room there is has been taken.
        QVERIFY(!balken->isVisible() || rahmen.height() == frei.height());
    };
    p.abgeglichen(Fensterwelt::gut());
    pruefen();
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    pruefen();
    QJsonObject mehr = angebot(u"1.10"_s);
    mehr.insert(u"ergebnis"_s, QJsonObject{{u"fehler"_s, u"Lange Geschichte. "_s.repeated(60)}});
    p.abgeglichen(Fensterwelt::antwort(u"fehler"_s, mehr));
    pruefen();
}

void TestHauptfensterSchirme::rahmenStehtInDerMitte()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    Fensterwelt::ruhe();
    const QRect frei = schirm(0)->availableGeometry();
    const QPoint daneben = p.fenster->frameGeometry().center() - frei.center();
    QVERIFY(qAbs(daneben.x()) <= 1);
    QVERIFY(qAbs(daneben.y()) <= 1);
}

void TestHauptfensterSchirme::ziehtAufEinenKleinerenSchirm()
{
    Fensterwelt p;
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    QVERIFY(!rollbereich(p)->verticalScrollBar()->isVisible());
    const QSize gross = p.fenster->size();
    p.fenster->move(schirm(4)->geometry().topLeft());
    Fensterwelt::ruhe();
    QCOMPARE(p.fenster->screen(), schirm(4));
    QVERIFY(p.fenster->frameGeometry().height() <= 480);
    QVERIFY(rollbereich(p)->verticalScrollBar()->isVisible());
    p.fenster->move(50, 60);
    Fensterwelt::ruhe();
    QCOMPARE(p.fenster->size(), gross);
}

void TestHauptfensterSchirme::countdownKommtInsBild_data()
{
    schirmeUndSchriften();
}

// On a low screen it counted down below the window's edge.
void TestHauptfensterSchirme::countdownKommtInsBild()
{
    QFETCH(const int, stelle);
    QFETCH(const int, pixel);
    schriftgroesse(pixel);
    Fensterwelt p({.autostart = true});
    p.fenster->setScreen(schirm(stelle));
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    QVERIFY(!p.countdown().isEmpty());
    for (const char *name : {"lblCountdown", "knCountdown", "knStart"}) {
        QVERIFY2(ganzZuSehen(p, QString::fromLatin1(name)), name);
    }
    // Nobody is scrolled away from where they went meanwhile.
    rollbereich(p)->verticalScrollBar()->setValue(0);
    p.uhr.vor(Sekunden(2));
    Fensterwelt::ruhe();
    QCOMPARE(rollbereich(p)->verticalScrollBar()->value(), 0);
}

void TestHauptfensterSchirme::updateKommtInsBild()
{
    schriftgroesse(26);
    Fensterwelt p;
    p.fenster->setScreen(schirm(4));
    p.abgeglichen(Fensterwelt::gut());
    QScrollBar *const balken = rollbereich(p)->verticalScrollBar();
    balken->setValue(balken->maximum());
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    QVERIFY(ganzZuSehen(p, u"karteUpdate"_s));
    // Only the first time.
    balken->setValue(balken->maximum());
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.11"_s)));
    QVERIFY(!ganzZuSehen(p, u"karteUpdate"_s));
}

void TestHauptfensterSchirme::updateRolltNichtVomCountdownWeg()
{
    schriftgroesse(26);
    Fensterwelt p({.autostart = true});
    p.fenster->setScreen(schirm(4));
    p.abgeglichen(Fensterwelt::gut());
    QVERIFY(ganzZuSehen(p, u"knCountdown"_s));
    Bewertung b;
    b.titel = u"Bibliothek ist abgeglichen"_s;
    b.neueVersion = u"1.10"_s;
    b.updateAdresse = u"https://kalvaro.example/"_s;
    p.fenster->ergebnisAnzeigen(b);
    Fensterwelt::ruhe();
    QVERIFY(!p.teil(u"karteUpdate"_s)->isHidden());
    QVERIFY(!ganzZuSehen(p, u"karteUpdate"_s));
}

// So that countdown and update card at once just fit.
void TestHauptfensterSchirme::statuskarteGibtPlatzHer()
{
    schriftgroesse(13);
    Fensterwelt p({.autostart = true});
    p.fenster->setScreen(schirm(5));
    p.abgeglichen(Fensterwelt::gut());
    const int hoch = p.teil(u"karteStatus"_s)->height();
    QCOMPARE(hoch, 96);
    auto *const leiste = new QMenuBar;
    leiste->addMenu(u"kalvaro"_s);
    p.fenster->menueleisteSetzen(leiste);
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    QVERIFY(p.teil(u"karteStatus"_s)->height() < hoch);
    QVERIFY(!rollbereich(p)->verticalScrollBar()->isVisible());
    // There is room enough again.
    p.fenster->move(50, 60);
    Fensterwelt::ruhe();
    QCOMPARE(p.teil(u"karteStatus"_s)->height(), hoch);
}

// Twice the usual font gives twice the window, with icons and boxes to match.
void TestHauptfensterSchirme::waechstMitDerSchrift()
{
    schriftgroesse(26);
    Fensterwelt p;
    p.abgeglichen(Fensterwelt::gut());
    QCOMPARE(p.fenster->width(), 2 * 520);
    QCOMPARE(p.teil(u"bildZeichen"_s)->size(), QSize(88, 88));
    QCOMPARE(p.teil(u"rad"_s)->size(), QSize(88, 88));
    // The box of the check mark is as high as two lines of the usual font.
    const QImage haken = p.teil(u"cbAuto"_s)->grab().toImage();
    const int mitte = 2 + QFontMetrics(systemschrift(13)).height() / 2;
    int kasten = 0;
    while (kasten < haken.width() &&
           haken.pixel(kasten, mitte) != haken.pixel(haken.width() - 1, 0)) {
        ++kasten;
    }
    QVERIFY2(qAbs(kasten - 32) <= 1, qPrintable(QString::number(kasten)));
}

// A new size or place brought it back, so one that lost its bar popped up in place of the task bar.
void TestHauptfensterSchirme::waechstNichtWaehrendEsAbgelegtIst()
{
    Fensterwelt p;
    p.abgeglichen(Fensterwelt::gut());
    const QSize vorher = p.fenster->size();
    p.fenster->showMinimized();
    Bewertung b;
    b.titel = u"Bibliothek ist abgeglichen"_s;
    b.neueVersion = u"1.10"_s;
    b.updateAdresse = u"https://kalvaro.example/"_s;
    p.fenster->ergebnisAnzeigen(b);
    Fensterwelt::ruhe();
    QCOMPARE(p.fenster->size(), vorher);
    p.fenster->showNormal();
    Fensterwelt::ruhe();
    QVERIFY(p.fenster->height() > vorher.height());
}

// At a scale of two the screen of pictures is 400 x 400: the window was drawn narrow, with most of
// its texts cut.
void TestHauptfensterSchirme::bildIstVomSchirmUnabhaengig()
{
    schriftgroesse(26);
    QSize erste;
    for (const int stelle : {0, 4}) {
        Fensterwelt p({.bild = u"/nirgends/bild.png"_s});
        p.fenster->setScreen(schirm(stelle));
        p.fenster->move(schirm(stelle)->geometry().topLeft());
        p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
        QVERIFY(!rollbereich(p)->verticalScrollBar()->isVisible());
        const QSize groesse = p.teil(u"ganz"_s)->size();
        erste = stelle == 0 ? groesse : erste;
        QCOMPARE(groesse, erste);
        QCOMPARE(groesse.width(), 2 * 520);
    }
}

KALVARO_FENSTERTEST(TestHauptfensterSchirme)
#include "tst_hauptfenster_schirme.moc"
