// Thousands of random steps, always the same ones: whatever user, rekordbox, server and time do,
// what must hold holds after each step.

#include "doubles/ereignisse.h"
#include "steuerungsprobe.h"
#include "testlauf.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QJsonDocument>
#include <QProxyStyle>
#include <QSet>

#include <random>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int schritte = 1500;
constexpr int rast = 100; // after so many steps everything is answered and must come to rest

const QStringList startbareZustaende{u"aktuell"_s, u"abgeglichen"_s, u"verschoben"_s,
                                     u"nicht_erreichbar"_s};
const QStringList andereZustaende{u"rekordbox_offen"_s, u"laeuft_schon"_s, u"angehalten"_s,
                                  u"fehler"_s, u"xyz"_s};

// Whether rekordbox may be started at once after that answer to a request for `weg`.
bool erlaubtStart(const QString &weg, const Transport::Ergebnis &ergebnis)
{
    const bool abgleich = weg == u"/api/abgleich";
    if (!ergebnis) {
        return true; // nobody there: rekordbox starts with the library as it is
    }
    if (ergebnis->status != 200) {
        return !abgleich;
    }
    const QJsonObject inhalt = QJsonDocument::fromJson(ergebnis->daten).object();
    if (abgleich) {
        return startbareZustaende.contains(inhalt[u"ergebnis"][u"zustand"].toString());
    }
    return weg == u"/api/stand" && !inhalt[u"ausstehend"].toBool();
}

// Turns nothing: the spinner's 30 pictures a second would be most of what the clock has to run.
class Ruhestil final : public QProxyStyle
{
public:
    int styleHint(StyleHint frage, const QStyleOption *lage, const QWidget *wer,
                  QStyleHintReturn *mehr) const override
    {
        return frage == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(frage, lage, wer, mehr);
    }
};

// Looks at what passes on its way to the server and back.
class Beobachter final : public Transport
{
public:
    explicit Beobachter(Steuerungsprobe &probe)
        : p(probe)
    {
    }

    void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) override
    {
        const QString weg = anfrage.url.path();
        const bool abgleich = weg == u"/api/abgleich";
        unterwegs += abgleich;
        meisteUnterwegs = std::max(meisteUnterwegs, unterwegs);
        p.netz.senden(anfrage, besitzer, [=, this](const Ergebnis &ergebnis) {
            unterwegs -= abgleich;
            const auto vorher = p.arbeitsplatz.starts.size();
            fertig(ergebnis);
            ereignisseAbarbeiten(); // answers go through the event loop
            const auto starts = p.arbeitsplatz.starts.size() - vorher;
            gestattet += starts;
            if (starts > 1 || (starts == 1 && (!erlaubtStart(weg, ergebnis) ||
                                               p.prozesse.laufend.value(u"rekordbox"_s) > 0))) {
                verstoesse.append(u"start after "_s + weg);
            }
        });
    }

    int unterwegs = 0;
    int meisteUnterwegs = 0;
    qsizetype gestattet = 0; // starts that followed an answer
    QStringList verstoesse;

private:
    Steuerungsprobe &p;
};

} // namespace

class TestZufallsfolge final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new Ruhestil); }

    void laeufe_data()
    {
        QTest::addColumn<unsigned>("anfang");
        for (const unsigned anfang : {1U, 2U}) {
            QTest::addRow("%u", anfang) << anfang;
        }
    }
    void laeufe()
    {
        QFETCH(const unsigned, anfang);
        Steuerungsprobe probe;
        Beobachter netz(probe);
        beginnen(probe, netz, anfang);

        for (int i = 1; i <= schritte; ++i) {
            const QString tat = schritt();
            const QString ort = u"step %1: %2"_s.arg(i).arg(tat);
            QVERIFY2(netz.meisteUnterwegs <= 1, qPrintable(ort));
            QVERIFY2(netz.verstoesse.isEmpty(), qPrintable(ort + netz.verstoesse.join(u' ')));
            QVERIFY2(probe.arbeitsplatz.starts.size() == netz.gestattet, qPrintable(ort));
            QVERIFY2(doppelt == 0, qPrintable(ort));
            QVERIFY2(probe.uhr.offen() <= hoechstens(), qPrintable(ort));
            if (i % rast == 0) {
                zurRuheKommen();
                QVERIFY2(ruht(), qPrintable(ort + lage()));
            }
        }
        // The steps were worth something.
        const QStringList anlaesse = probe.anlaesse();
        QVERIFY(anlaesse.size() > schritte / 20);
        QVERIFY(probe.arbeitsplatz.starts.size() > 10);
        QCOMPARE(QSet<QString>(anlaesse.begin(), anlaesse.end()).size(), 6);
        probe.beenden();
        QCOMPARE(probe.uhr.offen(), 0);
    }

private:
    void beginnen(Steuerungsprobe &probe, Transport &netz, unsigned anfang)
    {
        p = &probe;
        zufall = std::mt19937(anfang);
        gefragt = beantwortet = doppelt = 0;
        Steuerungsprobe::ordner().schreiben(u"einstellungen.json"_s, "{\"autostart\":true}");
        p->installieren(u"7.1.4"_s);
        p->starten(true, {}, &netz);
        p->vor(15);
    }

    int wuerfel(int seiten) { return std::uniform_int_distribution(0, seiten - 1)(zufall); }

    // Does one thing; returns what.
    QString schritt()
    {
        static const QList<std::pair<QString, void (TestZufallsfolge::*)()>> taten{
            {u"time"_s, &TestZufallsfolge::zeitVergeht},
            {u"time"_s, &TestZufallsfolge::zeitVergeht},
            {u"answer"_s, &TestZufallsfolge::antworten},
            {u"answer"_s, &TestZufallsfolge::antworten},
            {u"answer"_s, &TestZufallsfolge::antworten},
            {u"menu"_s, &TestZufallsfolge::menueWaehlen},
            {u"window"_s, &TestZufallsfolge::fensterBedienen},
            {u"rekordbox"_s, &TestZufallsfolge::rekordboxBewegen},
            {u"sync"_s, &TestZufallsfolge::abgleichen},
            {u"wake"_s, &TestZufallsfolge::aufwachen},
        };
        const auto &[name, tat] = taten.at(wuerfel(static_cast<int>(taten.size())));
        (this->*tat)();
        p->vor();
        return name;
    }

    void zeitVergeht()
    {
        constexpr double spannen[] = {0.1, 1, 1, 3, 3, 5, 20, 60, 300, 700};
        p->vor(spannen[wuerfel(std::size(spannen))]);
    }

    void antworten()
    {
        const auto haengend = static_cast<int>(p->netz.haengend());
        if (haengend > 0) {
            p->netz.beantworten(irgendeine(), wuerfel(haengend));
        }
    }

    // An answer that serves for a sync as well as for a question for the state.
    Transport::Ergebnis irgendeine()
    {
        switch (wuerfel(8)) {
        case 0:
            return Scripttransport::fehler(u"Verbindung weg."_s);
        case 1:
            return Scripttransport::antwort(500);
        case 2:
            return Scripttransport::antwort(200, "kein JSON");
        default:
            break;
        }
        const QStringList &zustaende = wuerfel(2) > 0 ? startbareZustaende : andereZustaende;
        QJsonObject mehr = wuerfel(4) > 0 ? QJsonObject() : angebot(u"2.0"_s);
        mehr.insert(u"ausstehend"_s, wuerfel(2) > 0);
        return abgleichAntwort(zustaende[wuerfel(static_cast<int>(zustaende.size()))], mehr);
    }

    void menueWaehlen()
    {
        const QStringList zeilen{u"kalvaro öffnen"_s, u"Jetzt abgleichen"_s, u"rekordbox starten"_s,
                                 u"rekordbox starten"_s, u"Beim Anmelden starten"_s};
        p->zeile(zeilen[wuerfel(static_cast<int>(zeilen.size()))])->trigger();
    }

    void fensterBedienen()
    {
        Hauptfenster *const fenster = p->steuerung->fenster();
        if (fenster == nullptr || !fenster->isVisible()) {
            return;
        }
        const QStringList knoepfe{u"knStart"_s, u"knCountdown"_s, u"lnkAbgleich"_s, u"cbAuto"_s};
        const int wahl = wuerfel(static_cast<int>(knoepfe.size()) + 2);
        if (wahl < knoepfe.size()) {
            fenster->findChild<QAbstractButton *>(knoepfe[wahl])->click();
        } else if (wahl == knoepfe.size()) {
            fenster->close();
        } else {
            fenster->showMinimized();
        }
    }

    // What was started comes up, or the user starts it; it quits, saves and is gone.
    void rekordboxBewegen()
    {
        const bool offen = !p->prozesse.buendelliste.isEmpty();
        const bool speichert = p->prozesse.laufend.value(u"rekordboxAgent"_s) > 0;
        if (offen) {
            p->rekordboxLaeuft(false, 0, wuerfel(2));
        } else if (speichert && wuerfel(3) > 0) {
            p->rekordboxZu();
        } else {
            p->rekordboxOffen();
        }
    }

    void abgleichen()
    {
        ++gefragt;
        p->abgleich(Anlass::Hand, [this, schon = std::make_shared<int>(0)](const auto &) {
            ++beantwortet;
            doppelt += (*schon)++ > 0;
        });
    }

    void aufwachen()
    {
        p->arbeitsplatz.geweckt();
        ++aufgewacht;
    }

    // Timers that may be due: the two ticks, the first sync, one for each wake since the last rest,
    // the window's countdown and counter, the limit of each hanging request.
    [[nodiscard]] qsizetype hoechstens() const
    {
        return 2 + 1 + aufgewacht + 2 + p->netz.haengend();
    }

    // Closes what is open and answers what hangs until nothing goes on.
    void zurRuheKommen()
    {
        p->rekordboxZu();
        p->vor(100);
        for (int i = 0; i < 20; ++i) {
            p->vor(10);
            while (p->netz.haengend() > 0) {
                p->netz.beantworten(abgleichAntwort(u"fehler"_s));
                p->vor();
            }
        }
        aufgewacht = 0;
    }

    [[nodiscard]] bool ruht() const
    {
        const Hauptfenster *const fenster = p->steuerung->fenster();
        return p->uhr.offen() == 2 && p->netz.haengend() == 0 && beantwortet == gefragt &&
               p->statusobjekt.symbol() != u"arrow.clockwise.icloud" &&
               (fenster == nullptr ||
                !!fenster->findChild<QAbstractButton *>(u"lnkAbgleich"_s)->isEnabled());
    }

    // What a failure needs to be understood.
    [[nodiscard]] QString lage() const
    {
        return u": %1 timers, %2 requests, %3 of %4 answered, %5, %6"_s.arg(p->uhr.offen())
            .arg(p->netz.haengend())
            .arg(beantwortet)
            .arg(gefragt)
            .arg(p->kopf(), p->beschriftung(u"lblTitel"_s));
    }

    Steuerungsprobe *p = nullptr;
    std::mt19937 zufall;
    int gefragt = 0;
    int beantwortet = 0;
    int doppelt = 0;
    qsizetype aufgewacht = 0;
};

KALVARO_FENSTERTEST(TestZufallsfolge)
#include "tst_zufallsfolge.moc"
