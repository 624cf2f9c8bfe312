// One day in virtual time, with the real controller, window and server client.

#include "steuerungswelt.h"
#include "testlauf.h"

#include <QAction>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto offline = Scripttransport::fehler(u"Verbindung weg."_s);
const auto passt = jsonAntwort({{u"ausstehend"_s, false}});

const QString gutZeile =
    u"  -> gut: Bibliothek ist abgeglichen | Auf dem neuesten Stand – es gab nichts zu "
    "übertragen."_s;
const QString offlineZeile =
    u"  -> warn: Nicht abgeglichen | Keine Verbindung zur Cloud – rekordbox startet mit dem Stand "
    "dieses Macs. (Verbindung weg.)"_s;

constexpr double stunde = 3600;

} // namespace

class TestTagesablauf final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each step goes on from the one before.
    void initTestCase()
    {
        p = std::make_unique<Steuerungswelt>();
        Steuerungswelt::ordner().schreiben(u"einstellungen.json"_s, "{\"autostart\":true}");
        buendel = p->installieren(u"7.1.4"_s);
    }
    void cleanupTestCase() { p.reset(); }

    void anmeldung() // 18:07
    {
        p->starten(true);
        p->vor(15);
        QCOMPARE(p->kopf(), u"gleicht ab …   (18:07)"_s);
        p->vor(50);
        p->netz.beantworten(gut);
        p->vor();

        QCOMPARE(p->kopf(), u"Bibliothek ist abgeglichen   (18:08)"_s);
        neu({u"Abgleich (anmeldung) ..."_s, gutZeile});
        QVERIFY(!p->steuerung->fenster());
    }

    void oeffnenUndCountdown() // 20:00
    {
        p->vor(2 * stunde - 8 * 60 - 5);
        p->zeile(u"kalvaro öffnen"_s)->trigger();
        p->vor(4);
        QCOMPARE(p->beschriftung(u"lblDetail"_s),
                 u"kalvaro vergleicht diesen Mac mit der Cloud  (4 s)"_s);
        p->netz.beantworten(gut);
        p->vor();
        QCOMPARE(p->beschriftung(u"lblCountdown"_s), u"rekordbox startet in 5 s  ·"_s);
        p->vor(4);
        QCOMPARE(p->beschriftung(u"lblCountdown"_s), u"rekordbox startet in 1 s  ·"_s);
        p->vor(1);
        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"Letzter Blick in die Cloud …"_s);
        p->netz.beantworten(passt);
        p->vor();

        QCOMPARE(p->arbeitsplatz.starts, QStringList{buendel});
        QVERIFY(!p->steuerung->fensterSichtbar());
        neu({u"Abgleich (vorstart) ..."_s, gutZeile, u"Startprüfung: Stand passt"_s,
             u"rekordbox 7.1.4 gestartet"_s});
    }

    void rekordboxLaeuft() // 20:00 to 23:00
    {
        p->rekordboxOffen();
        p->staende = {jsonAntwort({{u"ausstehend"_s, u"1"_s}})};
        p->vor(3);
        QCOMPARE(p->mitteilungen.alle.size(), 1);
        QCOMPARE(p->mitteilungen.alle.takeFirst().titel, u"Neue Änderungen warten"_s);
        p->arbeitsplatz.geweckt();
        p->vor(3 * stunde);

        neu({u"rekordbox gestartet"_s});
        QCOMPARE(p->kopf().first(15), u"rekordbox läuft"_s);
        QCOMPARE(p->uhr.offen(), 2);
    }

    void beendetUndOffline() // 23:00
    {
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(40);
        QCOMPARE(p->statusobjekt.hinweis(),
                 u"kalvaro – rekordbox beendet – warte aufs Speichern"_s);
        p->rekordboxZu();
        p->abgleiche = {offline};
        p->vor(3);

        neu({u"rekordbox beendet"_s, u"Abgleich (nachher) ..."_s, offlineZeile});
        QCOMPARE(p->statusobjekt.hinweis(), u"kalvaro – Nicht abgeglichen (offline)"_s);
        QCOMPARE(p->statusobjekt.symbol(), u"icloud.slash"_s);
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    void nachholen() // every 600 s from the start on
    {
        const QDateTime beginn(QDate(2026, 3, 13), QTime(18, 7));
        const qint64 seit = beginn.msecsTo(p->uhr.jetzt());
        const QString beschaeftigt =
            u"  -> warn: Cloud ist beschäftigt | Ein anderer Abgleich läuft "
            "noch. kalvaro versucht es gleich wieder."_s;
        const QString zeile = u"Abgleich (nachholen) ..."_s;
        p->abgleiche = {offline, abgleichAntwort(u"laeuft_schon"_s), gut};

        p->vor(600 - double(seit % 600'000) / 1000 - 0.1);
        neu({});
        p->vor(0.1);
        neu({zeile, offlineZeile});
        p->vor(600);
        neu({zeile, beschaeftigt});
        p->vor(600);
        neu({zeile, gutZeile});
        p->vor(3600 - 600);
        neu({});
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    void angebotUeberMitternacht()
    {
        QCOMPARE(p->uhr.jetzt().date(), QDate(2026, 3, 14));
        p->abgleiche = {abgleichAntwort(u"aktuell"_s, angebot(u"1.5"_s)),
                        abgleichAntwort(u"aktuell"_s, angebot(u"1.5"_s)),
                        abgleichAntwort(u"aktuell"_s, angebot(u"1.5"_s))};
        p->arbeitsplatz.geweckt();
        p->vor(20);
        p->zeile(u"Jetzt abgleichen"_s)->trigger();
        p->vor();
        neu({u"Abgleich (aufgewacht) ..."_s, gutZeile, u"neue Version 1.5 gemeldet"_s,
             u"Abgleich (hand) ..."_s, gutZeile});
        QCOMPARE(p->mitteilungen.alle.size(), 1);
        p->vor(24 * stunde);
        p->zeile(u"Jetzt abgleichen"_s)->trigger();
        p->vor();

        neu({u"Abgleich (hand) ..."_s, gutZeile, u"neue Version 1.5 gemeldet"_s});
        QCOMPARE(p->mitteilungen.alle.size(), 2);
        p->mitteilungen.klicken(1);
        p->zeile(u"Version 1.5 herunterladen …"_s)->trigger();
        QCOMPARE(p->arbeitsplatz.adressen, QList<QUrl>(2, QUrl(u"https://kalvaro.example/1.5"_s)));
    }

    void beenden()
    {
        p->zeile(u"kalvaro beenden"_s)->trigger();

        neu({u"beendet"_s});
        QCOMPARE(p->uhr.offen(), 2);
        QCOMPARE(p->anlaesse(), (QStringList{u"anmeldung"_s, u"vorstart"_s, u"nachher"_s,
                                             u"nachholen"_s, u"nachholen"_s, u"nachholen"_s,
                                             u"aufgewacht"_s, u"hand"_s, u"hand"_s}));
    }

private:
    // The log has exactly these new lines.
    void neu(const QStringList &zeilen)
    {
        gelesen += zeilen;
        QCOMPARE(Steuerungswelt::protokoll(), gelesen);
    }

    std::unique_ptr<Steuerungswelt> p;
    QString buendel;
    QStringList gelesen;
};

KALVARO_FENSTERTEST(TestTagesablauf)
#include "tst_tagesablauf.moc"
