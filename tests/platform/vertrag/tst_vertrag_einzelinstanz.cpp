// At most one program runs for each data folder: what the starts of one promise each other.

#include "doubles/datenordner.h"
#include "prueflinge.h"
#include "testlauf.h"

#include <QElapsedTimer>

#include <csignal>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestVertragEinzelinstanz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Einzelinstanzpruefling>::zeilen(
            {u"linux, over the bus"_s, u"linux, without a bus"_s, u"macos"_s});
    }
    void init()
    {
        KALVARO_BRAUCHT(Vertrag<Einzelinstanzpruefling>::braucht());
        daten.leeren();
        p = Vertrag<Einzelinstanzpruefling>::neu();
    }
    void cleanup() { p.reset(); }

    void derZweiteSagtWasErWill()
    {
        const auto erster = p->start({});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        QStringList gewollt{u"erste"_s};
        for (const QString &was : {u"oeffnen"_s, u"abgleichen"_s, u"beenden"_s, u"hintergrund"_s}) {
            const auto zweiter = p->start({u"--"_s + was});
            QTRY_VERIFY(!zweiter->laeuft());
            QCOMPARE(worte(*zweiter), QStringList(u"zweite"_s));
            QCOMPARE(zweiter->ende(), 0);
            gewollt.append(was);
            QTRY_COMPARE(worte(*erster), gewollt);
        }
    }

    void leiseEndetOhneZuOeffnen()
    {
        const auto erster = p->start({});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        const auto leiser = p->start({u"--leise"_s});
        QTRY_VERIFY(!leiser->laeuft());
        QCOMPARE(worte(*leiser), QStringList(u"zweite"_s));
        QCOMPARE(leiser->ende(), 0);
        const auto lauter = p->start({});
        QTRY_COMPARE(worte(*erster), QStringList({u"erste"_s, u"oeffnen"_s}));
    }

    void nachAbsturzIstDerNaechsteDerErste()
    {
        const auto erster = p->start({});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        erster->signal(SIGKILL);
        QTRY_VERIFY(!erster->laeuft());
        const auto naechster = p->start({});
        QTRY_COMPARE(worte(*naechster), QStringList(u"erste"_s));
        const auto zweiter = p->start({});
        QTRY_COMPARE(worte(*naechster).value(1), u"oeffnen"_s);
    }

    void vieleZugleichErgebenEinen()
    {
        std::vector<std::unique_ptr<Kindprogramm>> starts;
        constexpr int viele = 40;
        for (int i = 0; i < viele; ++i) {
            starts.push_back(p->start({u"--leise"_s}));
        }
        QStringList alle;
        for (const auto &einer : starts) {
            QTRY_VERIFY_WITH_TIMEOUT(!worte(*einer).isEmpty(), 30'000);
            alle += worte(*einer).first();
        }
        QCOMPARE(alle.count(u"erste"_s), 1);
        QCOMPARE(alle.count(u"zweite"_s), viele - 1);
    }

    void eineFrueheBitteGehtNichtVerloren()
    {
        const auto erster = p->start({u"--spaet"_s});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        const auto zweiter = p->start({});
        QTRY_VERIFY(!zweiter->laeuft());
        const auto dritter = p->start({u"--abgleichen"_s});
        QTRY_VERIFY(!dritter->laeuft());
        erster->schreiben(u"los"_s);
        QTRY_COMPARE(worte(*erster), QStringList({u"erste"_s, u"oeffnen"_s, u"abgleichen"_s}));
    }

    // It takes what it was sent, even when nobody waits for that any more.
    void einErsterDerHaengtAntwortetNicht()
    {
        const auto erster = p->start({});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        erster->signal(SIGSTOP);
        QElapsedTimer dauer;
        dauer.start();
        const auto zweiter = p->start({});
        QTRY_VERIFY(!zweiter->laeuft());
        QVERIFY2(dauer.elapsed() < 4000, qPrintable(QString::number(dauer.elapsed())));
        QCOMPARE(worte(*zweiter), QStringList(u"stumm"_s));
        QCOMPARE(zweiter->ende(), 1);
        erster->signal(SIGCONT);
        QTRY_COMPARE(worte(*erster).value(1), u"oeffnen"_s);
    }

    // The test itself is the first one, so it knows when it is asked.
    void wennDerErsteEndetWaehrendErGefragtWird()
    {
        bool gefragt = false;
        auto erster = p->besetzt([&gefragt] { gefragt = true; });
        const auto zweiter = p->start({});
        QTRY_VERIFY(gefragt);
        QCOMPARE(worte(*zweiter), QStringList());
        erster.reset();
        QTRY_COMPARE(worte(*zweiter), QStringList(u"erste"_s));
        const auto dritter = p->start({});
        QTRY_COMPARE(worte(*zweiter).value(1), u"oeffnen"_s);
    }

    // It hears of the wish to end by a signal or by another start; either way nothing gets lost
    // that comes meanwhile.
    void nachDemEndeGiltDerWunschFuerDenNaechsten_data()
    {
        QTest::addColumn<bool>("signal");
        QTest::newRow("a signal") << true;
        QTest::newRow("another start") << false;
    }
    void nachDemEndeGiltDerWunschFuerDenNaechsten()
    {
        QFETCH(const bool, signal);
        const auto erster = p->start({u"--gehorcht"_s});
        QTRY_COMPARE(worte(*erster), QStringList(u"erste"_s));
        if (signal) {
            erster->signal(SIGTERM);
        } else {
            const auto bote = p->start({u"--beenden"_s});
            QTRY_VERIFY(!bote->laeuft());
        }
        const auto naechster = p->start({});
        QTRY_COMPARE(worte(*naechster), QStringList(u"erste"_s));
        QTRY_VERIFY(!erster->laeuft());
        QCOMPARE(erster->ende(), 0);
    }

private:
    // What a program has said, the first word of each line.
    static QStringList worte(Kindprogramm &programm)
    {
        QStringList liste = programm.zeilen();
        for (QString &zeile : liste) {
            zeile = zeile.section(u' ', 0, 0);
        }
        return liste;
    }

    Datenordner daten;
    std::unique_ptr<Einzelinstanzpruefling> p;
};

KALVARO_TEST(TestVertragEinzelinstanz)
#include "tst_vertrag_einzelinstanz.moc"
