// Thousands of syncs leave nothing behind: no timer, no object, no memory.

#include "steuerungswelt.h"
#include "testlauf.h"

#include <malloc.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Answers everything at once and keeps nothing.
class Sofortcloud final : public Transport
{
public:
    void senden(const Netzanfrage &, QObject *besitzer, Rueckruf fertig) override
    {
        const auto &antwort = antworten[nummer++ % antworten.size()];
        QMetaObject::invokeMethod(
            besitzer, [antwort, ruf = std::move(fertig)] { ruf(antwort); }, Qt::QueuedConnection);
    }

private:
    qsizetype nummer = 0;
    const QList<Ergebnis> antworten{
        abgleichAntwort(u"aktuell"_s), abgleichAntwort(u"verschoben"_s, angebot(u"2.0"_s)),
        abgleichAntwort(u"fehler"_s), Scripttransport::fehler(u"Verbindung weg."_s)};
};

} // namespace

class TestDauerlauf final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void abgleiche_data()
    {
        QTest::addColumn<bool>("mitFenster");
        QTest::newRow("in the background") << false;
        QTest::newRow("with a window") << true;
    }
    void abgleiche()
    {
        QFETCH(const bool, mitFenster);
        constexpr int anzahl = 10'000;
        constexpr int vorlauf = 500;
        Steuerungswelt p;
        Sofortcloud cloud;
        p.rekordboxLaeuft(false, 0, 1); // keeps the first sync of a background start away
        p.starten(true, {}, &cloud);
        p.vor(15);
        p.rekordboxZu();
        if (mitFenster) {
            p.steuerung->zeigen(true);
        }
        abgleichen(p, vorlauf);
        const auto termine = p.uhr.offen();
        const auto objekte = objektzahl(p);
        const auto speicher = ::mallinfo2().uordblks;

        abgleichen(p, anzahl);

        QCOMPARE(gerufen, vorlauf + anzahl);
        QCOMPARE(p.uhr.offen(), termine);
        QCOMPARE(termine, 2); // watch and catch-up
        QCOMPARE(objektzahl(p), objekte);
        // One object left behind by each sync would be more.
        const auto gewachsen = static_cast<qint64>(::mallinfo2().uordblks - speicher);
        QVERIFY2(gewachsen < 64 * anzahl, qPrintable(QString::number(gewachsen)));
    }

    void init() { gerufen = 0; }

private:
    // Syncs one after the other, and forgets what the doubles recorded of them.
    void abgleichen(Steuerungswelt &p, int anzahl)
    {
        for (int i = 0; i < anzahl; ++i) {
            p.abgleich(Anlass::Hand, [this](const Bewertung &) { ++gerufen; });
            p.vor(1);
            p.mitteilungen.alle.clear();
            p.statusobjekt.symbole.clear();
            p.statusobjekt.hinweise.clear();
            p.statusobjekt.verlauf.clear();
            p.prozesse.gefragt.clear();
        }
    }

    static qsizetype objektzahl(const Steuerungswelt &p)
    {
        const Hauptfenster *const fenster = p.steuerung->fenster();
        return p.ablauf->zentrale.findChildren<QObject *>().size() +
               p.steuerung->findChildren<QObject *>().size() +
               (fenster != nullptr ? fenster->findChildren<QObject *>().size() : 0);
    }

    int gerufen = 0;
};

KALVARO_FENSTERTEST(TestDauerlauf)
#include "tst_dauerlauf.moc"
