#include "doubles/vorlesehilfe.h"
#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

#include <QAccessible>
#include <QMenuBar>

#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString abgeglichen =
    u"Bibliothek ist abgeglichen. Auf dem neuesten Stand – es gab nichts zu übertragen."_s;
const QString beginnt = u"rekordbox startet in 5 s"_s;
const QString abgebrochen = u"Start von rekordbox abgebrochen"_s;

QString rekordboxLaeuft()
{
    return u"rekordbox läuft. "_s + rekordboxLaeuftDetail;
}

} // namespace

// What a screen reader is asked to say about the window.
class TestHauptfensterAnsagen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        hilfe.emplace();
    }
    void cleanup() { hilfe.reset(); }

    void jedesUrteilEinmal();
    void dasselbeUrteilNachEinemNeuenAbgleich();
    void nichtJedeSekunde();
    void nichtsAusDemVerborgenenFenster();
    void alterStandNachDemLetztenBlick();
    void rekordboxLaeuftSchon();
    void countdownBeginntUndWirdAbgebrochen_data();
    void countdownBeginntUndWirdAbgebrochen();
    void countdownDerStartet();
    void fensterIstEinFenster();
    void zahlenHeissenNachDemWasSieZaehlen();

private:
    Datenordner &daten = Testumgebung::ordner();
    std::optional<Vorlesehilfe> hilfe;
};

void TestHauptfensterAnsagen::jedesUrteilEinmal()
{
    Fensterwelt p;
    p.abgeglichen();
    QCOMPARE(hilfe->ansagen(), QStringList{abgeglichen});
    p.uhr.vor(Sekunden(30));
    p.fenster->oeffnen(false); // comes forward again
    Fensterwelt::ruhe();
    QCOMPARE(hilfe->ansagen(), QStringList());
}

void TestHauptfensterAnsagen::dasselbeUrteilNachEinemNeuenAbgleich()
{
    Fensterwelt p;
    p.abgeglichen();
    p.abgeglichen();
    QCOMPARE(hilfe->ansagen(), (QStringList{abgeglichen, abgeglichen}));
}

void TestHauptfensterAnsagen::nichtJedeSekunde()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    p.uhr.vor(Sekunden(5));
    QCOMPARE(hilfe->ansagen(), QStringList());
}

void TestHauptfensterAnsagen::nichtsAusDemVerborgenenFenster()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    p.fenster->verstecken();
    p.beantworten(Fensterwelt::gut());
    Fensterwelt::ruhe();
    QCOMPARE(hilfe->ansagen(), QStringList());
}

// What was known before is shown again; it is no news.
void TestHauptfensterAnsagen::alterStandNachDemLetztenBlick()
{
    Fensterwelt p;
    p.abgeglichen();
    QCOMPARE(hilfe->ansagen(), QStringList{abgeglichen});
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    Fensterwelt::ruhe();
    QCOMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(!hilfe->ansagen().contains(abgeglichen));
}

void TestHauptfensterAnsagen::rekordboxLaeuftSchon()
{
    Fensterwelt p;
    p.laeuft(1, 1);
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(hilfe->ansagen(), QStringList{rekordboxLaeuft()});
}

void TestHauptfensterAnsagen::countdownBeginntUndWirdAbgebrochen_data()
{
    using Tat = std::function<void(Fensterwelt &)>;
    QTest::addColumn<Tat>("tat");
    const auto klick = [](const char *name) {
        return Tat([=](Fensterwelt &p) {
            QTest::mouseClick(p.knopf(QString::fromLatin1(name)), Qt::LeftButton, {}, {8, 8});
        });
    };
    QTest::newRow("\"Abbrechen\"") << klick("knCountdown");
    QTest::newRow("unticking the check box") << klick("cbAuto");
    QTest::newRow("a sync") << klick("lnkAbgleich");
    QTest::newRow("opening the settings") << klick("lnkEinstellungen");
    QTest::newRow("Escape") << Tat(
        [](Fensterwelt &p) { QTest::keyClick(p.fenster.get(), Qt::Key_Escape); });
}

void TestHauptfensterAnsagen::countdownBeginntUndWirdAbgebrochen()
{
    QFETCH(std::function<void(Fensterwelt &)>, tat);
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    QCOMPARE(hilfe->ansagen(), (QStringList{abgeglichen, beginnt}));
    p.uhr.vor(Sekunden(3));
    QCOMPARE(hilfe->ansagen(), QStringList());
    tat(p);
    QCOMPARE(hilfe->ansagen().value(0), abgebrochen);
    tat(p);
    QVERIFY(!hilfe->ansagen().contains(abgebrochen)); // there was none any more
}

// What was announced happens, so nothing was cancelled.
void TestHauptfensterAnsagen::countdownDerStartet()
{
    for (const bool gleich : {false, true}) {
        Fensterwelt p({.autostart = true});
        p.abgeglichen();
        if (gleich) {
            QTest::mouseClick(p.knopf(u"knStart"_s), Qt::LeftButton);
        } else {
            p.uhr.vor(Sekunden(5));
        }
        Fensterwelt::ruhe();
        QCOMPARE(p.arbeitsplatz.starts.size(), 1);
        QCOMPARE(hilfe->ansagen(), (QStringList{abgeglichen, beginnt, rekordboxLaeuft()}));
    }
}

void TestHauptfensterAnsagen::fensterIstEinFenster()
{
    const Fensterwelt p;
    const QAccessibleInterface *const zugang =
        QAccessible::queryAccessibleInterface(p.fenster.get());
    QCOMPARE(zugang->role(), QAccessible::Window);
    QCOMPARE(zugang->text(QAccessible::Name), u"kalvaro"_s);
    QVERIFY(zugang->childCount() > 0);
}

void TestHauptfensterAnsagen::zahlenHeissenNachDemWasSieZaehlen()
{
    const auto namen = [](const Fensterwelt &p) {
        QStringList liste;
        for (int i = 0; i < 4; ++i) {
            liste.append(QAccessible::queryAccessibleInterface(p.teil(u"zahlen%1"_s.arg(i)))
                             ->text(QAccessible::Name));
        }
        return liste;
    };
    Fensterwelt p;
    QCOMPARE(namen(p),
             (QStringList{u"Titel: –"_s, u"Playlisten: –"_s, u"Hot Cues: –"_s, u"Musik: –"_s}));
    p.abgeglichen();
    const QStringList danach = namen(p);
    QCOMPARE(danach[0], u"Titel: "_s + p.text(u"zahlen0"_s));
    QCOMPARE(danach[3], u"Musik: "_s + p.text(u"zahlen3"_s));
    QVERIFY(!danach[0].endsWith(u'–') && !danach[3].endsWith(u'–'));
}

KALVARO_FENSTERTEST(TestHauptfensterAnsagen)
#include "tst_hauptfenster_ansagen.moc"
