// When the client's answers come, and when they do not: several requests at once, owners and
// clients that go.

#include "server/zentrale.h"

#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "testlauf.h"

#include "zentralewelt.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString a = u"http://a"_s;
const QString b = u"http://b"_s;
const auto ok = Scripttransport::antwort(200, "{\"ok\":1}");
const auto nein = Scripttransport::fehler(u"Die Verbindung wurde abgelehnt."_s);
const Auftrag stand{.pfad = u"/api/stand"_s};

} // namespace

class TestZentraleLeben final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        uhr = std::make_unique<Testuhr>();
        transport = std::make_unique<Scripttransport>(uhr.get());
        welt = std::make_unique<Zentralewelt>();
        zentrale = std::make_unique<Zentrale>(konto({a, b}), *transport);
    }
    void cleanup()
    {
        zentrale.reset();
        welt.reset();
        transport.reset();
    }

    void adresse()
    {
        QCOMPARE(zentrale->adresse(), a);
        QCOMPARE(zentrale->konto(), konto({a, b}));
        transport->dann(nein);
        transport->dann(ok);
        transport->dann(ok);
        QVERIFY(welt->holen(*zentrale, stand));
        QCOMPARE(zentrale->adresse(), b);
    }

    void nieVorDerRueckkehr_data()
    {
        QTest::addColumn<QStringList>("server");
        QTest::newRow("no address") << QStringList();
        QTest::newRow("no URL") << QStringList{u"http://a b"_s};
        QTest::newRow("answer") << QStringList{a};
    }
    void nieVorDerRueckkehr()
    {
        QFETCH(QStringList, server);
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Zentrale andere(konto(server), *transport);
        welt->fragen(andere, stand);
        QCOMPARE(welt->rufe, 0);
        uhr->vor(Sekunden(0));
        QTRY_COMPARE(welt->rufe, 1);
        uhr->vor(Sekunden(1000));
        QCOMPARE(welt->rufe, 1);
    }

    // The limits in their order: 4 s for each probe, then the request's own.
    void fristenNacheinander()
    {
        transport->dannHaengen(); // probe of A
        transport->dann(ok);      // probe of B
        transport->dannHaengen(); // request to B
        welt->fragen(*zentrale, {.pfad = u"/x"_s, .zeit = Sekunden(8)});
        uhr->vor(Sekunden(3.9));
        QCOMPARE(transport->anfragen().size(), 1);
        uhr->vor(Sekunden(0.1));
        QCOMPARE(transport->anfragen().size(), 3);
        uhr->vor(Sekunden(7.9));
        QVERIFY(!welt->ergebnis);
        uhr->vor(Sekunden(0.1));
        QCOMPARE(*welt->ergebnis,
                 fehler(true, true, u"Die Cloud hat nicht rechtzeitig geantwortet."_s));
    }

    // Two requests at once: each goes its way through the addresses, and the second one's request
    // to the remembered address needs no probe any more.
    void zweiZugleich()
    {
        Zentralewelt zweite;
        welt->fragen(*zentrale, {.pfad = u"/eins"_s});
        zweite.fragen(*zentrale, {.pfad = u"/zwei"_s});
        QTRY_COMPARE(transport->haengend(), 2);
        transport->beantworten(nein, 0); // probe of A for the first
        QTRY_COMPARE(transport->anfragen().size(), 3);
        transport->beantworten(ok, 1); // probe of B for the first
        QTRY_COMPARE(transport->anfragen().size(), 4);
        transport->beantworten(ok, 1); // its request
        QTRY_COMPARE(welt->rufe, 1);
        QCOMPARE(zentrale->basis(), b);
        transport->beantworten(nein, 0); // probe of A for the second
        QTRY_COMPARE(transport->anfragen().size(), 5);
        transport->beantworten(ok, 0);
        QTRY_COMPARE(zweite.rufe, 1);
        QVERIFY(*welt->ergebnis && *zweite.ergebnis);
        QCOMPARE(transport->zeilen(),
                 (QStringList{u"GET http://a/api/status"_s, u"GET http://a/api/status"_s,
                              u"GET http://b/api/status"_s, u"GET http://b/eins"_s,
                              u"GET http://b/zwei"_s}));
    }

    // A request that fails clears what the other one remembered; that one's answer stands.
    void einerScheitertDerAndereNicht()
    {
        Zentralewelt zweite;
        transport->dann(ok);
        transport->dann(ok);
        welt->fragen(*zentrale, {.pfad = u"/eins"_s});
        zweite.fragen(*zentrale, {.pfad = u"/zwei"_s});
        QTRY_COMPARE(transport->haengend(), 2);
        transport->beantworten(ok, 0);
        QTRY_COMPARE(welt->rufe, 1);
        QCOMPARE(zentrale->basis(), a);
        transport->beantworten(Scripttransport::zeitUeberschritten(), 0);
        QTRY_COMPARE(zweite.rufe, 1);
        QCOMPARE(zentrale->basis(), std::optional<QString>());
        QVERIFY(*welt->ergebnis);
        QVERIFY(zweite.ergebnis->error().zeitUeberschritten);
    }

    void besitzerGeht_data() { stationen(); }
    void besitzerGeht()
    {
        QFETCH(int, anfragen);
        bisZur(anfragen);
        welt->besitzer.reset();
        nichtsMehr(anfragen);
        QCOMPARE(zentrale->basis(), std::optional<QString>());
    }

    void zentraleGeht_data() { stationen(); }
    void zentraleGeht()
    {
        QFETCH(int, anfragen);
        bisZur(anfragen);
        zentrale.reset();
        nichtsMehr(anfragen);
    }

    void zentraleAlsBesitzer()
    {
        int rufe = 0;
        zentrale->anfrage(stand, zentrale.get(),
                          [&](const Zentrale::Antwort & /*was*/) { ++rufe; });
        QTRY_COMPARE(transport->haengend(), 1);
        zentrale.reset();
        QCOMPARE(transport->haengend(), 0);
        QCOMPARE(rufe, 0);
    }

    void allesGehtImRueckruf_data()
    {
        QTest::addColumn<Transport::Ergebnis>("ergebnis");
        QTest::newRow("answer") << ok;
        QTest::newRow("status") << Scripttransport::antwort(500);
        QTest::newRow("time-out") << Scripttransport::zeitUeberschritten();
    }
    void allesGehtImRueckruf()
    {
        QFETCH(Transport::Ergebnis, ergebnis);
        transport->dann(ok);
        transport->dann(ergebnis);
        int rufe = 0;
        zentrale->anfrage(stand, welt->besitzer.get(), [&](const Zentrale::Antwort &was) {
            ++rufe;
            const bool gut = was.has_value();
            welt->besitzer.reset();
            zentrale.reset();
            QCOMPARE(was.has_value(), gut); // still there to be read
        });
        QTRY_COMPARE(rufe, 1);
        uhr->vor(Sekunden(1000));
        QCOMPARE(rufe, 1);
    }

    // What hears of one answer may ask at once for the next.
    void naechsteAnfrageImRueckruf()
    {
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        int rufe = 0;
        zentrale->anfrage(stand, welt->besitzer.get(), [&](const Zentrale::Antwort & /*was*/) {
            ++rufe;
            zentrale->anfrage(stand, welt->besitzer.get(),
                              [&](const Zentrale::Antwort & /*was*/) { ++rufe; });
        });
        QTRY_COMPARE(rufe, 2);
        QCOMPARE(transport->anfragen().size(), 3);
    }

    void rohWiederholtNichts()
    {
        using Roh = tl::expected<Netzantwort, ZentraleFehler>;
        std::optional<Roh> roh;
        const auto merken = [&](const Roh &r) { roh = r; };
        const auto *besitzer = welt->besitzer.get();
        transport->dann(Scripttransport::antwort(404, "weg"));
        zentrale->roh(u"http://c/x"_s, {}, welt->besitzer.get(), merken);
        QTRY_VERIFY(roh);
        QCOMPARE(*roh, Roh(Netzantwort{404, "weg"}));
        QCOMPARE(transport->zeilen(), QStringList{u"GET http://c/x"_s});
        roh.reset();
        zentrale->roh(u"http://c d"_s, {}, welt->besitzer.get(), merken);
        QVERIFY(!roh);
        QTRY_VERIFY(roh);
        QCOMPARE(roh->error(), (ZentraleFehler{true, false, u"ungültige Adresse"_s}));
        QTRY_COMPARE(besitzer->children().size(), 0);
    }

    void rohEndetMitDerZentrale_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("under way") << u"http://a"_s;
        QTest::newRow("about to fail") << u"http://a b"_s;
    }
    void rohEndetMitDerZentrale()
    {
        QFETCH(QString, url);
        int rufe = 0;
        zentrale->roh(url, {}, welt->besitzer.get(), [&](const auto & /*was*/) { ++rufe; });
        zentrale.reset();
        QCOMPARE(transport->haengend(), 0);
        uhr->vor(Sekunden(1000));
        QCOMPARE(rufe, 0);
    }

private:
    static void stationen()
    {
        QTest::addColumn<int>("anfragen");
        QTest::newRow("before the first probe") << 0;
        QTest::newRow("during the first probe") << 1;
        QTest::newRow("during the second probe") << 2;
        QTest::newRow("during the request") << 3;
    }

    // Asks, and waits until so many requests have been sent; the last of them hangs.
    void bisZur(int anfragen)
    {
        const QList<Transport::Ergebnis> ablauf{nein, ok};
        for (int i = 0; i + 1 < anfragen; ++i) {
            transport->dann(ablauf.at(i));
        }
        welt->fragen(*zentrale, stand);
        if (anfragen > 0) {
            QTRY_COMPARE(transport->anfragen().size(), anfragen);
            QCOMPARE(transport->haengend(), 1);
        }
    }

    // Nothing hangs any more, nothing more is asked, and nobody is called.
    void nichtsMehr(int anfragen)
    {
        QCOMPARE(transport->haengend(), 0);
        uhr->vor(Sekunden(1000));
        QCOMPARE(transport->anfragen().size(), anfragen);
        QCOMPARE(welt->rufe, 0);
    }

    std::unique_ptr<Testuhr> uhr;
    std::unique_ptr<Scripttransport> transport;
    std::unique_ptr<Zentralewelt> welt;
    std::unique_ptr<Zentrale> zentrale;
};

KALVARO_TEST(TestZentraleLeben)
#include "tst_zentrale_leben.moc"
