// What the controller does when rekordbox starts and quits, when time passes and when the computer
// wakes.

#include "steuerungswelt.h"
#include "testlauf.h"

#include <QJsonArray>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto offline = Scripttransport::fehler(u"Verbindung weg."_s);

const QString guterTitel = u"Bibliothek ist abgeglichen"_s;
const QString gutZeile =
    u"  -> gut: Bibliothek ist abgeglichen | Auf dem neuesten Stand – es gab nichts zu "
    "übertragen."_s;

const Mitteilung warnung{
    u"Neue Änderungen warten"_s,
    u"rekordbox wurde geöffnet, bevor die neuesten Änderungen übernommen waren. Schließe rekordbox "
    "kurz – kalvaro übernimmt sie sofort."_s,
    {}};

} // namespace

class TestSteuerungWache final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { p = std::make_unique<Steuerungswelt>(); }
    void cleanup() { p.reset(); }

    void gestartetOhneFenster()
    {
        ruhigStarten();
        p->statusobjekt.verlauf.clear();
        p->rekordboxOffen();
        p->vor(2.9);
        QVERIFY(p->statusobjekt.verlauf.isEmpty());

        p->vor(0.1);

        QCOMPARE(p->statusobjekt.verlauf,
                 (QStringList{u"Hinweis kalvaro – rekordbox läuft"_s, u"Symbol icloud"_s}));
        QCOMPARE(p->kopf(), u"rekordbox läuft   (18:07)"_s);
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"rekordbox gestartet"_s});
        QCOMPARE(p->anfragen(), QStringList{u"GET http://cloud/api/stand?geraet=mac1"_s});
        QCOMPARE(p->netz.anfragen().last().limit, Sekunden(8));
        QVERIFY(!p->steuerung->fenster());
    }

    void gestartetMitFenster_data()
    {
        QTest::addColumn<bool>("sichtbar");
        QTest::newRow("visible") << true;
        QTest::newRow("hidden") << false;
    }
    void gestartetMitFenster()
    {
        QFETCH(const bool, sichtbar);
        p->installieren(u"7.1.4"_s);
        mitCountdown();
        if (!sichtbar) {
            p->steuerung->fenster()->hide(); // the countdown runs on
        }
        p->rekordboxOffen();

        p->vor(3);

        const QString titel = sichtbar ? u"rekordbox läuft"_s : guterTitel;
        const QString detail =
            sichtbar ? u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch."_s
                     : u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s;
        QCOMPARE(p->beschriftung(u"lblTitel"_s), titel);
        QCOMPARE(p->beschriftung(u"lblDetail"_s), detail);
        QCOMPARE(p->beschriftung(u"knStart"_s),
                 sichtbar ? u"rekordbox läuft"_s : u"rekordbox 7.1.4 starten"_s);
        QCOMPARE(p->beschriftung(u"lblCountdown"_s).isEmpty(), sichtbar);
        QCOMPARE(p->steuerung->fensterSichtbar(), sichtbar);
    }

    // "1" and "true" warn, whatever form the server gives them; nothing else does.
    void ausstehend_data()
    {
        QTest::addColumn<QJsonValue>("wert");
        QTest::addColumn<bool>("warnt");
        QTest::newRow("the text 1") << QJsonValue(u"1"_s) << true;
        QTest::newRow("the text true") << QJsonValue(u"true"_s) << true;
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("the number 1") << QJsonValue(1) << true;
        QTest::newRow("yes") << QJsonValue(u"yes"_s) << false;
        QTest::newRow("the text True") << QJsonValue(u"True"_s) << false;
        QTest::newRow("the text 0") << QJsonValue(u"0"_s) << false;
        QTest::newRow("the text false") << QJsonValue(u"false"_s) << false;
        QTest::newRow("false") << QJsonValue(false) << false;
        QTest::newRow("the number 0") << QJsonValue(0) << false;
        QTest::newRow("the number 2") << QJsonValue(2) << false;
        QTest::newRow("null") << QJsonValue(QJsonValue::Null) << false;
        QTest::newRow("a list") << QJsonValue(QJsonArray{1}) << false;
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << false;
    }
    void ausstehend()
    {
        QFETCH(const QJsonValue, wert);
        QFETCH(const bool, warnt);
        QJsonObject stand{{u"geraet"_s, u"mac1"_s}};
        stand.insert(u"ausstehend"_s, wert); // inserting what is undefined inserts nothing

        p->staende = {jsonAntwort(stand)};

        QCOMPARE(mitteilungenNachStart(), warnt ? QList{warnung} : QList<Mitteilung>());
    }

    // "Schließe rekordbox kurz" was posted when it had been closed already.
    void ausstehendErstNachDemBeenden()
    {
        p->starten();
        p->vor(15);
        p->netz.beantworten(gut);
        p->rekordboxOffen();
        p->vor(3);
        QCOMPARE(p->netz.haengend(), 1);
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(3);
        QCOMPARE(p->netz.haengend(), 0); // nobody waits for the answer

        p->staende = {jsonAntwort({{u"ausstehend"_s, true}})};
        p->rekordboxOffen(); // and opened again: asked anew
        p->vor(3);

        QCOMPARE(p->mitteilungen.alle, QList{warnung});
    }

    void ausstehendOhneAntwort_data()
    {
        QTest::addColumn<QList<Transport::Ergebnis>>("stand");
        using Antworten = QList<Transport::Ergebnis>;
        QTest::newRow("no connection") << Antworten{offline};
        QTest::newRow("an error of the server")
            << Antworten{Scripttransport::antwort(500, "{\"ausstehend\":true}")};
        QTest::newRow("no JSON") << Antworten{Scripttransport::antwort(200, "ausstehend")};
        QTest::newRow("no answer within 8 s") << Antworten();
    }
    void ausstehendOhneAntwort()
    {
        QFETCH(const QList<Transport::Ergebnis>, stand);
        p->staende = stand;

        QVERIFY(mitteilungenNachStart().isEmpty());

        p->vor(8);
        QVERIFY(p->mitteilungen.alle.isEmpty());
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"rekordbox gestartet"_s});
    }

    // rekordbox is open: the window does not tell this, so the warning is posted beside it too.
    void ausstehendNebenDemFenster()
    {
        p->starten(true);
        p->steuerung->zeigen(false);
        p->staende = {jsonAntwort({{u"ausstehend"_s, true}})};
        p->rekordboxOffen();

        p->vor(3);

        QCOMPARE(p->mitteilungen.alle, QList{warnung});
    }

    void geraetInDerAdresse()
    {
        p->konto.geraet = u"Küche & Bar"_s;
        p->staende = {jsonAntwort({})};
        mitteilungenNachStart();

        QCOMPARE(p->anfragen(),
                 QStringList{u"GET http://cloud/api/stand?geraet=K%C3%BCche%20&%20Bar"_s});
    }

    void beendetOhneFenster()
    {
        sitzungBeginnen();
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(3);
        QCOMPARE(p->kopf(), u"rekordbox beendet – warte aufs Speichern   (18:07)"_s);
        QVERIFY(Steuerungswelt::protokoll().isEmpty());
        p->vor(60);
        QVERIFY(p->anlaesse().isEmpty());

        p->rekordboxZu();
        p->abgleiche = {gut};
        p->vor(3);

        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});
        QCOMPARE(Steuerungswelt::protokoll(),
                 (QStringList{u"rekordbox beendet"_s, u"Abgleich (nachher) ..."_s, gutZeile}));
        QCOMPARE(
            p->mitteilungen.alle,
            (QList<Mitteilung>{
                {guterTitel, u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s, {}}}));
    }

    void beendetMitFenster()
    {
        p->installieren(u"7.1.4"_s);
        sitzungBeginnen();
        p->steuerung->zeigen(false);
        p->rekordboxZu();
        p->vor(3);
        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"Änderungen werden übertragen …"_s);
        QCOMPARE(p->beschriftung(u"lblDetail"_s), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});

        p->netz.beantworten(gut);
        p->vor();

        QCOMPARE(p->beschriftung(u"lblTitel"_s), guterTitel);
        QCOMPARE(p->beschriftung(u"knStart"_s), u"rekordbox 7.1.4 starten"_s);
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    // A window that shows the transfer shows its end too, hidden or not: the counter of its seconds
    // would run on for ever.
    void fensterWaehrendDesAbgleichsVersteckt()
    {
        sitzungBeginnen();
        p->steuerung->zeigen(false);
        p->rekordboxZu();
        p->vor(3);
        p->steuerung->fenster()->verstecken();
        p->abgleiche = {gut}; // for the first sync of the background start

        p->netz.beantworten(gut);
        p->vor(60);

        QCOMPARE(p->beschriftung(u"lblTitel"_s), guterTitel);
        QCOMPARE(p->mitteilungen.alle.size(), 1);
        QCOMPARE(p->uhr.offen(), 2);
    }

    // Whether the window is visible is asked anew when the outcome is there.
    void fensterWaehrendDesAbgleichsGeoeffnet()
    {
        sitzungBeginnen();
        p->rekordboxZu();
        p->vor(3);
        p->steuerung->zeigen(false);

        p->netz.beantworten(gut);
        p->vor();

        QCOMPARE(p->beschriftung(u"lblTitel"_s), guterTitel);
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    // A window in the dock or task bar is up to date when it comes back.
    void abgelegtesFensterBleibtAktuell()
    {
        sitzungBeginnen();
        p->steuerung->zeigen(false);
        p->steuerung->fenster()->showMinimized();
        p->rekordboxZu();
        p->abgleiche = {gut};

        p->vor(3);

        QCOMPARE(p->beschriftung(u"lblTitel"_s), guterTitel);
        QCOMPARE(p->mitteilungen.alle.size(), 1);
    }

    void agentSpeichertZuLange()
    {
        sitzungBeginnen();
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(93); // seen to quit after 3 s, so 90 s of waiting
        QVERIFY(p->anlaesse().isEmpty());

        p->vor(3);

        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});
    }

    // rekordbox already running when the controller starts: no "rekordbox gestartet", no warning
    // check; quitting it later still leads to the "nachher" sync.
    void liefSchonBeimStart()
    {
        p->rekordboxOffen();
        p->starten(true);
        p->vor(30);
        QVERIFY(p->netz.anfragen().isEmpty());
        QVERIFY(Steuerungswelt::protokoll().isEmpty());

        p->rekordboxZu();
        p->vor(3);

        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});
        QCOMPARE(Steuerungswelt::protokoll(),
                 (QStringList{u"rekordbox beendet"_s, u"Abgleich (nachher) ..."_s}));
    }

    // rekordbox quits and is reopened within the waiting period: no sync.
    void waehrendDesWartensWiederGeoeffnet()
    {
        sitzungBeginnen();
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(30);
        p->rekordboxOffen();
        p->vor(300);

        QVERIFY(p->anlaesse().isEmpty());
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"rekordbox gestartet"_s});
    }

private:
    // A background start whose first sync is over.
    void ruhigStarten()
    {
        p->starten(true);
        p->abgleiche = {gut};
        p->vor(15);
        p->netz.vergessen();
        Steuerungswelt::ordner().leeren();
    }

    // rekordbox runs since the start.
    void sitzungBeginnen()
    {
        p->rekordboxOffen();
        p->starten(true);
    }

    // A visible window whose countdown has just begun.
    void mitCountdown()
    {
        Steuerungswelt::ordner().schreiben(u"einstellungen.json"_s, "{\"autostart\":true}");
        p->abgleiche = {gut};
        p->starten(false);
        QCOMPARE(p->beschriftung(u"lblCountdown"_s), u"rekordbox startet in 5 s  ·"_s);
    }

    // What is posted when rekordbox is seen to start.
    QList<Mitteilung> mitteilungenNachStart()
    {
        p->starten(true);
        p->rekordboxOffen();
        p->vor(3);
        return p->mitteilungen.alle;
    }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungWache)
#include "tst_steuerung_wache.moc"
