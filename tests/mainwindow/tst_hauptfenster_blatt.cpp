#include "mainwindow/fensterwelt.h"
#include "settingswindow/einstellungenfenster.h"
#include "testlauf.h"

#include <QAccessible>
#include <QCheckBox>
#include <QPointer>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The window while its settings sheet is open.
class TestHauptfensterBlatt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keinCountdownHinterDemBlatt();
    void wiederOeffnenBeginntKeinenCountdown();
    void abgewaehltUndGesichert();
    void verstecktSichMitDemFenster();
    void rekordboxStartNimmtDasBlattMit();
    void hilfenDrueckenDerReiheNach();

private:
    static EinstellungenFenster *blatt(const Fensterwelt &p)
    {
        auto *const gefunden = p.fenster->findChild<EinstellungenFenster *>();
        if (gefunden == nullptr) {
            qFatal("The window has no sheet");
        }
        return gefunden;
    }
    static EinstellungenFenster *blattOeffnen(const Fensterwelt &p)
    {
        p.knopf(u"lnkEinstellungen"_s)->click();
        Fensterwelt::ruhe();
        return blatt(p);
    }
    static void zehnSekunden(Fensterwelt &p)
    {
        p.vor(10);
        QVERIFY(p.countdown().isEmpty());
        QVERIFY(p.arbeitsplatz.starts.isEmpty());
    }
};

// Opened during the opening sync: rekordbox was started from behind it.
void TestHauptfensterBlatt::keinCountdownHinterDemBlatt()
{
    Fensterwelt p({.autostart = true});
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    blattOeffnen(p);
    p.netz.beantworten(Fensterwelt::gut());
    zehnSekunden(p);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);

    blatt(p)->abbrechen(); // nor later for that outcome
    zehnSekunden(p);
}

// The program was started a second time: the window comes forward and syncs.
void TestHauptfensterBlatt::wiederOeffnenBeginntKeinenCountdown()
{
    for (const bool vorherZu : {false, true}) {
        Fensterwelt p({.autostart = true});
        p.fenster->oeffnen(false);
        EinstellungenFenster *const offenes = blattOeffnen(p);
        p.fenster->oeffnen(true);
        Fensterwelt::ruhe();
        QCOMPARE(p.anlaesse(), {u"vorstart"_s});
        QVERIFY(offenes->isVisible());
        if (vorherZu) {
            offenes->abbrechen();
        }
        p.netz.beantworten(Fensterwelt::gut(), p.netz.haengend() - 1);
        zehnSekunden(p);
    }
}

void TestHauptfensterBlatt::abgewaehltUndGesichert()
{
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    QVERIFY(!p.countdown().isEmpty());
    EinstellungenFenster *const offenes = blattOeffnen(p);
    QVERIFY(p.countdown().isEmpty());
    offenes->findChild<QCheckBox *>(u"cbAuto"_s)->setChecked(false);
    offenes->sichern();
    QVERIFY(!p.knopf(u"cbAuto"_s)->isChecked());
    zehnSekunden(p);
}

// The window went and the sheet stood alone.
void TestHauptfensterBlatt::verstecktSichMitDemFenster()
{
    Fensterwelt p;
    p.abgeglichen();
    EinstellungenFenster *const offenes = blattOeffnen(p);
    auto *const haken = offenes->findChild<QCheckBox *>(u"cbAuto"_s);
    haken->setChecked(true);
    p.fenster->verstecken();
    QVERIFY(!offenes->isVisible());

    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(blatt(p), offenes);
    QVERIFY(offenes->isVisible());
    QVERIFY(offenes->isModal());
    QVERIFY(haken->isChecked());
    QVERIFY(!p.ablauf.einst.autostart); // nothing was kept yet
    offenes->sichern();
    QVERIFY(p.ablauf.einst.autostart);
}

void TestHauptfensterBlatt::rekordboxStartNimmtDasBlattMit()
{
    Fensterwelt p;
    p.stand = std::nullopt;
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    EinstellungenFenster *const offenes = blattOeffnen(p);
    p.vor(8); // the last look ends without an answer
    QCOMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(!offenes->isVisible());
}

// A screen reader closed the sheet and opened it again at once: buttons go down before they act,
// links did not, so the sheet that was about to close came forward and went.
void TestHauptfensterBlatt::hilfenDrueckenDerReiheNach()
{
    Fensterwelt p;
    p.abgeglichen();
    const QPointer<EinstellungenFenster> erstes = blattOeffnen(p);
    const auto druecken = [](QWidget *knopf) {
        QAccessible::queryAccessibleInterface(knopf)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    };
    druecken(erstes->findChild<QAbstractButton *>(u"knAbbrechen"_s));
    druecken(p.knopf(u"lnkEinstellungen"_s));
    QTRY_VERIFY(!erstes);
    QTRY_VERIFY(p.fenster->findChild<EinstellungenFenster *>() != nullptr);
    QVERIFY(blatt(p)->isVisible());
}

KALVARO_FENSTERTEST(TestHauptfensterBlatt)
#include "tst_hauptfenster_blatt.moc"
