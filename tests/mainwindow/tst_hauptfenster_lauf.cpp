#include "democloud.h"
#include "mainwindow/fensterwelt.h"
#include "server/netztransport.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// One whole run against the demo cloud over a real connection; only the seconds are virtual.
class TestHauptfensterLauf final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vomOeffnenBisZumStart();
    void cloudFehlt();

private:
    static Fensterwelt::Aufbau aufbau(Transport &netz, const QString &adresse)
    {
        return {.autostart = true,
                .netz = &netz,
                .server = {adresse},
                .geraet = u"demo-mac"_s,
                .schluessel = u"demo-schluessel"_s};
    }

    Datenordner &daten = Testumgebung::ordner();
};

void TestHauptfensterLauf::vomOeffnenBisZumStart()
{
    Democloud cloud;
    QVERIFY(cloud.starten());
    Testuhr netzuhr;
    Netztransport netz(netzuhr);
    Fensterwelt p(aufbau(netz, cloud.adresse()));

    QString beimBeginn;
    connect(&p.ablauf.abgleicher, &Abgleicher::begonnen, this, [&] { beimBeginn = p.titel(); });
    p.fenster->oeffnen(true);
    QTRY_COMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(beimBeginn, u"Bibliothek wird abgeglichen …"_s);
    QCOMPARE(p.art(), Art::Gut);
    QVERIFY(p.text(u"zahlen0"_s) != u"–"_s);
    QVERIFY(p.text(u"lblZeile2"_s).startsWith(u"Stand der Cloud: "_s));
    QVERIFY(p.teil(u"pille"_s)->isVisible());

    QList<Startschritt> schritte;
    connect(&p.ablauf.starter, &Rekordboxstarter::weiter, this,
            [&](Startschritt schritt) { schritte.append(schritt); });
    for (const int sekunden : {5, 4, 3, 2, 1}) {
        QCOMPARE(p.countdown(), u"rekordbox startet in %1 s  ·"_s.arg(sekunden));
        p.uhr.vor(Sekunden(1));
    }
    QTRY_COMPARE(p.arbeitsplatz.starts, QStringList(p.buendel(u"7.1.4"_s)));
    QCOMPARE(schritte, (QList{Startschritt::Fragt, Startschritt::Prueft, Startschritt::Startet}));
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QVERIFY(!p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte,
             (QList{Arbeitsplatz::Auftritt::Regulaer, Arbeitsplatz::Auftritt::Zubehoer}));
    QCOMPARE(p.uhr.offen(), 0);

    QStringList pfade;
    const auto anfragen = cloud.anfragen();
    for (const Anfrage &anfrage : anfragen) {
        pfade.append(anfrage.pfad);
    }
    QCOMPARE(pfade, QStringList({u"/api/status"_s, u"/api/abgleich"_s, u"/api/stand"_s}));
    QCOMPARE(daten.protokollzeilen(),
             QStringList({u"Startprüfung: Stand passt"_s, u"rekordbox 7.1.4 gestartet"_s}));
}

// Then rekordbox starts with what is here.
void TestHauptfensterLauf::cloudFehlt()
{
    daten.leeren();
    QString adresse;
    {
        Democloud cloud;
        QVERIFY(cloud.starten());
        adresse = cloud.adresse();
    }
    Testuhr netzuhr;
    Netztransport netz(netzuhr);
    Fensterwelt p(aufbau(netz, adresse));
    p.fenster->oeffnen(true);
    QTRY_COMPARE(p.titel(), u"Nicht abgeglichen"_s);
    QCOMPARE(p.text(u"lblZeile2"_s),
             u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s);
    p.uhr.vor(Sekunden(5));
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(daten.protokollzeilen().first().startsWith(u"Startprüfung ohne Antwort: "_s));
}

KALVARO_FENSTERTEST(TestHauptfensterLauf)
#include "tst_hauptfenster_lauf.moc"
