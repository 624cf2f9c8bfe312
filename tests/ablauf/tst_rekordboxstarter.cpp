#include "ablauf/ablauf.h"
#include "doubles/testumgebung.h"
#include "testlauf.h"

#include <QJsonArray>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QString name(Startschritt schritt)
{
    switch (schritt) {
    case Startschritt::Ruht:
        return u"ruht"_s;
    case Startschritt::Fragt:
        return u"fragt"_s;
    case Startschritt::Wartet:
        return u"wartet"_s;
    case Startschritt::Prueft:
        return u"prueft"_s;
    case Startschritt::GleichtAb:
        return u"gleicht ab"_s;
    case Startschritt::Startet:
        return u"startet"_s;
    }
    Q_UNREACHABLE();
}

const auto passt = jsonAntwort({{u"ausstehend"_s, false}});
const auto ausstehend = jsonAntwort({{u"ausstehend"_s, true}});
const auto gut = abgleichAntwort(u"aktuell"_s);
const auto fehler = abgleichAntwort(u"fehler"_s);

} // namespace

// The one start, step by step, and who hears what of it.
class TestRekordboxstarter final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        welt = std::make_unique<Testumgebung>(QStringList{u"7.1.4"_s});
        ablauf = std::make_unique<Ablauf>(welt->konto, welt->umgebung);
        verlauf.clear();
        Rekordboxstarter *const s = &ablauf->starter;
        s->installationenLesen();
        connect(s, &Rekordboxstarter::weiter, this,
                [this](Startschritt schritt, Startschritt) { verlauf.append(name(schritt)); });
        connect(s, &Rekordboxstarter::abgeglichen, this,
                [this](const Bewertung &b) { verlauf.append(artname(b.art)); });
        connect(s, &Rekordboxstarter::belegt, this, [this] { verlauf.append(u"belegt"_s); });
        connect(s, &Rekordboxstarter::laeuft, this, [this] { verlauf.append(u"läuft"_s); });
        connect(s, &Rekordboxstarter::gescheitert, this,
                [this](const QString &grund) { verlauf.append(u"gescheitert: "_s + grund); });
        connect(s, &Rekordboxstarter::hinweis, this,
                [this](const QString &) { verlauf.append(u"Hinweis"_s); });
        connect(s, &Rekordboxstarter::fensterNoetig, this,
                [this] { verlauf.append(u"Fenster"_s); });
    }
    void cleanup()
    {
        ablauf.reset();
        welt.reset();
    }

    void schritte_data()
    {
        using Antworten = QList<Transport::Ergebnis>;
        QTest::addColumn<bool>("menue");
        QTest::addColumn<Antworten>("staende");
        QTest::addColumn<Antworten>("abgleiche");
        QTest::addColumn<QStringList>("erwartet");
        QTest::addColumn<int>("starts");
        QTest::newRow("window: all is well")
            << false << Antworten{passt} << Antworten()
            << QStringList{u"fragt"_s, u"prueft"_s, u"startet"_s, u"läuft"_s} << 1;
        QTest::newRow("window: a sync is needed")
            << false << Antworten{ausstehend} << Antworten{gut}
            << QStringList{u"fragt"_s, u"prueft"_s,  u"gleicht ab"_s,
                           u"gut"_s,   u"startet"_s, u"läuft"_s}
            << 1;
        QTest::newRow("window: the sync fails")
            << false << Antworten{ausstehend} << Antworten{fehler}
            << QStringList{u"fragt"_s, u"prueft"_s, u"gleicht ab"_s, u"krit"_s, u"ruht"_s} << 0;
        QTest::newRow("menu: all is well")
            << true << Antworten{passt} << Antworten() << QStringList() << 1;
        QTest::newRow("menu: a sync is needed")
            << true << Antworten{ausstehend} << Antworten{gut}
            << QStringList{u"Fenster"_s, u"gleicht ab"_s, u"gut"_s, u"startet"_s, u"läuft"_s} << 1;
        QTest::newRow("menu: the sync fails")
            << true << Antworten{ausstehend} << Antworten{fehler}
            << QStringList{u"Fenster"_s, u"gleicht ab"_s, u"krit"_s, u"ruht"_s} << 0;
    }
    void schritte()
    {
        QFETCH(const bool, menue);
        QFETCH(const QList<Transport::Ergebnis>, staende);
        QFETCH(const QList<Transport::Ergebnis>, abgleiche);
        welt->staende = staende;
        welt->abgleiche = abgleiche;
        starten(menue);
        QTEST(verlauf, "erwartet");
        QTEST(static_cast<int>(welt->arbeitsplatz.starts.size()), "starts");
        QCOMPARE(ablauf->starter.schritt(), Startschritt::Ruht);
    }

    // rekordbox was started into the middle of it.
    void wartetAufEinenLaufendenAbgleich_data()
    {
        QTest::addColumn<bool>("menue");
        QTest::newRow("from the window") << false;
        QTest::newRow("from the menu, where the look comes first") << true;
    }
    void wartetAufEinenLaufendenAbgleich()
    {
        QFETCH(const bool, menue);
        ablauf->abgleicher.abgleich(Anlass::Nachholen);
        welt->staende = {passt, passt};
        starten(menue);
        QVERIFY(welt->arbeitsplatz.starts.isEmpty());
        QCOMPARE(ablauf->starter.schritt(), Startschritt::Wartet);
        welt->netz.beantworten(gut);
        welt->vor();
        QCOMPARE(welt->arbeitsplatz.starts.size(), 1);
        QCOMPARE(verlauf,
                 (menue ? QStringList{u"Fenster"_s} : QStringList{u"fragt"_s}) +
                     QStringList({u"wartet"_s, u"gut"_s, u"prueft"_s, u"startet"_s, u"läuft"_s}));
        QCOMPARE(welt->anlaesse(), {u"nachholen"_s});
    }

    void rekordboxLaeuftNachDemWarten()
    {
        ablauf->abgleicher.abgleich(Anlass::Nachholen);
        starten(false);
        welt->rekordboxLaeuft(false, 0, 1);
        welt->netz.beantworten(gut);
        welt->vor();
        QCOMPARE(verlauf, QStringList({u"fragt"_s, u"wartet"_s, u"gut"_s, u"ruht"_s}));
        QVERIFY(welt->wege().filter(u"stand"_s).isEmpty());
    }

    void agentLaeuftWoEinAbgleichNoetigWaere()
    {
        welt->staende = {ausstehend};
        welt->rekordboxLaeuft(false, 0, 1);
        starten(false);
        QCOMPARE(verlauf, QStringList({u"fragt"_s, u"prueft"_s, u"ruht"_s, u"belegt"_s}));
        QVERIFY(welt->anlaesse().isEmpty());
        QVERIFY(ablauf->abgleicher.geschuldet());
    }

    void scheitert_data()
    {
        QTest::addColumn<bool>("menue");
        QTest::newRow("from the window") << false;
        QTest::newRow("from the menu: only the log tells") << true;
    }
    void scheitert()
    {
        QFETCH(const bool, menue);
        welt->staende = {passt};
        welt->arbeitsplatz.fehler = u"kaputt"_s;
        starten(menue);
        QCOMPARE(verlauf.contains(u"gescheitert: kaputt"_s), !menue);
        QCOMPARE(Testumgebung::protokoll().last(), u"rekordbox 7.1.4 gestartet"_s);
        QCOMPARE(ablauf->starter.schritt(), Startschritt::Ruht);
    }

    void versprechenNachDemStart_data()
    {
        QTest::addColumn<bool>("scheitert");
        QTest::newRow("it started") << false;
        QTest::newRow("it could not be started") << true;
    }
    // A rekordbox that was gone again between two looks of the watch: the sync that the window had
    // promised never came.
    void versprechenNachDemStart()
    {
        QFETCH(const bool, scheitert);
        welt->staende = {passt};
        welt->arbeitsplatz.fehler = scheitert ? std::optional(u"kaputt"_s) : std::nullopt;
        starten(false);
        QCOMPARE(ablauf->abgleicher.geschuldet(), !scheitert);
    }

    void versprechenWoRekordboxSchonLaeuft()
    {
        welt->rekordboxLaeuft(false, 1, 0);
        starten(false);
        QCOMPARE(verlauf, QStringList({u"fragt"_s, u"ruht"_s, u"läuft"_s}));
        QVERIFY(ablauf->abgleicher.geschuldet());
    }

    void ausDemMenueImmerFrischGelesen()
    {
        welt->programme.deinstallieren(u"7.1.4"_s);
        starten(true);
        QVERIFY(welt->wege().isEmpty());
        const QString buendel = welt->programme.installieren(u"6.8.5"_s);
        welt->staende = {passt};
        starten(true);
        QCOMPARE(welt->arbeitsplatz.starts, {buendel});
    }

    void hinweisVorDemStart()
    {
        const QJsonObject anderes{{u"name"_s, u"Studio"_s}, {u"rekordbox_offen"_s, true}};
        welt->staende = {jsonAntwort({{u"andere"_s, QJsonArray{anderes}}})};
        starten(true);
        QCOMPARE(verlauf, {u"Hinweis"_s});
        QCOMPARE(welt->arbeitsplatz.starts.size(), 1);
    }

private:
    void starten(bool menue)
    {
        using Herkunft = Rekordboxstarter::Herkunft;
        ablauf->starter.starten(menue ? Herkunft::Menue : Herkunft::Fenster);
        welt->vor();
    }

    std::unique_ptr<Testumgebung> welt;
    std::unique_ptr<Ablauf> ablauf;
    QStringList verlauf;
};

KALVARO_TEST(TestRekordboxstarter)
#include "tst_rekordboxstarter.moc"
