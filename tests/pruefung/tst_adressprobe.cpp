// The questions to one address: what is asked, for how long, and what is kept of it.

#include "pruefung/adressprobe.h"

#include "doubles/ereignisse.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "server/zentrale.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Name = Adresslage::Name;

const QString adresse = u"http://cloud"_s;

// One address, asked of a scripted network.
struct Probe
{
    void fragen(const QString &wo = adresse)
    {
        adresseProben(wo, zentrale, uhr, suche, &besitzer,
                      [this](const Adresslage &lage) { lagen.append(lage); });
        uhr.vor(Sekunden(0));
    }

    Testuhr uhr;
    Scripttransport netz{&uhr};
    Zentrale zentrale{Konto{{}, u"Studio & Co"_s, u"geheim"_s, {u"http://andere"_s}}, netz};
    QObject besitzer;
    QStringList gesucht;
    std::function<void(bool)> gefunden; // answers the last look-up
    Namenssuche suche = [this](const QString &host, QObject *, std::function<void(bool)> fertig) {
        gesucht.append(host);
        gefunden = std::move(fertig);
    };
    QList<Adresslage> lagen;
};

} // namespace

class TestAdressprobe final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void erstDannMitStand()
    {
        Probe p;
        p.netz.dannHaengen();
        p.netz.dann(Scripttransport::antwort(200, R"({"ausstehend":false})"));
        p.fragen();
        p.gefunden(true);
        p.uhr.vor(Sekunden(0.25));
        QCOMPARE(p.netz.zeilen(), QStringList{u"GET http://cloud/api/status"_s});
        p.netz.beantworten(Scripttransport::antwort(404));
        p.uhr.vor(Sekunden(0));

        QCOMPARE(p.netz.zeilen().value(1), u"GET http://cloud/api/stand?geraet=Studio%20&%20Co"_s);
        QCOMPARE(p.lagen.size(), 1);
        const Adresslage &lage = p.lagen[0];
        QCOMPARE(lage.adresse, adresse);
        QCOMPARE(lage.name, Name::Gefunden);
        QCOMPARE(lage.status, Adresslage::Antwort(Netzantwort{404, {}}));
        QCOMPARE(lage.dauer.count(), 250);
        QCOMPARE(lage.stand,
                 std::optional(Adresslage::Antwort(Netzantwort{200, R"({"ausstehend":false})"})));
        QCOMPARE(p.gesucht, QStringList{u"cloud"_s});
    }

    // The name server was blamed for a silent server, and told its address.
    void eineAdresseInZiffernWirdNichtNachgeschlagen()
    {
        Probe p;
        p.fragen(u"http://127.0.0.77:8077"_s);
        Probe q;
        q.fragen(u"https://[fd00::1]"_s);
        QCOMPARE(p.gesucht + q.gesucht, QStringList());
        p.uhr.vor(Sekunden(4));
        QCOMPARE(p.lagen.size(), 1);
        QCOMPARE(p.lagen[0].name, Name::Gefunden);
    }

    // As the program itself asks: who it is, with which key, and for how long.
    void wieDasProgramm()
    {
        Probe p;
        p.netz.dann(Scripttransport::antwort(200));
        p.fragen();
        const auto anfragen = p.netz.anfragen();
        QCOMPARE(anfragen.size(), 2);
        for (const Netzanfrage &anfrage : anfragen) {
            QVERIFY(anfrage.kopf.contains(Kopfzeile{"User-Agent", "kalvaro/1.4"}));
            QVERIFY(anfrage.kopf.contains(Kopfzeile{"X-Schluessel", "geheim"}));
            QVERIFY(!anfrage.body);
        }
        QCOMPARE(anfragen[0].limit.count(), 4.0);
        QCOMPARE(anfragen[1].limit.count(), 8.0);
    }

    void ohneAntwortKeineZweiteFrage()
    {
        Probe p;
        p.netz.dann(Scripttransport::fehler(u"Die Verbindung wurde abgelehnt."_s));
        p.fragen();
        QCOMPARE(p.netz.anfragen().size(), 1);
        QCOMPARE(p.lagen.size(), 1);
        QCOMPARE(p.lagen[0].status.error().meldung, u"Die Verbindung wurde abgelehnt."_s);
        QVERIFY(!p.lagen[0].stand);
        QCOMPARE(p.lagen[0].name, Name::Gesucht);
    }

    void nachZwoelfSekundenIstSchluss()
    {
        Probe p;
        p.fragen();
        p.gefunden(false);
        p.uhr.vor(Sekunden(3.9));
        QCOMPARE(p.lagen.size(), 0);
        p.uhr.vor(Sekunden(0.1));
        QCOMPARE(p.lagen.size(), 1);
        QVERIFY(p.lagen[0].status.error().zeitUeberschritten);
        QCOMPARE(p.lagen[0].name, Name::Unbekannt);
        QVERIFY(!p.lagen[0].stand);
    }

    void stummBeimStand()
    {
        Probe p;
        p.netz.dann(Scripttransport::antwort(200));
        p.fragen();
        p.uhr.vor(Sekunden(8));
        QCOMPARE(p.lagen.size(), 1);
        QVERIFY(p.lagen[0].stand && p.lagen[0].stand->error().zeitUeberschritten);
    }

    void ohneHostKeineSuche()
    {
        Probe p;
        p.fragen(u"http://cloud "_s);
        QCOMPARE(p.lagen.size(), 1);
        QCOMPARE(p.lagen[0].status.error().meldung, u"ungültige Adresse"_s);
        p.fragen(u""_s);
        QCOMPARE(p.gesucht, QStringList{});
    }

    void derName()
    {
        std::optional<bool> bekannt;
        QObject besitzer;
        namenSuchen(u"127.0.0.1"_s, &besitzer, [&bekannt](bool ja) { bekannt = ja; });
        QTRY_COMPARE(bekannt, std::optional(true));
        bekannt.reset();
        namenSuchen(u"kein.name.invalid"_s, &besitzer, [&bekannt](bool ja) { bekannt = ja; });
        QTRY_COMPARE_WITH_TIMEOUT(bekannt, std::optional(false), 60'000);
    }
};

KALVARO_TEST(TestAdressprobe)
#include "tst_adressprobe.moc"
