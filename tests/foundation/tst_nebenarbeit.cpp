#include "foundation/nebenarbeit.h"
#include "testlauf.h"

#include <QThread>

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace kalvaro;

namespace {

// Work that begins when the test says so, and lasts until then.
class Schranke
{
public:
    void warten()
    {
        std::unique_lock sperre(schloss);
        da = true;
        bewegt.notify_all();
        bewegt.wait(sperre, [this] { return offen; });
    }
    void erwarten()
    {
        std::unique_lock sperre(schloss);
        bewegt.wait(sperre, [this] { return da; });
    }
    void oeffnen()
    {
        const std::lock_guard sperre(schloss);
        offen = true;
        bewegt.notify_all();
    }

private:
    std::mutex schloss;
    std::condition_variable bewegt;
    bool da = false;
    bool offen = false;
};

} // namespace

class TestNebenarbeit final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void laeuftNebenherUndAntwortetHier();
    void ergebnisseKommenDerReiheNach();
    void besitzerWegMittendrin();
    void besitzerWegVorherLaeuftGarNicht();
    void endetAuchMitEinemAnderen();
    void nachEinerPauseGehtEsWeiter();
    void ergebnisWirdNichtKopiert();
};

void TestNebenarbeit::laeuftNebenherUndAntwortetHier()
{
    QObject besitzer;
    Schranke schranke;
    std::thread::id wo;
    QThread *hier = nullptr;
    new Nebenarbeit<int>(
        [&](const Abbruch &) {
            wo = std::this_thread::get_id();
            schranke.warten();
            return 1;
        },
        &besitzer, [&](int) { hier = QThread::currentThread(); });
    schranke.erwarten();
    QCoreApplication::processEvents(); // goes on meanwhile
    QVERIFY(hier == nullptr);
    schranke.oeffnen();
    QTRY_COMPARE(hier, QThread::currentThread());
    QVERIFY(wo != std::this_thread::get_id());
}

void TestNebenarbeit::ergebnisseKommenDerReiheNach()
{
    QObject besitzer;
    QList<int> gekommen;
    QList<int> erwartet;
    std::atomic<int> zugleich = 0;
    std::atomic<int> meiste = 0;
    for (int i = 0; i < 50; ++i) {
        erwartet.append(i);
        new Nebenarbeit<int>(
            [&, i](const Abbruch &) {
                meiste = std::max<int>(meiste, ++zugleich);
                --zugleich;
                return i;
            },
            &besitzer, [&](int wert) { gekommen.append(wert); });
    }
    QTRY_COMPARE(gekommen.size(), erwartet.size());
    QCOMPARE(gekommen, erwartet);
    QCOMPARE(meiste.load(), 1);
}

void TestNebenarbeit::besitzerWegMittendrin()
{
    auto besitzer = std::make_unique<QObject>();
    Schranke schranke;
    std::atomic<bool> gemerkt = false;
    bool gerufen = false;
    new Nebenarbeit<int>(
        [&](const Abbruch &abbruch) {
            schranke.warten();
            gemerkt = abbruch();
            return 1;
        },
        besitzer.get(), [&](int) { gerufen = true; });
    schranke.erwarten();
    besitzer.reset();
    schranke.oeffnen();
    QObject andere;
    bool fertig = false;
    new Nebenarbeit<int>([](const Abbruch &) { return 2; }, &andere, [&](int) { fertig = true; });
    QTRY_VERIFY(fertig);
    QVERIFY(gemerkt);
    QVERIFY(!gerufen);
}

void TestNebenarbeit::besitzerWegVorherLaeuftGarNicht()
{
    QObject besitzer;
    auto zweiter = std::make_unique<QObject>();
    Schranke schranke;
    std::atomic<bool> gelaufen = false;
    bool fertig = false;
    new Nebenarbeit<int>(
        [&](const Abbruch &) {
            schranke.warten();
            return 1;
        },
        &besitzer, [](int) {});
    new Nebenarbeit<int>(
        [&](const Abbruch &) {
            gelaufen = true;
            return 2;
        },
        zweiter.get(), [](int) {});
    new Nebenarbeit<int>([](const Abbruch &) { return 3; }, &besitzer, [&](int) { fertig = true; });
    schranke.erwarten();
    zweiter.reset();
    schranke.oeffnen();
    QTRY_VERIFY(fertig);
    QVERIFY(!gelaufen);
}

void TestNebenarbeit::endetAuchMitEinemAnderen()
{
    QObject besitzer;
    auto anderer = std::make_unique<QObject>();
    Schranke schranke;
    bool gerufen = false;
    bool fertig = false;
    (new Nebenarbeit<int>(
         [&](const Abbruch &) {
             schranke.warten();
             return 1;
         },
         &besitzer, [&](int) { gerufen = true; }))
        ->endetMit(anderer.get());
    new Nebenarbeit<int>([](const Abbruch &) { return 2; }, &besitzer, [&](int) { fertig = true; });
    schranke.erwarten();
    anderer.reset();
    schranke.oeffnen();
    QTRY_VERIFY(fertig);
    QVERIFY(!gerufen);
}

void TestNebenarbeit::nachEinerPauseGehtEsWeiter()
{
    QObject besitzer;
    for (int runde = 0; runde < 20; ++runde) {
        int gekommen = -1;
        new Nebenarbeit<int>([runde](const Abbruch &) { return runde; }, &besitzer,
                             [&](int wert) { gekommen = wert; });
        QTRY_COMPARE(gekommen, runde);
    }
}

void TestNebenarbeit::ergebnisWirdNichtKopiert()
{
    struct Zaehler
    {
        std::shared_ptr<int> kopien = std::make_shared<int>(0);
        Zaehler() = default;
        Zaehler(const Zaehler &z)
            : kopien(z.kopien)
        {
            ++*kopien;
        }
        Zaehler(Zaehler &&) = default;
        Zaehler &operator=(const Zaehler &) = default;
        Zaehler &operator=(Zaehler &&) = default;
        ~Zaehler() = default;
    };
    QObject besitzer;
    int kopien = -1;
    new Nebenarbeit<Zaehler>([](const Abbruch &) { return Zaehler(); }, &besitzer,
                             [&](const Zaehler &z) { kopien = *z.kopien; });
    QTRY_COMPARE(kopien, 0);
}

KALVARO_TEST(TestNebenarbeit)
#include "tst_nebenarbeit.moc"
