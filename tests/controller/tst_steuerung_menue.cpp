// What the rows of the menu do, the start of rekordbox from there, and the offer of a new version.

#include "steuerungswelt.h"
#include "testlauf.h"

#include <QAction>
#include <QJsonArray>
#include <QMenu>
#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto passt = jsonAntwort({{u"ausstehend"_s, false}});
const auto ausstehend = jsonAntwort({{u"ausstehend"_s, true}});

QJsonObject anderes(const QString &schluessel)
{
    return {{u"andere"_s, QJsonArray{QJsonObject{{u"name"_s, u"Studio"_s}, {schluessel, true}}}}};
}

const QString studioOffen =
    u"Auf „Studio“ ist rekordbox noch offen – Änderungen von dort fehlen hier noch."_s;

} // namespace

class TestSteuerungMenue final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { p = std::make_unique<Steuerungswelt>(); }
    void cleanup() { p.reset(); }

    void oeffnen()
    {
        p->starten();

        waehlen(u"kalvaro öffnen"_s);

        QVERIFY(p->steuerung->fensterSichtbar());
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
    }

    void oeffnenWaehrendRekordboxLaeuft()
    {
        p->rekordboxOffen();
        p->starten();

        waehlen(u"kalvaro öffnen"_s);

        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"rekordbox läuft"_s);
        QVERIFY(p->anlaesse().isEmpty());
    }

    void abgleichen()
    {
        p->starten();

        waehlen(u"Jetzt abgleichen"_s);

        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
        QVERIFY(!p->steuerung->fenster());
    }

    // Choosing "Beim Anmelden starten" twice returns the agent file to its former state.
    void anmeldestartZweimal_data()
    {
        QTest::addColumn<bool>("vorher");
        QTest::newRow("off") << false;
        QTest::newRow("on") << true;
    }
    void anmeldestartZweimal()
    {
        QFETCH(const bool, vorher);
        p->anmeldestart.setzen(vorher);
        p->starten();

        waehlen(u"Beim Anmelden starten"_s);
        QCOMPARE(p->anmeldestart.an(), !vorher);
        QCOMPARE(p->zeile(u"Beim Anmelden starten"_s)->isChecked(), !vorher);

        waehlen(u"Beim Anmelden starten"_s);
        QCOMPARE(p->anmeldestart.an(), vorher);
        QCOMPARE(p->zeile(u"Beim Anmelden starten"_s)->isChecked(), vorher);
        QCOMPARE(p->anmeldestart.gesetzt(), (QList{vorher, !vorher, vorher}));
    }

    // The row tells what is, not what was asked for.
    void anmeldestartGehtNicht()
    {
        p->starten();
        p->anmeldestart.verweigern();

        waehlen(u"Beim Anmelden starten"_s);

        QVERIFY(!p->zeile(u"Beim Anmelden starten"_s)->isChecked());
    }

    void hakenBeimAufklappen()
    {
        p->starten();
        const QAction *const zeile = p->zeile(u"Beim Anmelden starten"_s);
        p->anmeldestart.setzen(true); // by the settings window, say
        QVERIFY(!zeile->isChecked());

        Q_EMIT p->statusobjekt.menue->aboutToShow();
        QVERIFY(zeile->isChecked());

        p->anmeldestart.setzen(false);
        Q_EMIT p->statusobjekt.menue->aboutToShow();
        QVERIFY(!zeile->isChecked());
    }

    void beenden_data()
    {
        QTest::addColumn<bool>("mitFenster");
        QTest::newRow("without a window") << false;
        QTest::newRow("with a window") << true;
    }
    void beenden()
    {
        QFETCH(const bool, mitFenster);
        p->starten();
        if (mitFenster) {
            p->steuerung->zeigen(false);
        }
        QSignalSpy ende(qApp, &QCoreApplication::aboutToQuit);
        QMetaObject::invokeMethod(
            this, [this] { p->zeile(u"kalvaro beenden"_s)->trigger(); }, Qt::QueuedConnection);

        QCOMPARE(QCoreApplication::exec(), 0);

        QCOMPARE(ende.size(), 1);
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"beendet"_s});
        if (mitFenster) {
            p->arbeitsplatz.auftritte.clear();
            p->steuerung->fenster()->show();
            p->steuerung->fenster()->close();
            QVERIFY(p->arbeitsplatz.auftritte.isEmpty()); // closed for good, not hidden
        }
    }

    void startOhneAbgleich_data()
    {
        QTest::addColumn<QList<Transport::Ergebnis>>("stand");
        QTest::addColumn<QString>("zeile");
        QTest::addColumn<QList<Mitteilung>>("mitteilungen");
        using Antworten = QList<Transport::Ergebnis>;
        const QList<Mitteilung> keine;
        QTest::newRow("nothing waits")
            << Antworten{passt} << u"Startprüfung: Stand passt"_s << keine;
        QTest::newRow("remark about another device")
            << Antworten{jsonAntwort(anderes(u"rekordbox_offen"_s))}
            << u"Startprüfung: Stand passt | "_s + studioOffen
            << QList<Mitteilung>{{u"rekordbox startet"_s, studioOffen, {}}};
        QTest::newRow("no connection") << Antworten{Scripttransport::fehler(u"Verbindung weg."_s)}
                                       << u"Startprüfung ohne Antwort: Verbindung weg."_s << keine;
        QTest::newRow("an error of the server")
            << Antworten{Scripttransport::antwort(500)}
            << u"Startprüfung ohne Antwort: Die Cloud antwortet mit 500."_s << keine;
        QTest::newRow("no answer within 8 s")
            << Antworten()
            << u"Startprüfung ohne Antwort: Die Cloud hat nicht rechtzeitig geantwortet."_s
            << keine;
    }
    void startOhneAbgleich()
    {
        QFETCH(const QList<Transport::Ergebnis>, stand);
        QFETCH(const QString, zeile);
        QFETCH(const QList<Mitteilung>, mitteilungen);
        const QString buendel = p->installieren(u"7.1.4"_s);
        p->staende = stand;
        p->starten();

        waehlen(u"rekordbox starten"_s);
        p->vor(8);

        QCOMPARE(p->anfragen(), QStringList{u"GET http://cloud/api/stand?geraet=mac1"_s});
        QCOMPARE(p->arbeitsplatz.starts, QStringList{buendel});
        QCOMPARE(Steuerungswelt::protokoll(), (QStringList{zeile, u"rekordbox 7.1.4 gestartet"_s}));
        QCOMPARE(p->mitteilungen.alle, mitteilungen);
        QVERIFY(!p->steuerung->fenster());
    }

    void startNachAbgleich_data()
    {
        QTest::addColumn<Transport::Ergebnis>("stand");
        QTest::addColumn<QString>("zustand");
        QTest::addColumn<bool>("startet");
        QTest::newRow("changes wait; synced") << ausstehend << u"abgeglichen"_s << true;
        QTest::newRow("another device transfers; synced")
            << jsonAntwort(anderes(u"laeuft"_s)) << u"abgeglichen"_s << true;
        QTest::newRow("the sync was deferred") << ausstehend << u"verschoben"_s << true;
        QTest::newRow("the sync failed") << ausstehend << u"fehler"_s << false;
        QTest::newRow("the sync was stopped") << ausstehend << u"angehalten"_s << false;
        QTest::newRow("the cloud is busy") << ausstehend << u"laeuft_schon"_s << false;
        QTest::newRow("unknown outcome") << ausstehend << u"xyz"_s << false;
    }
    void startNachAbgleich()
    {
        QFETCH(const Transport::Ergebnis, stand);
        QFETCH(const QString, zustand);
        QFETCH(const bool, startet);
        p->installieren(u"7.1.4"_s);
        p->staende = {stand};
        p->starten();

        waehlen(u"rekordbox starten"_s);
        QVERIFY(p->steuerung->fensterSichtbar());
        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"Bibliothek wird abgeglichen …"_s);
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
        p->netz.beantworten(abgleichAntwort(zustand));
        p->vor();

        QCOMPARE(p->arbeitsplatz.starts.size(), startet ? 1 : 0);
        QCOMPARE(p->steuerung->fensterSichtbar(), !startet);
        QVERIFY(p->mitteilungen.alle.isEmpty());
        p->vor(60);
        QCOMPARE(p->arbeitsplatz.starts.size(), startet ? 1 : 0); // nor by a countdown
    }

    // A run of the window's own is in progress: it is not joined, and nothing starts after it.
    void startWaehrendDasFensterBeschaeftigtIst()
    {
        p->installieren(u"7.1.4"_s);
        p->starten(false);
        QVERIFY(p->netz.haengend() > 0);
        p->steuerung->fenster()->verstecken();
        p->staende = {ausstehend};

        waehlen(u"rekordbox starten"_s);
        QVERIFY(p->steuerung->fensterSichtbar());
        p->netz.beantworten(gut);
        p->vor(60);

        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
    }

    void startGewaehlteVersion_data()
    {
        QTest::addColumn<QString>("gewaehlt");
        QTest::addColumn<QString>("gestartet");
        QTest::newRow("no choice: the newest") << QString() << u"7.1.4"_s;
        QTest::newRow("the chosen one") << u"6.8.5"_s << u"6.8.5"_s;
        QTest::newRow("the chosen one is gone: the newest") << u"5.0.0"_s << u"7.1.4"_s;
    }
    void startGewaehlteVersion()
    {
        QFETCH(const QString, gewaehlt);
        QFETCH(const QString, gestartet);
        p->installieren(u"6.8.5"_s);
        p->installieren(u"7.1.4"_s);
        Steuerungswelt::ordner().schreiben(u"einstellungen.json"_s,
                                           "{\"version\":\"" + gewaehlt.toUtf8() + "\"}");
        p->staende = {passt};
        p->starten();

        waehlen(u"rekordbox starten"_s);

        QCOMPARE(p->arbeitsplatz.starts, QStringList{p->installieren(gestartet)});
    }

    void startUnmoeglich()
    {
        p->starten();
        waehlen(u"rekordbox starten"_s); // not installed
        p->installieren(u"7.1.4"_s);
        p->rekordboxLaeuft(false, 1, 0);
        waehlen(u"rekordbox starten"_s); // runs already

        QVERIFY(p->netz.anfragen().isEmpty());
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
    }

    // The agent that rekordbox leaves behind is no rekordbox that runs.
    void startNebenDemAgenten()
    {
        p->installieren(u"7.1.4"_s);
        p->staende = {passt};
        p->rekordboxLaeuft(false, 0, 1);
        p->starten();

        waehlen(u"rekordbox starten"_s);

        QCOMPARE(p->arbeitsplatz.starts.size(), 1);
    }

    void doppelterStart()
    {
        p->installieren(u"7.1.4"_s);
        p->starten();
        waehlen(u"rekordbox starten"_s);
        waehlen(u"rekordbox starten"_s);
        QCOMPARE(p->anfragen().size(), 1);
        p->netz.beantworten(passt);
        p->vor();
        QCOMPARE(p->arbeitsplatz.starts.size(), 1);

        p->staende = {passt};
        waehlen(u"rekordbox starten"_s); // the check is over: a new one may begin

        QCOMPARE(p->anfragen().size(), 2);
        QCOMPARE(p->arbeitsplatz.starts.size(), 2);
    }

    void waehrendDerPruefungGeschah_data()
    {
        QTest::addColumn<bool>("noetig");
        QTest::addColumn<bool>("rekordboxStartet");
        for (const bool noetig : {false, true}) {
            QTest::addRow("rekordbox started, sync %s", noetig ? "needed" : "not needed")
                << noetig << true;
            QTest::addRow("installation gone, sync %s", noetig ? "needed" : "not needed")
                << noetig << false;
        }
    }
    void waehrendDerPruefungGeschah()
    {
        QFETCH(const bool, noetig);
        QFETCH(const bool, rekordboxStartet);
        p->installieren(u"7.1.4"_s);
        p->starten();
        waehlen(u"rekordbox starten"_s);

        if (rekordboxStartet) {
            p->rekordboxLaeuft(false, 1, 0);
        } else {
            p->deinstallieren(u"7.1.4"_s);
        }
        p->netz.beantworten(noetig ? ausstehend : passt);
        p->vor();

        QVERIFY(p->arbeitsplatz.starts.isEmpty());
        QVERIFY(p->anlaesse().isEmpty());
        QVERIFY(!p->steuerung->fenster());
    }

private:
    void waehlen(const QString &text)
    {
        p->zeile(text)->trigger();
        p->vor();
    }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungMenue)
#include "tst_steuerung_menue.moc"
