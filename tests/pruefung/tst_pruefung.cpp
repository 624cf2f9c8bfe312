// The check-up as a whole, on a computer of the test's own.

#include "pruefung/pruefung.h"

#include "doubles/buendel.h"
#include "doubles/datenordner.h"
#include "doubles/fakeprozesse.h"
#include "doubles/fakeschreibtischauskunft.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "foundation/datenordner.h"
#include "rekordbox/rekordbox.h"
#include "testlauf.h"

#include <QDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// moc takes two slashes in a raw string for a comment, so JSON escapes them here.

const QByteArray zwei =
    R"({"geraet":"studio","schluessel":"geheim","server":["http:\/\/a","http:\/\/b","http:\/\/a"]})";

Datenordner &ordner()
{
    static Datenordner einer;
    return einer;
}

struct Welt
{
    explicit Welt(const QByteArray &konto, bool mitBus = true, bool langsam = false)
    {
        prozesse.zoegert = langsam;
        schreibtisch.bus = mitBus;
        ordner().leeren();
        if (!konto.isEmpty()) {
            ordner().schreiben(u"konto.json"_s, konto);
            QFile::setPermissions(datei(u"konto.json"_s), QFile::Permissions(0x6600));
        }
        pruefung.beginnen([this](const QList<Befund> &liste) {
            ++rufe;
            befunde = liste;
        });
    }

    [[nodiscard]] QStringList bereiche() const
    {
        QStringList liste;
        for (const Befund &b : befunde) {
            liste.append(b.bereich);
        }
        return liste;
    }
    [[nodiscard]] Befund befund(const QString &bereich, qsizetype welcher = 0) const
    {
        QList<Befund> passende = befunde;
        passende.removeIf([&bereich](const Befund &b) { return b.bereich != bereich; });
        return passende.value(welcher);
    }

    Testuhr uhr;
    Scripttransport netz{&uhr};
    FakeProzesse prozesse;
    FakeSchreibtischauskunft schreibtisch;
    const Programmordner programme{{u"7.1.4"_s}};
    const Rekordbox rekordbox{prozesse, programme.pfad()};
    Pruefung pruefung{{uhr, netz, rekordbox, schreibtisch, programme.pfad(),
                       [](const QString &, QObject *, const std::function<void(bool)> &) {}}};
    QList<Befund> befunde;
    int rufe = 0;
};

const QStringList rechner{u"datenordner"_s,  u"rekordbox"_s,   u"prozesse"_s,     u"sitzungsbus"_s,
                          u"mitteilungen"_s, u"menueleiste"_s, u"anmeldestart"_s, u"versionen"_s};

} // namespace

class TestPruefung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ordner().leeren(); }

    // Both at once, each address for itself and once, in the account's order.
    void allesGut()
    {
        Welt w(zwei);
        QCOMPARE(w.rufe, 0);
        w.uhr.vor(Sekunden(0));
        QCOMPARE(w.netz.zeilen(),
                 QStringList({u"GET http://a/api/status"_s, u"GET http://b/api/status"_s}));
        w.netz.beantworten(Scripttransport::antwort(200), 1);
        w.uhr.vor(Sekunden(0));
        w.netz.beantworten(Scripttransport::antwort(200, "{}"), 1);
        w.uhr.vor(Sekunden(0));
        QCOMPARE(w.rufe, 0); // the first one is still silent
        w.netz.beantworten(Scripttransport::antwort(200));
        w.uhr.vor(Sekunden(0));
        w.netz.beantworten(Scripttransport::antwort(200, "{}"));
        w.uhr.vor(Sekunden(0));

        QCOMPARE(w.rufe, 1);
        QVERIFY2(kalvaro::allesGut(w.befunde), qPrintable(alsText(w.befunde)));
        QCOMPARE(w.bereiche(),
                 QStringList({u"konto"_s, u"kontorechte"_s, u"adresse"_s, u"adresse"_s}) + rechner);
        QCOMPARE(w.befund(u"adresse"_s).name, u"Adresse „http://a“"_s);
        QCOMPARE(w.befund(u"adresse"_s, 1).name, u"Adresse „http://b“"_s);
        QVERIFY(w.befund(u"konto"_s).text.startsWith(u"Gerät „studio“, 3 Adressen"));
        QCOMPARE(w.befund(u"rekordbox"_s).text, u"7.1.4 in „%1“"_s.arg(w.programme.pfad()));
        w.prozesse.gefragt.sort();
        QCOMPARE(w.prozesse.gefragt, QStringList({u"rekordbox"_s, u"rekordboxAgent"_s}));
        QCOMPARE(w.befund(u"mitteilungen"_s).text, u"zeigt „dunst 1.9“"_s);
        QVERIFY(w.befund(u"datenordner"_s).text.startsWith(u"„"_s + appOrdner() + u'“'));
    }

    void totesNetz()
    {
        Welt w(zwei);
        w.uhr.vor(Sekunden(12));
        QCOMPARE(w.rufe, 1);
        QVERIFY(!w.befund(u"adresse"_s).gut());
        QVERIFY(!w.befund(u"adresse"_s, 1).gut());
    }

    void ohneKonto()
    {
        Welt w({});
        w.uhr.vor(Sekunden(0));
        QCOMPARE(w.rufe, 1);
        QCOMPARE(w.bereiche(), QStringList(u"konto"_s) + rechner);
        QCOMPARE(w.befund(u"konto"_s).text, Konto::laden().error());
        QCOMPARE(w.netz.anfragen().size(), 0);
    }

    void unvollstaendigesKonto()
    {
        Welt w(R"({"schluessel":"geheim"})");
        w.uhr.vor(Sekunden(0));
        QCOMPARE(w.bereiche(), QStringList({u"konto"_s, u"kontorechte"_s}) + rechner);
        QCOMPARE(w.befund(u"konto"_s).text, Konto::laden().error());
        QVERIFY(w.befund(u"kontorechte"_s).gut());
    }

    // Also where the key stands in another place of the file, or is no account's yet.
    void derSchluesselBleibtGeheim_data()
    {
        QTest::addColumn<QByteArray>("konto");
        QTest::newRow("in an address")
            << QByteArray(R"({"geraet":"g","schluessel":"geheim","server":["http:\/\/geheim.x"]})");
        QTest::newRow("as the device")
            << QByteArray(R"({"geraet":"geheim","schluessel":"geheim","server":["http:\/\/a"]})");
        QTest::newRow("misspelt") << QByteArray(
            R"({"geraet":"geheim","schlüssel":"geheim","server":["http:\/\/a"]})");
        QTest::newRow("incomplete")
            << QByteArray(R"({"geheim":1,"geraetgeheim":2,"schluessel":"geheim"})");
    }
    void derSchluesselBleibtGeheim()
    {
        QFETCH(const QByteArray, konto);
        Welt w(konto);
        w.netz.nach([](const Netzanfrage &) {
            return Scripttransport::antwort(500, R"({"fehler":"geheim"})");
        });
        w.uhr.vor(Sekunden(12));
        QCOMPARE(w.rufe, 1);
        QVERIFY2(!alsText(w.befunde).contains(u"geheim"), qPrintable(alsText(w.befunde)));
    }

    // The network's times are measured, so it has its turn when the processes have been counted.
    void erstZaehlenDannFragen()
    {
        Welt w(zwei, true, true);
        w.uhr.vor(Sekunden(0));
        QCOMPARE(w.netz.anfragen().size(), 0);
        w.prozesse.laufend = {{u"rekordbox"_s, 1}};
        w.prozesse.antworten();
        w.uhr.vor(Sekunden(12));
        QCOMPARE(w.rufe, 1);
        QCOMPARE(w.befund(u"prozesse"_s).text,
                 u"rekordbox läuft nicht, rekordboxAgent läuft nicht"_s);
    }

    // Without a bus nobody is asked for what lives on one.
    void ohneBus()
    {
        Welt w({}, false);
        w.uhr.vor(Sekunden(0));
        QVERIFY(!w.befund(u"sitzungsbus"_s).gut());
        QVERIFY(!w.befund(u"mitteilungen"_s).gut());
        QVERIFY(!w.schreibtisch.gefragt.contains(u"mitteilungsdienst"_s));
        QVERIFY(w.befund(u"menueleiste"_s).gut());
    }

    void nichtsWirdGeschrieben()
    {
        Welt w(zwei);
        w.uhr.vor(Sekunden(12));
        QCOMPARE(
            QDir(appOrdner()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
            QStringList{u"konto.json"_s});
    }
};

KALVARO_TEST(TestPruefung)
#include "tst_pruefung.moc"
