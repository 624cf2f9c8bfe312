#include "abruf.h"
#include "testlauf.h"

#include <QTest>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// Every state that can be forced.
class TestDemocloudSzenarien : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void jedesHatEinenNamen();
    void zustand_data();
    void zustand();
    void zusaetze();
    void vergleich_data();
    void vergleich();
    void weltBleibtUndKommtZurueck();
    void laeuftSchonWartetNicht();
    void wechselWaehrendEinesAbgleichs();
    void serverfehler_data();
    void serverfehler();
    void stummBisZumWechsel();
    void stummWaehrendEinesAbgleichs();

private:
    std::unique_ptr<Democloud> cloud_;
    std::unique_ptr<Abruf> abruf_;
};

namespace {

// Number of changes in both directions below `pfad`.
int anzahlBei(const QJsonObject &antwort, const QStringList &pfad)
{
    int summe = 0;
    for (const QString &richtung : {u"aendert_zentrale"_s, u"aendert_geraet"_s}) {
        const QJsonObject tabellen = wertBei(antwort, pfad + QStringList{richtung}).toObject();
        for (const QJsonValue wert : tabellen) {
            summe += wert.toInt();
        }
    }
    return summe;
}

} // namespace

void TestDemocloudSzenarien::init()
{
    cloud_ = std::make_unique<Democloud>();
    QVERIFY(cloud_->starten().has_value());
    abruf_ = std::make_unique<Abruf>(cloud_->adresse());
}

void TestDemocloudSzenarien::cleanup()
{
    abruf_.reset();
    cloud_.reset();
}

void TestDemocloudSzenarien::jedesHatEinenNamen()
{
    int erwartet = 0;
    for (const Szenarioeintrag &eintrag : szenarien()) {
        QCOMPARE(static_cast<int>(eintrag.szenario), erwartet++);
        QCOMPARE(szenarioAus(eintrag.name.toString()), std::optional(eintrag.szenario));
        QVERIFY(!eintrag.beschreibung.isEmpty());
    }
    QCOMPARE(erwartet, static_cast<int>(Szenario::Stumm) + 1);
    QCOMPARE(szenarioAus(u"Aktuell"_s), std::nullopt);
}

void TestDemocloudSzenarien::zustand_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("zustand");
    QTest::addColumn<QString>("betrieb");
    QTest::addColumn<bool>("aenderungen");
    QTest::addColumn<bool>("mitTiteln"); // tracks among those for the device
    const auto zeile = [](const char *name, const QString &zustand, const QString &betrieb,
                          bool aenderungen = false, bool namentlich = false) {
        QTest::newRow(name) << QString::fromLatin1(name) << zustand << betrieb << aenderungen
                            << namentlich;
    };
    const QString scharf = u"scharf"_s;
    const QString schatten = u"schatten"_s;
    const QString unveraendert = u"schatten_unveraendert"_s;
    zeile("aktuell", u"aktuell"_s, scharf);
    zeile("abgeglichen", u"abgeglichen"_s, scharf, true, true);
    zeile("abgeglichen_leer", u"abgeglichen"_s, scharf);
    zeile("abgeglichen_klein", u"abgeglichen"_s, scharf, true);
    zeile("schatten", schatten, schatten, true, true);
    zeile("schatten_gleich", schatten, schatten);
    zeile("schatten_klein", schatten, schatten, true);
    zeile("schatten_unveraendert", unveraendert, schatten);
    zeile("schatten_unveraendert_gleich", unveraendert, schatten);
    zeile("schatten_unveraendert_ohne", unveraendert, schatten);
    zeile("rekordbox_offen", u"rekordbox_offen"_s, scharf);
    zeile("verschoben", u"verschoben"_s, scharf);
    zeile("verschoben_ohne_hinweis", u"verschoben"_s, scharf);
    zeile("laeuft_schon", u"laeuft_schon"_s, scharf);
    zeile("angehalten", u"angehalten"_s, scharf);
    zeile("fehler", u"fehler"_s, scharf);
    zeile("nicht_erreichbar", u"nicht_erreichbar"_s, scharf);
    zeile("unbekannt", u"wartung_stufe_2"_s, scharf);
    zeile("leer", QString(), scharf);
}

void TestDemocloudSzenarien::zustand()
{
    QFETCH(const QString, name);
    QFETCH(const QString, zustand);
    QFETCH(const bool, aenderungen);
    QFETCH(const bool, mitTiteln);
    cloud_->setSzenario(szenarioAus(name).value());

    const QJsonObject antwort = abruf_->abgleichen();

    QCOMPARE(zustandVon(antwort), zustand);
    QCOMPARE(antwort.contains(u"ergebnis"_s), !zustand.isEmpty());
    QTEST(antwort.value(u"betrieb"_s).toString(), "betrieb");
    QCOMPARE(anzahlBei(antwort, {u"ergebnis"_s}) > 0, aenderungen);
    const QJsonValue titel =
        wertBei(antwort, {u"ergebnis"_s, u"aendert_geraet"_s, u"djmdContent"_s});
    QCOMPARE(titel.toInt() > 0, mitTiteln);
    QVERIFY(wertBei(antwort, {u"statistik"_s, u"titel"_s}).toInteger() > 0);
    QCOMPARE(antwort.value(u"andere"_s).toArray().size(), 2);
}

void TestDemocloudSzenarien::zusaetze()
{
    const auto antwort = [&](Szenario szenario) {
        cloud_->setSzenario(szenario);
        return abruf_->abgleichen();
    };
    const QStringList hinweis{u"ergebnis"_s, u"hinweis"_s};
    const QStringList fehler{u"ergebnis"_s, u"fehler"_s};
    QVERIFY(!wertBei(antwort(Szenario::Verschoben), hinweis).toString().isEmpty());
    QVERIFY(wertBei(antwort(Szenario::VerschobenOhneHinweis), hinweis).isUndefined());
    QVERIFY(!wertBei(antwort(Szenario::Fehler), fehler).toString().isEmpty());
    QVERIFY(wertBei(antwort(Szenario::Aktuell), fehler).isUndefined());
    QCOMPARE(wertBei(antwort(Szenario::Angehalten), {u"geraet"_s, u"zustand"_s}).toString(),
             u"angehalten: 4127 von 12483 Titeln wären gelöscht worden"_s);
    QCOMPARE(wertBei(antwort(Szenario::Aktuell), {u"geraet"_s, u"zustand"_s}).toString(),
             u"bereit"_s);
}

void TestDemocloudSzenarien::vergleich_data()
{
    QTest::addColumn<Szenario>("szenario");
    QTest::addColumn<bool>("vorhanden");
    QTest::addColumn<bool>("unterschiede");
    QTest::newRow("mit Unterschieden") << Szenario::SchattenUnveraendert << true << true;
    QTest::newRow("ohne Unterschiede") << Szenario::SchattenUnveraendertGleich << true << false;
    QTest::newRow("ohne Vergleich") << Szenario::SchattenUnveraendertOhne << false << false;
    QTest::newRow("frisch verglichen") << Szenario::Schatten << false << false;
}

void TestDemocloudSzenarien::vergleich()
{
    QFETCH(const Szenario, szenario);
    cloud_->setSzenario(szenario);

    const QJsonObject antwort = abruf_->abgleichen();

    const QStringList pfad{u"geraet"_s, u"schatten_ergebnis"_s};
    QTEST(wertBei(antwort, pfad).isObject(), "vorhanden");
    QTEST(anzahlBei(antwort, pfad) > 0, "unterschiede");
}

void TestDemocloudSzenarien::weltBleibtUndKommtZurueck()
{
    const Welt vorher = cloud_->welt();
    cloud_->setSzenario(Szenario::Abgeglichen);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);

    QCOMPARE(cloud_->welt().statistik, vorher.statistik);
    QCOMPARE(cloud_->welt().geraete[0].fuerGeraet, vorher.geraete[0].fuerGeraet);

    cloud_->setSzenario(Szenario::Keins);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudSzenarien::laeuftSchonWartetNicht()
{
    cloud_->setDauer(3600);
    cloud_->setSzenario(Szenario::LaeuftSchon);

    QCOMPARE(zustandVon(abruf_->abgleichen()), u"laeuft_schon"_s);
}

void TestDemocloudSzenarien::wechselWaehrendEinesAbgleichs()
{
    cloud_->setDauer(3600);
    const auto antwort = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);

    cloud_->setSzenario(Szenario::Serverfehler);
    cloud_->setDauer(0);

    QCOMPARE(Abruf::warten(*antwort).status, 500);
}

void TestDemocloudSzenarien::serverfehler_data()
{
    QTest::addColumn<Szenario>("szenario");
    QTest::addColumn<QString>("fehler");
    QTest::newRow("mit Text") << Szenario::Serverfehler
                              << u"Die Datenbank der Cloud antwortet nicht."_s;
    QTest::newRow("ohne Text") << Szenario::ServerfehlerOhneText << QString();
}

void TestDemocloudSzenarien::serverfehler()
{
    QFETCH(const Szenario, szenario);
    cloud_->setSzenario(szenario);

    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200);
    for (const QString &pfad : {u"/api/stand?geraet=demo-mac"_s, u"/api/playlisten"_s}) {
        const Erhalten antwort = abruf_->holen(pfad);
        QCOMPARE(antwort.status, 500);
        QTEST(antwort.fehler(), "fehler");
    }
    for (const QString &pfad : {u"/api/abgleich"_s, u"/api/einstellungen"_s}) {
        const Erhalten antwort = abruf_->fragen("POST", pfad, "{}");
        QCOMPARE(antwort.status, 500);
        QCOMPARE(antwort.inhalt.isEmpty(), szenario == Szenario::ServerfehlerOhneText);
    }
}

void TestDemocloudSzenarien::stummBisZumWechsel()
{
    cloud_->setSzenario(Szenario::Stumm);
    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200);
    const auto stand = abruf_->senden("GET", u"/api/stand?geraet=demo-mac"_s);
    const auto abgleich = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->anfragen().size(), 3);
    QVERIFY(!stand->isFinished());
    QVERIFY(!abgleich->isFinished());

    cloud_->setSzenario(Szenario::Keins);

    QCOMPARE(Abruf::warten(*stand).status, 200);
    QCOMPARE(zustandVon(Abruf::warten(*abgleich).json()), u"abgeglichen"_s);
}

void TestDemocloudSzenarien::stummWaehrendEinesAbgleichs()
{
    cloud_->setDauer(3600);
    const auto abgleich = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);

    cloud_->setSzenario(Szenario::Stumm);
    cloud_->setDauer(0);
    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200);
    QCOMPARE(cloud_->laufendeAbgleiche(), 1);

    cloud_->setSzenario(Szenario::Keins);
    QCOMPARE(zustandVon(Abruf::warten(*abgleich).json()), u"abgeglichen"_s);
}

KALVARO_TEST(TestDemocloudSzenarien)
#include "tst_democloud_szenarien.moc"
