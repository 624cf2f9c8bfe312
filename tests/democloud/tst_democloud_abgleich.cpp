#include "abruf.h"
#include "testlauf.h"
#include "welt.h"

#include <QTest>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// What a sync does to the world, and how the world moves with the clock.
class TestDemocloudAbgleich : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void ersterAbgleichUebertraegtInBeideRichtungen();
    void danachAktuell();
    void zahlenWachsenUmGesichertes();
    void standWirdGestempelt();
    void nachRekordboxGibtEsEtwasZuSichern();
    void probebetriebVergleichtNur();
    void wechselZumScharfenBetrieb();
    void zweiterAbgleichLaeuftSchon();
    void weitereGeraeteSehenEinander();
    void gesichertesWartetAufWeitereGeraete();
    void geraetVerschwindetWaehrendDesAbgleichs();
    void updateAngebot();
    void andereNachDerUhr_data();
    void andereNachDerUhr();
    void andereInDerAntwort();
    void neueAenderungenNachDerUhr();
    void uhrLaeuftZurueck();
    void dauerAusDenOptionen();
    void vieleUebertragungenLaufenNichtUeber();

private:
    [[nodiscard]] QJsonObject stand(const QString &geraet = u"demo-mac"_s);

    std::unique_ptr<Stelluhr> uhr_;
    std::unique_ptr<Democloud> cloud_;
    std::unique_ptr<Abruf> abruf_;
};

void TestDemocloudAbgleich::init()
{
    uhr_ = std::make_unique<Stelluhr>();
    cloud_ = std::make_unique<Democloud>(DemocloudOptionen{.uhr = uhr_->lesen()});
    QVERIFY(cloud_->starten().has_value());
    abruf_ = std::make_unique<Abruf>(cloud_->adresse());
}

void TestDemocloudAbgleich::cleanup()
{
    abruf_.reset();
    cloud_.reset();
}

QJsonObject TestDemocloudAbgleich::stand(const QString &geraet)
{
    return abruf_->holen(u"/api/stand?geraet="_s + geraet).json();
}

void TestDemocloudAbgleich::ersterAbgleichUebertraegtInBeideRichtungen()
{
    const QJsonObject antwort = abruf_->abgleichen();

    QCOMPARE(antwort.value(u"betrieb"_s), QJsonValue(u"scharf"_s));
    QCOMPARE(zustandVon(antwort), u"abgeglichen"_s);
    for (const QString &richtung : {u"aendert_zentrale"_s, u"aendert_geraet"_s}) {
        QVERIFY(wertBei(antwort, {u"ergebnis"_s, richtung, u"djmdContent"_s}).toInt() > 0);
        QVERIFY(wertBei(antwort, {u"ergebnis"_s, richtung, u"djmdPlaylist"_s}).toInt() > 0);
    }
    QCOMPARE(wertBei(antwort, {u"geraet"_s, u"name"_s}), QJsonValue(u"demo-mac"_s));
    QVERIFY(wertBei(antwort, {u"ergebnis"_s, u"hinweis"_s}).isUndefined());
    QVERIFY(antwort.value(u"app"_s).isUndefined());
}

void TestDemocloudAbgleich::danachAktuell()
{
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);

    const QJsonObject antwort = abruf_->abgleichen();

    QCOMPARE(antwort.value(u"ergebnis"_s).toObject(),
             QJsonObject({{u"zustand"_s, u"aktuell"_s},
                          {u"aendert_zentrale"_s, QJsonObject()},
                          {u"aendert_geraet"_s, QJsonObject()}}));
}

void TestDemocloudAbgleich::zahlenWachsenUmGesichertes()
{
    cloud_->aendern([](Welt &welt) {
        welt.statistik = {.titel = 10,
                          .playlisten = 20,
                          .hotCues = 30,
                          .dateigroesse = 40,
                          .analysiert = 50,
                          .analysegroesse = 60};
        welt.geraete[0].fuerZentrale = {
            {u"djmdContent"_s, 2}, {u"djmdPlaylist"_s, 3}, {u"djmdCue"_s, 4}, {u"anderes"_s, 99}};
    });

    const QJsonObject zahlen = abruf_->abgleichen().value(u"statistik"_s).toObject();

    QCOMPARE(zahlen.value(u"titel"_s).toInteger(), 12);
    QCOMPARE(zahlen.value(u"playlisten"_s).toInteger(), 23);
    QCOMPARE(zahlen.value(u"hot_cues"_s).toInteger(), 34);
    QCOMPARE(zahlen.value(u"dateigroesse"_s).toInteger(), 40 + 2 * 9'800'000);
    QCOMPARE(zahlen.value(u"analysiert"_s).toInteger(), 52);
    QCOMPARE(zahlen.value(u"analysegroesse"_s).toInteger(), 60 + 2 * 410'000);
}

void TestDemocloudAbgleich::standWirdGestempelt()
{
    const QString format = u"yyyy-MM-dd HH:mm:ss"_s;
    QCOMPARE(stand().value(u"stand"_s).toString(), uhr_->jetzt().addSecs(-1800).toString(format));
    uhr_->vor(5);

    const QJsonObject antwort = abruf_->abgleichen();

    QCOMPARE(wertBei(antwort, {u"statistik"_s, u"stand"_s}).toString(),
             uhr_->jetzt().toString(format));
    uhr_->vor(5);
    QCOMPARE(wertBei(abruf_->abgleichen(), {u"statistik"_s, u"stand"_s}).toString(),
             uhr_->jetzt().toString(format));
    QCOMPARE(stand().value(u"stand"_s).toString(), uhr_->jetzt().toString(format));
}

void TestDemocloudAbgleich::nachRekordboxGibtEsEtwasZuSichern()
{
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);

    const QJsonObject antwort = abruf_->abgleichen(u"demo-mac"_s, u"nachher"_s);

    QCOMPARE(zustandVon(antwort), u"abgeglichen"_s);
    QCOMPARE(wertBei(antwort, {u"ergebnis"_s, u"aendert_zentrale"_s, u"djmdContent"_s}).toInt(), 2);
    QCOMPARE(wertBei(antwort, {u"ergebnis"_s, u"aendert_geraet"_s}).toObject(), QJsonObject());
}

void TestDemocloudAbgleich::probebetriebVergleichtNur()
{
    cloud_->aendern([](Welt &welt) { welt.betrieb = Betrieb::Schatten; });
    const Welt vorher = cloud_->welt();

    const QJsonObject erster = abruf_->abgleichen();
    QCOMPARE(erster.value(u"betrieb"_s), QJsonValue(u"schatten"_s));
    QCOMPARE(zustandVon(erster), u"schatten"_s);
    QVERIFY(wertBei(erster, {u"ergebnis"_s, u"aendert_geraet"_s, u"djmdContent"_s}).toInt() > 0);
    QVERIFY(wertBei(erster, {u"geraet"_s, u"schatten_ergebnis"_s}).isUndefined());

    const QJsonObject zweiter = abruf_->abgleichen();
    QCOMPARE(zustandVon(zweiter), u"schatten_unveraendert"_s);
    QJsonObject verglichen = wertBei(zweiter, {u"geraet"_s, u"schatten_ergebnis"_s}).toObject();
    verglichen.insert(u"zustand"_s, u"schatten"_s);
    QCOMPARE(verglichen, erster.value(u"ergebnis"_s).toObject());

    QCOMPARE(cloud_->welt().statistik, vorher.statistik);
    QCOMPARE(cloud_->welt().geraete[0].fuerGeraet, vorher.geraete[0].fuerGeraet);

    cloud_->aendern([](Welt &welt) { welt.geraete[0].fuerGeraet.clear(); });
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"schatten"_s);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"schatten_unveraendert"_s);
}

void TestDemocloudAbgleich::wechselZumScharfenBetrieb()
{
    cloud_->aendern([](Welt &welt) { welt.betrieb = Betrieb::Schatten; });
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"schatten"_s);

    cloud_->aendern([](Welt &welt) { welt.betrieb = Betrieb::Scharf; });

    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudAbgleich::zweiterAbgleichLaeuftSchon()
{
    cloud_->setDauer(3600);
    const auto erster = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);

    QCOMPARE(zustandVon(abruf_->abgleichen()), u"laeuft_schon"_s);
    QVERIFY(!erster->isFinished());

    cloud_->setDauer(0);
    QCOMPARE(zustandVon(Abruf::warten(*erster).json()), u"abgeglichen"_s);
    QCOMPARE(cloud_->laufendeAbgleiche(), 0);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudAbgleich::weitereGeraeteSehenEinander()
{
    cloud_->aendern([](Welt &welt) {
        welt.andere.clear();
        welt.geraete.append({.name = u"zweites"_s});
    });
    const auto erwartet = [](bool laeuft) {
        return QJsonArray({QJsonObject(
            {{u"name"_s, u"demo-mac"_s}, {u"rekordbox_offen"_s, false}, {u"laeuft"_s, laeuft}})});
    };
    QCOMPARE(stand(u"zweites"_s).value(u"andere"_s).toArray(), erwartet(false));

    cloud_->setDauer(3600);
    const auto erster = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);
    QCOMPARE(stand(u"zweites"_s).value(u"andere"_s).toArray(), erwartet(true));

    const auto zweiter = abruf_->abgleichSenden(u"zweites"_s);
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 2);
    cloud_->setDauer(0);
    QCOMPARE(Abruf::warten(*erster).status, 200);
    QCOMPARE(Abruf::warten(*zweiter).status, 200);
    QCOMPARE(stand(u"zweites"_s).value(u"andere"_s).toArray(), erwartet(false));
}

void TestDemocloudAbgleich::gesichertesWartetAufWeitereGeraete()
{
    cloud_->aendern([](Welt &welt) {
        welt.geraete[0].fuerZentrale = {{u"djmdContent"_s, 7}};
        welt.geraete.append({.name = u"zweites"_s});
    });
    QCOMPARE(stand(u"zweites"_s).value(u"ausstehend"_s), QJsonValue(false));

    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);

    QCOMPARE(stand(u"zweites"_s).value(u"ausstehend"_s), QJsonValue(true));
    const QJsonObject antwort = abruf_->abgleichen(u"zweites"_s);
    QCOMPARE(wertBei(antwort, {u"ergebnis"_s, u"aendert_geraet"_s}).toObject(),
             QJsonObject({{u"djmdContent"_s, 7}}));
}

void TestDemocloudAbgleich::geraetVerschwindetWaehrendDesAbgleichs()
{
    cloud_->setDauer(3600);
    const auto antwort = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);

    cloud_->aendern([](Welt &welt) { welt.geraete.clear(); });
    cloud_->setDauer(0);

    QCOMPARE(Abruf::warten(*antwort).status, 404);
    QCOMPARE(abruf_->holen(u"/api/playlisten"_s).status, 404);
}

void TestDemocloudAbgleich::updateAngebot()
{
    cloud_->aendern([](Welt &welt) {
        welt.appVersion = u"1.5"_s;
        welt.appUrl = ladeadresse(welt.appVersion);
    });

    QCOMPARE(abruf_->abgleichen().value(u"app"_s).toObject(),
             QJsonObject({{u"version"_s, u"1.5"_s},
                          {u"url"_s, u"https://kalvaro.example/laden/kalvaro-1.5.dmg"_s}}));
}

void TestDemocloudAbgleich::andereNachDerUhr_data()
{
    QTest::addColumn<double>("sekunden");
    QTest::addColumn<bool>("offen");
    QTest::addColumn<bool>("laeuft");
    QTest::addColumn<qint64>("angekommen");
    QTest::newRow("vor dem Beginn") << -1.0 << false << false << qint64(0);
    QTest::newRow("am Beginn") << 0.0 << false << false << qint64(0);
    QTest::newRow("kurz vor dem Öffnen") << 9.9 << false << false << qint64(0);
    QTest::newRow("öffnet") << 10.0 << true << false << qint64(0);
    QTest::newRow("kurz vor dem Schließen") << 29.9 << true << false << qint64(0);
    QTest::newRow("überträgt") << 30.0 << false << true << qint64(0);
    QTest::newRow("kurz vor dem Ende") << 34.9 << false << true << qint64(0);
    QTest::newRow("fertig") << 35.0 << false << false << qint64(1);
    QTest::newRow("zweite Runde") << 110.0 << true << false << qint64(1);
    QTest::newRow("zweite Ankunft") << 135.0 << false << false << qint64(2);
    QTest::newRow("hundertste Ankunft") << 9935.0 << false << false << qint64(100);
}

void TestDemocloudAbgleich::andereNachDerUhr()
{
    QFETCH(const double, sekunden);
    QFETCH(const bool, offen);
    QFETCH(const bool, laeuft);
    const AnderesGeraet geraet{.name = u"Studio"_s,
                               .periode = 100,
                               .offenAb = 10,
                               .offenDauer = 20,
                               .laeuftDauer = 5,
                               .bringt = {{u"djmdContent"_s, 1}}};

    QCOMPARE(lage(geraet, sekunden), Lage({.offen = offen, .laeuft = laeuft}));
    QTEST(ankuenfte(geraet, sekunden), "angekommen");
}

void TestDemocloudAbgleich::andereInDerAntwort()
{
    const auto studio = [](const QJsonObject &antwort) {
        return antwort.value(u"andere"_s).toArray().at(0).toObject();
    };
    const auto erwartet = [](bool offen, bool laeuft) {
        return QJsonObject(
            {{u"name"_s, u"Studio"_s}, {u"rekordbox_offen"_s, offen}, {u"laeuft"_s, laeuft}});
    };
    QCOMPARE(studio(stand()), erwartet(false, false));
    QCOMPARE(studio(abruf_->abgleichen()), erwartet(false, false));
    uhr_->vor(60);
    QCOMPARE(studio(stand()), erwartet(true, false));
    QCOMPARE(studio(abruf_->abgleichen()), erwartet(true, false));
    uhr_->vor(90);
    QCOMPARE(studio(stand()), erwartet(false, true));
    QCOMPARE(studio(abruf_->abgleichen()), erwartet(false, true));
    uhr_->vor(20);
    QCOMPARE(studio(stand()), erwartet(false, false));
}

void TestDemocloudAbgleich::neueAenderungenNachDerUhr()
{
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    const qint64 titel = cloud_->welt().statistik.titel;
    uhr_->vor(169);
    QCOMPARE(stand().value(u"ausstehend"_s), QJsonValue(false));
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);

    uhr_->vor(1);

    QCOMPARE(stand().value(u"ausstehend"_s), QJsonValue(true));
    const QJsonObject antwort = abruf_->abgleichen();
    QCOMPARE(zustandVon(antwort), u"abgeglichen"_s);
    QCOMPARE(wertBei(antwort, {u"ergebnis"_s, u"aendert_geraet"_s, u"djmdContent"_s}).toInt(), 5);
    QCOMPARE(wertBei(antwort, {u"statistik"_s, u"titel"_s}).toInteger(), titel + 5);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudAbgleich::uhrLaeuftZurueck()
{
    uhr_->vor(200);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    uhr_->vor(-400);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
    uhr_->vor(400);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudAbgleich::dauerAusDenOptionen()
{
    Democloud cloud({.dauer = 3600});
    QVERIFY(cloud.starten().has_value());
    Abruf abruf(cloud.adresse());
    const auto antwort = abruf.abgleichSenden();
    QTRY_COMPARE(cloud.laufendeAbgleiche(), 1);
    QCOMPARE(abruf.holen(u"/api/status"_s).status, 200);
    QVERIFY(!antwort->isFinished());
    cloud.setDauer(0.05);
    QCOMPARE(Abruf::warten(*antwort).status, 200);
}

void TestDemocloudAbgleich::vieleUebertragungenLaufenNichtUeber()
{
    cloud_->aendern([](Welt &welt) {
        welt.andere = {{.name = u"Studio"_s,
                        .periode = 1,
                        .bringt = {{u"djmdContent"_s, std::numeric_limits<qint64>::max()}}}};
    });
    uhr_->vor(1e9);

    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    QCOMPARE(cloud_->welt().statistik.dateigroesse, std::numeric_limits<qint64>::max());
}

KALVARO_TEST(TestDemocloudAbgleich)
#include "tst_democloud_abgleich.moc"
