#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

#include <QApplication>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The window driven by the keyboard alone.
class TestHauptfensterTasten final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { daten.leeren(); }

    void tabFolgtDemBild_data();
    void tabFolgtDemBild();
    void eingabeStartet_data();
    void eingabeStartet();
    void eingabeDruecktDenVerweis();
    void gehalteneEingabeStartetNicht();
    void escapeBrichtNurDenCountdownAb();
    void strgW();
    void strgM();
    void strgH();
    void strgQ_data();
    void strgQ();
    void leertasteAufDemHaken();
    void fokusBleibtAufDemVerweis();
    void abbrechenLaesstDenFokusRuhen_data();
    void abbrechenLaesstDenFokusRuhen();
    void abbrechenMitDerMaus();
    void fokusRuhtWaehrendRekordboxLaeuft();
    void letzterBlickLaesstDenFokusRuhen();
    void startknopfOhneWirkung();

private:
    // Opens the window, as large as it gets, with the keyboard.
    static void oeffnen(Fensterwelt &p)
    {
        p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
        p.fenster->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(p.fenster.get()));
    }

    static QString fokus()
    {
        return QApplication::focusWidget() == nullptr ? QString()
                                                      : QApplication::focusWidget()->objectName();
    }

    // Where the keyboard goes as soon as the window has it; a display that nobody sees gives it to
    // a window only once.
    static QString wohin(const Fensterwelt &p)
    {
        const QWidget *const ort = p.fenster->focusWidget();
        return ort == nullptr ? QString() : ort->objectName();
    }

    Datenordner &daten = Testumgebung::ordner();
};

void TestHauptfensterTasten::tabFolgtDemBild_data()
{
    QTest::addColumn<bool>("rueckwaerts");
    QTest::newRow("Tab") << false;
    QTest::newRow("Shift+Tab") << true;
}

void TestHauptfensterTasten::tabFolgtDemBild()
{
    QFETCH(bool, rueckwaerts);
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    QCOMPARE(fokus(), u"knStart"_s);
    QStringList besucht;
    for (int i = 0; i < 6; ++i) {
        besucht.append(fokus());
        QTest::keyClick(QApplication::focusWidget(), rueckwaerts ? Qt::Key_Backtab : Qt::Key_Tab,
                        rueckwaerts ? Qt::ShiftModifier : Qt::NoModifier);
    }
    QStringList erwartet{u"knStart"_s,          u"knCountdown"_s, u"cbAuto"_s,
                         u"lnkEinstellungen"_s, u"lnkAbgleich"_s, u"knUpdate"_s};
    if (rueckwaerts) {
        std::reverse(erwartet.begin() + 1, erwartet.end());
    }
    QCOMPARE(besucht, erwartet);
    QCOMPARE(fokus(), u"knStart"_s); // all around

    // That is also the order from top to bottom and from left to right.
    QStringList sortiert = erwartet;
    QWidget *const ganz = p.teil(u"ganz"_s);
    std::sort(sortiert.begin(), sortiert.end(), [&](const QString &a, const QString &b) {
        const QPoint x = p.teil(a)->mapTo(ganz, QPoint());
        const QPoint y = p.teil(b)->mapTo(ganz, QPoint());
        return qAbs(x.y() - y.y()) > 4 ? x.y() < y.y() : x.x() < y.x();
    });
    QCOMPARE(sortiert, QStringList({u"knUpdate"_s, u"knStart"_s, u"knCountdown"_s, u"cbAuto"_s,
                                    u"lnkEinstellungen"_s, u"lnkAbgleich"_s}));
}

void TestHauptfensterTasten::eingabeStartet_data()
{
    QTest::addColumn<Qt::Key>("taste");
    QTest::addColumn<QString>("ort");
    QTest::newRow("Return in the window") << Qt::Key_Return << QString();
    QTest::newRow("Enter in the window") << Qt::Key_Enter << QString();
    QTest::newRow("Return on the start button") << Qt::Key_Return << u"knStart"_s;
    QTest::newRow("Return on the check box") << Qt::Key_Return << u"cbAuto"_s;
    QTest::newRow("space on the start button") << Qt::Key_Space << u"knStart"_s;
}

void TestHauptfensterTasten::eingabeStartet()
{
    QFETCH(Qt::Key, taste);
    QFETCH(QString, ort);
    Fensterwelt p;
    oeffnen(p);
    QWidget *ziel = p.fenster.get();
    if (!ort.isEmpty()) {
        ziel = p.teil(ort);
        ziel->setFocus(Qt::TabFocusReason);
    }
    p.stand = std::nullopt;
    QTest::keyClick(ziel, taste);
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Letzter Blick in die Cloud …"_s);
    p.netz.beantworten(Scripttransport::antwort(200, "{}"));
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(!p.ablauf.einst.autostart);
}

void TestHauptfensterTasten::eingabeDruecktDenVerweis()
{
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    QTest::keyClick(p.knopf(u"knUpdate"_s), Qt::Key_Return);
    QCOMPARE(p.arbeitsplatz.adressen.size(), 1);
    QTest::keyClick(p.knopf(u"knCountdown"_s), Qt::Key_Return);
    QVERIFY(p.countdown().isEmpty());
    QTest::keyClick(p.knopf(u"lnkAbgleich"_s), Qt::Key_Return);
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse(), QStringList({u"vorstart"_s, u"hand"_s}));
    QVERIFY(p.standfragen().isEmpty()); // no last look
}

// A Return that is still held from elsewhere.
void TestHauptfensterTasten::gehalteneEingabeStartetNicht()
{
    Fensterwelt p;
    oeffnen(p);
    QKeyEvent gehalten(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(p.fenster.get(), &gehalten);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
}

void TestHauptfensterTasten::escapeBrichtNurDenCountdownAb()
{
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    QVERIFY(!p.countdown().isEmpty());
    QTest::keyClick(p.teil(u"cbAuto"_s), Qt::Key_Escape);
    QVERIFY(p.countdown().isEmpty());
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.ablauf.einst.autostart);
    QTest::keyClick(p.fenster.get(), Qt::Key_Escape);
    QVERIFY(p.fenster->isVisible());
}

void TestHauptfensterTasten::strgW()
{
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    QTest::keyClick(p.fenster.get(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Zubehoer);
}

void TestHauptfensterTasten::strgM()
{
    Fensterwelt p;
    oeffnen(p);
    QTest::keyClick(p.fenster.get(), Qt::Key_M, Qt::ControlModifier);
    QVERIFY(p.fenster->isMinimized());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
}

void TestHauptfensterTasten::strgH()
{
    Fensterwelt p;
    oeffnen(p);
    QTest::keyClick(p.fenster.get(), Qt::Key_H, Qt::ControlModifier);
    QVERIFY(!p.fenster->isVisible());
}

void TestHauptfensterTasten::strgQ_data()
{
    QTest::addColumn<bool>("allein");
    QTest::newRow("the program lives in the menu bar") << false;
    QTest::newRow("picture mode") << true;
}

void TestHauptfensterTasten::strgQ()
{
    QFETCH(bool, allein);
    Fensterwelt p({.verbleib = allein ? Verbleib::Allein : Verbleib::Menueleiste});
    oeffnen(p);
    const bool beendet = beendetDasProgramm(
        [&] { QTest::keyClick(p.fenster.get(), Qt::Key_Q, Qt::ControlModifier); });
    QCOMPARE(beendet, allein);
    if (!allein) {
        QCOMPARE(p.beendenGewuenscht, 1);
        QVERIFY(p.fenster->isVisible());
    }
}

void TestHauptfensterTasten::leertasteAufDemHaken()
{
    Fensterwelt p;
    oeffnen(p);
    p.teil(u"cbAuto"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(p.teil(u"cbAuto"_s), Qt::Key_Space);
    QVERIFY(p.ablauf.einst.autostart);
    QVERIFY(Einstellungen().autostart);
    QVERIFY(p.standfragen().isEmpty());
}

// The focus would jump to the next control, where Return does something else.
void TestHauptfensterTasten::fokusBleibtAufDemVerweis()
{
    Fensterwelt p;
    oeffnen(p);
    p.teil(u"lnkAbgleich"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(p.teil(u"lnkAbgleich"_s), Qt::Key_Return);
    Fensterwelt::ruhe();
    QVERIFY(p.beschaeftigt());
    QCOMPARE(fokus(), u"lnkAbgleich"_s);
    for (const Qt::Key taste : {Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyClick(QApplication::focusWidget(), taste);
        Fensterwelt::ruhe();
    }
    p.beantworten(Fensterwelt::gut());
    QVERIFY(!p.beschaeftigt());
    QCOMPARE(fokus(), u"lnkAbgleich"_s);
    QCOMPARE(p.anlaesse(), QStringList({u"vorstart"_s, u"hand"_s}));
    QVERIFY(p.standfragen().isEmpty());
    QVERIFY(!p.ablauf.einst.autostart);
}

void TestHauptfensterTasten::abbrechenLaesstDenFokusRuhen_data()
{
    QTest::addColumn<Qt::Key>("taste");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("Escape") << Qt::Key_Escape;
}

// Whoever presses it twice wants nothing to start.
void TestHauptfensterTasten::abbrechenLaesstDenFokusRuhen()
{
    QFETCH(Qt::Key, taste);
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    p.teil(u"knCountdown"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(p.teil(u"knCountdown"_s), taste);
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(fokus(), u"hauptfenster"_s);
    for (const Qt::Key zweite : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        QTest::keyClick(QApplication::focusWidget(), zweite);
        Fensterwelt::ruhe();
    }
    QVERIFY(p.standfragen().isEmpty());
    QVERIFY(p.ablauf.einst.autostart);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(fokus(), u"knUpdate"_s); // from the top
    // A window that comes anew is as it ever was.
    p.fenster->setFocus();
    p.fenster->verstecken();
    p.fenster->oeffnen(false);
    QCOMPARE(wohin(p), u"knStart"_s);
}

void TestHauptfensterTasten::abbrechenMitDerMaus()
{
    Fensterwelt p({.autostart = true});
    oeffnen(p);
    const QImage ohneRing = p.teil(u"knStart"_s)->grab().toImage();
    p.teil(u"knCountdown"_s)->setFocus(Qt::MouseFocusReason);
    QTest::mouseClick(p.teil(u"knCountdown"_s), Qt::LeftButton);
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(fokus(), u"knStart"_s);
    QCOMPARE(p.teil(u"knStart"_s)->grab().toImage(), ohneRing);
}

void TestHauptfensterTasten::fokusRuhtWaehrendRekordboxLaeuft()
{
    Fensterwelt p;
    oeffnen(p);
    QTest::keyClick(p.teil(u"knStart"_s), Qt::Key_Return);
    QTRY_VERIFY(!p.fenster->isVisible());
    p.rekordboxGestartet();
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(wohin(p), u"hauptfenster"_s);
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    for (const Qt::Key taste : {Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyClick(p.fenster->focusWidget(), taste);
    }
    QVERIFY(!p.ablauf.einst.autostart);
    p.rekordboxBeendet();
    p.fenster->oeffnen(false);
    Fensterwelt::ruhe();
    QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
    QCOMPARE(wohin(p), u"knStart"_s);
}

void TestHauptfensterTasten::letzterBlickLaesstDenFokusRuhen()
{
    Fensterwelt p;
    oeffnen(p);
    p.stand = std::nullopt;
    QTest::keyClick(p.teil(u"knStart"_s), Qt::Key_Space);
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Letzter Blick in die Cloud …"_s);
    QCOMPARE(fokus(), u"hauptfenster"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!p.ablauf.einst.autostart);
    // The state has changed, so a sync comes first; where the button is back, so is the focus.
    p.netz.beantworten(Scripttransport::antwort(200, R"({"ausstehend":true})"));
    Fensterwelt::ruhe();
    QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
    QCOMPARE(fokus(), u"knStart"_s);
    QVERIFY(p.beschaeftigt());
}

// It looks as it is: pressing it does nothing before the sync is over.
void TestHauptfensterTasten::startknopfOhneWirkung()
{
    Fensterwelt p;
    oeffnen(p);
    const auto bild = [&] { return p.teil(u"knStart"_s)->grab().toImage(); };
    const QImage bunt = bild();
    p.knopf(u"lnkAbgleich"_s)->click();
    Fensterwelt::ruhe();
    QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
    QVERIFY(bild() != bunt);
    QCOMPARE(p.knopf(u"knStart"_s)->toolTip(),
             u"Erst nach dem Abgleich: Solange er läuft, startet dieser Knopf nichts."_s);
    p.beantworten(Fensterwelt::gut());
    QCOMPARE(bild(), bunt);
    QVERIFY(p.knopf(u"knStart"_s)->toolTip().isEmpty());

    // Disabled during the last look, it says nothing else.
    p.stand = std::nullopt;
    p.knopf(u"knStart"_s)->click();
    Fensterwelt::ruhe();
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    QCOMPARE(p.knopf(u"knStart"_s)->toolTip(),
             u"Der Start läuft schon: rekordbox kommt, sobald die Cloud geantwortet hat."_s);
}

KALVARO_FENSTERTEST(TestHauptfensterTasten)
#include "tst_hauptfenster_tasten.moc"
