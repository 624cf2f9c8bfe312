#include "bibliothek.h"
#include "optionen.h"
#include "testlauf.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// The command line, without a process.
class TestDemocloudOptionen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ohneOptionen();
    void alleOptionen();
    void mehrereGeraete();
    void derLetzteWertGilt();
    void optionenAendernDieWelt();
    void hilfeGewinnt();
    void hilfeNenntAlles();
    void fehler_data();
    void fehler();
    void schlechteWelt();
};

namespace {

const QDateTime jetzt = QDateTime::fromMSecsSinceEpoch(1'772'906'700'000);

tl::expected<DemocloudOptionen, Abbruch> lesen(const QStringList &argumente)
{
    return optionenLesen(argumente, jetzt);
}

} // namespace

void TestDemocloudOptionen::ohneOptionen()
{
    const auto optionen = lesen({});

    QVERIFY(optionen.has_value());
    QCOMPARE(optionen->port, 0);
    QCOMPARE(optionen->schluessel, u"demo-schluessel"_s);
    QCOMPARE(optionen->dauer, 2.0);
    QCOMPARE(optionen->szenario, Szenario::Keins);
    const Welt &welt = optionen->welt.value();
    QCOMPARE(welt.geraete.size(), 1);
    QCOMPARE(welt.geraete[0].name, u"demo-mac"_s);
    QCOMPARE(welt.betrieb, Betrieb::Scharf);
    QCOMPARE(welt.appVersion, QString());
}

void TestDemocloudOptionen::alleOptionen()
{
    const auto optionen =
        lesen({u"--port"_s, u"8080"_s, u"--schluessel=ge=heim"_s, u"--geraet"_s, u"Jörgs Mac"_s,
               u"--dauer"_s, u"0.25"_s, u"--betrieb"_s, u"schatten"_s, u"--szenario"_s,
               u"angehalten"_s, u"--update=1.10"_s, u"--playlisten"_s, u"40"_s});

    QVERIFY(optionen.has_value());
    QCOMPARE(optionen->port, 8080);
    QCOMPARE(optionen->schluessel, u"ge=heim"_s);
    QCOMPARE(optionen->dauer, 0.25);
    QCOMPARE(optionen->szenario, Szenario::Angehalten);
    const Welt &welt = optionen->welt.value();
    QCOMPARE(welt.geraete.size(), 1);
    QCOMPARE(welt.geraete[0].name, u"Jörgs Mac"_s);
    QVERIFY(!welt.geraete[0].fuerGeraet.isEmpty());
    QCOMPARE(welt.betrieb, Betrieb::Schatten);
    QCOMPARE(welt.appVersion, u"1.10"_s);
    QVERIFY(welt.appUrl.startsWith(u"https://"_s));
    QCOMPARE(welt.playlisten, bibliothek(40));
    QCOMPARE(welt.statistik.playlisten, 40);
}

void TestDemocloudOptionen::mehrereGeraete()
{
    const auto optionen = lesen({u"--geraet=a"_s, u"--geraet=b"_s, u"--geraet=demo-mac"_s});

    QVERIFY(optionen.has_value());
    QStringList namen;
    for (const Geraet &geraet : optionen->welt->geraete) {
        namen.append(geraet.name);
    }
    QCOMPARE(namen, QStringList({u"a"_s, u"b"_s, u"demo-mac"_s}));
    QCOMPARE(lesen({u"--geraet=demo-mac"_s})->welt->geraete.size(), 1);
}

void TestDemocloudOptionen::derLetzteWertGilt()
{
    const auto optionen =
        lesen({u"--port=1"_s, u"--dauer=1"_s, u"--port=2"_s, u"--dauer"_s, u"3"_s});

    QVERIFY(optionen.has_value());
    QCOMPARE(optionen->port, 2);
    QCOMPARE(optionen->dauer, 3.0);
}

void TestDemocloudOptionen::optionenAendernDieWelt()
{
    const QTemporaryDir ordner;
    QFile datei(ordner.filePath(u"welt.json"_s));
    QVERIFY(datei.open(QIODevice::WriteOnly));
    datei.write(R"({"geraete": [{"name": "alt"}], "statistik": {"titel": 5}})");
    datei.close();

    const auto optionen = lesen(
        {u"--betrieb"_s, u"schatten"_s, u"--geraet"_s, u"neu"_s, u"--welt"_s, datei.fileName()});

    QVERIFY(optionen.has_value());
    const Welt &welt = optionen->welt.value();
    QCOMPARE(welt.statistik.titel, 5);
    QCOMPARE(welt.betrieb, Betrieb::Schatten);
    QCOMPARE(welt.geraete.size(), 1);
    QCOMPARE(welt.geraete[0].name, u"neu"_s);
}

void TestDemocloudOptionen::hilfeGewinnt()
{
    const auto optionen = lesen({u"--port"_s, u"x"_s, u"--help"_s});

    QVERIFY(!optionen.has_value());
    QCOMPARE(optionen.error().ausgang, 0);
}

void TestDemocloudOptionen::hilfeNenntAlles()
{
    const auto optionen = lesen({u"--help"_s});
    QVERIFY(!optionen.has_value());
    const QString hilfe = optionen.error().meldung;

    for (const QString &option :
         {u"--port"_s, u"--schluessel"_s, u"--geraet"_s, u"--dauer"_s, u"--betrieb"_s,
          u"--szenario"_s, u"--update"_s, u"--welt"_s, u"--playlisten"_s, u"--help"_s}) {
        QVERIFY2(hilfe.contains(u"  "_s + option + u' '), qUtf8Printable(option));
    }
    for (const Szenarioeintrag &eintrag : szenarien()) {
        QVERIFY(hilfe.contains(eintrag.name));
    }
    const QStringList zeilen = hilfe.split(u'\n');
    for (const QString &zeile : zeilen) {
        QVERIFY2(zeile.size() <= 100, qUtf8Printable(zeile));
    }
}

void TestDemocloudOptionen::fehler_data()
{
    QTest::addColumn<QStringList>("argumente");
    QTest::addColumn<QString>("meldung");
    const auto zeile = [](const char *name, const QStringList &argumente, const QString &grund) {
        QTest::newRow(name) << argumente << grund + u" „--help“ zeigt alle Optionen."_s;
    };
    zeile("unbekannt", {u"--hilfe"_s}, u"„--hilfe“ ist keine bekannte Option."_s);
    zeile("nacktes Wort", {u"8080"_s}, u"„8080“ ist keine bekannte Option."_s);
    zeile("Wert fehlt", {u"--port"_s}, u"Der Option „--port“ fehlt der Wert."_s);
    for (const QString &port : {u"65536"_s, u"-1"_s, u"+1"_s, u"1.5"_s, u"x"_s, u""_s, u" 1"_s,
                                u"99999999999999999999"_s}) {
        zeile(qUtf8Printable(u"Port "_s + port), {u"--port"_s, port},
              u"„%1“ ist kein Port (0 bis 65535)."_s.arg(port));
    }
    for (const QString &dauer : {u"-1"_s, u"1,5"_s, u"nan"_s, u"inf"_s, u"86401"_s, u""_s}) {
        zeile(
            qUtf8Printable(u"Dauer "_s + dauer), {u"--dauer"_s, dauer},
            u"„%1“ ist keine Dauer (Sekunden von 0 bis 86400, Bruchteile mit Punkt)."_s.arg(dauer));
    }
    zeile("Betrieb", {u"--betrieb=Scharf"_s},
          u"„Scharf“ ist keine Betriebsart (schatten oder scharf)."_s);
    zeile("leeres Gerät", {u"--geraet="_s}, u"Der Name eines Geräts darf nicht leer sein."_s);
    zeile("Gerät zweimal", {u"--geraet=a"_s, u"--geraet=a"_s}, u"Das Gerät „a“ gibt es schon."_s);
    zeile("leere Version", {u"--update="_s}, u"Die angebotene Version darf nicht leer sein."_s);
    zeile("Playlisten", {u"--playlisten"_s, u"1000001"_s},
          u"„1000001“ ist keine Anzahl von Playlisten (0 bis 1000000)."_s);
    QStringList namen;
    for (const Szenarioeintrag &eintrag : szenarien()) {
        namen.append(eintrag.name.toString());
    }
    zeile("Szenario", {u"--szenario=abc"_s},
          u"Das Szenario „abc“ gibt es nicht (bekannt sind: %1)."_s.arg(namen.join(u", "_s)));
}

void TestDemocloudOptionen::fehler()
{
    QFETCH(const QStringList, argumente);

    const auto optionen = lesen(argumente);

    QVERIFY(!optionen.has_value());
    QCOMPARE(optionen.error().ausgang, 2);
    QTEST(optionen.error().meldung, "meldung");
}

void TestDemocloudOptionen::schlechteWelt()
{
    const auto optionen = lesen({u"--welt"_s, u"/gibt/es/nicht.json"_s});

    QVERIFY(!optionen.has_value());
    QCOMPARE(optionen.error().ausgang, 1);
    QCOMPARE(optionen.error().meldung, u"Welt „/gibt/es/nicht.json“: die Datei gibt es nicht."_s);
}

KALVARO_TEST(TestDemocloudOptionen)
#include "tst_democloud_optionen.moc"
