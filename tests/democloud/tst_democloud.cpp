#include "abruf.h"
#include "testlauf.h"

#include <QTest>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// The five addresses: what they answer, and what they refuse.
class TestDemocloud : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void statusNenntBetriebUndZeit();
    void falscherSchluessel_data();
    void falscherSchluessel();
    void ohneSchluesselBrauchtEsKeinen();
    void unbekannteAdresse();
    void falscheMethode_data();
    void falscheMethode();
    void kopfAnfrageWieGet();
    void schlechterInhalt_data();
    void schlechterInhalt();
    void unbekanntesGeraet_data();
    void unbekanntesGeraet();
    void standOhneGeraet();
    void standSagtObEtwasWartet();
    void geraetenameInDerAbfrage_data();
    void geraetenameInDerAbfrage();
    void playlistenUndAuswahl();
    void auswahlBleibtJeGeraet();
    void auswahlOhneDoppelte();
    void festeAntwortErsetzt();
    void anfragenWerdenGemerkt();

private:
    void oeffnen(DemocloudOptionen optionen = {});

    Stelluhr uhr_;
    std::unique_ptr<Democloud> cloud_;
    std::unique_ptr<Abruf> abruf_;
};

namespace {

const QStringList lesende{u"/api/status"_s, u"/api/stand?geraet=demo-mac"_s, u"/api/playlisten"_s};
const QStringList schreibende{u"/api/abgleich"_s, u"/api/einstellungen"_s};

} // namespace

void TestDemocloud::oeffnen(DemocloudOptionen optionen)
{
    optionen.uhr = uhr_.lesen();
    cloud_ = std::make_unique<Democloud>(std::move(optionen));
    QVERIFY(cloud_->starten().has_value());
    abruf_ = std::make_unique<Abruf>(cloud_->adresse());
}

void TestDemocloud::init()
{
    oeffnen();
}

void TestDemocloud::cleanup()
{
    abruf_.reset();
    cloud_.reset();
}

void TestDemocloud::statusNenntBetriebUndZeit()
{
    const Erhalten antwort = abruf_->holen(u"/api/status"_s);

    QCOMPARE(antwort.status, 200);
    QCOMPARE(antwort.json(),
             QJsonObject({{u"zustand"_s, u"bereit"_s},
                          {u"betrieb"_s, u"scharf"_s},
                          {u"zeit"_s, uhr_.jetzt().toString(u"yyyy-MM-dd HH:mm:ss"_s)}}));
}

void TestDemocloud::falscherSchluessel_data()
{
    QTest::addColumn<QByteArray>("methode");
    QTest::addColumn<QString>("pfad");
    QTest::addColumn<QByteArray>("schluessel");
    QTest::addColumn<QString>("fehler");
    const auto zeilen = [](const QByteArray &methode, const QStringList &pfade) {
        for (const QString &pfad : pfade) {
            QTest::addRow("%s ohne", qPrintable(pfad))
                << methode << pfad << QByteArray() << u"Der Schlüssel fehlt."_s;
            QTest::addRow("%s falsch", qPrintable(pfad))
                << methode << pfad << QByteArray("Demo-Schluessel")
                << u"Der Schlüssel stimmt nicht."_s;
        }
    };
    zeilen("GET", lesende);
    zeilen("POST", schreibende);
}

void TestDemocloud::falscherSchluessel()
{
    QFETCH(const QByteArray, methode);
    QFETCH(const QString, pfad);
    QFETCH(const QByteArray, schluessel);
    abruf_->schluessel = schluessel;

    const Erhalten antwort =
        abruf_->fragen(methode, pfad, methode == "POST" ? "kein JSON" : QByteArray());

    QCOMPARE(antwort.status, 401);
    QTEST(antwort.fehler(), "fehler");
}

void TestDemocloud::ohneSchluesselBrauchtEsKeinen()
{
    oeffnen({.schluessel = {}});
    abruf_->schluessel.clear();

    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200);
    abruf_->schluessel = "irgendeiner";
    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 401);
}

void TestDemocloud::unbekannteAdresse()
{
    for (const QString &pfad : {u"/"_s, u"/api/statuss"_s, u"/api/status/"_s}) {
        const Erhalten antwort = abruf_->holen(pfad);
        QCOMPARE(antwort.status, 404);
        QCOMPARE(antwort.fehler(), u"Diese Adresse gibt es in der Cloud nicht."_s);
    }
}

void TestDemocloud::falscheMethode_data()
{
    QTest::addColumn<QByteArray>("methode");
    QTest::addColumn<QString>("pfad");
    QTest::addColumn<QByteArray>("erlaubt");
    const auto zeilen = [](const QStringList &pfade, const QList<QByteArray> &methoden,
                           const QByteArray &erlaubt) {
        for (const QString &pfad : pfade) {
            for (const QByteArray &methode : methoden) {
                QTest::addRow("%s %s", methode.constData(), qPrintable(pfad))
                    << methode << pfad << erlaubt;
            }
        }
    };
    zeilen(lesende, {"POST", "PUT", "PATCH", "DELETE", "OPTIONS", "TRACE"}, "GET, HEAD");
    zeilen(schreibende, {"GET", "PUT", "PATCH", "DELETE", "OPTIONS", "TRACE"}, "POST");
}

void TestDemocloud::falscheMethode()
{
    QFETCH(const QByteArray, methode);
    QFETCH(const QString, pfad);

    const Erhalten antwort = abruf_->fragen(methode, pfad);

    QCOMPARE(antwort.status, 405);
    QTEST(antwort.erlaubt, "erlaubt");
    QCOMPARE(antwort.fehler(),
             u"Die Methode „%1“ ist hier nicht erlaubt."_s.arg(QString::fromLatin1(methode)));
}

void TestDemocloud::kopfAnfrageWieGet()
{
    const Erhalten antwort = abruf_->fragen("HEAD", u"/api/status"_s);

    QCOMPARE(antwort.status, 200);
    QCOMPARE(antwort.inhalt, QByteArray());
}

void TestDemocloud::schlechterInhalt_data()
{
    QTest::addColumn<QString>("pfad");
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<QString>("fehler");
    const QString keinJson = u"Der Inhalt der Anfrage ist kein gültiges JSON."_s;
    const QString keinObjekt = u"Der Inhalt der Anfrage ist kein JSON-Objekt."_s;
    const QString keineListe = u"In der Anfrage fehlt die Liste „lokal“ von Texten."_s;
    const auto fehlt = [](const QString &s) {
        return u"In der Anfrage fehlt der Text „%1“."_s.arg(s);
    };
    const QString abgleich = u"/api/abgleich"_s;
    const QString auswahl = u"/api/einstellungen"_s;
    QTest::newRow("Abgleich leer") << abgleich << QByteArray() << keinJson;
    QTest::newRow("Abgleich halb") << abgleich << QByteArray("{\"geraet\":") << keinJson;
    QTest::newRow("Abgleich Liste") << abgleich << QByteArray("[]") << keinObjekt;
    QTest::newRow("Abgleich ohne geraet") << abgleich << QByteArray("{}") << fehlt(u"geraet"_s);
    QTest::newRow("Abgleich geraet Zahl")
        << abgleich << QByteArray(R"({"geraet":1,"anlass":"hand","version":"1.4"})")
        << fehlt(u"geraet"_s);
    QTest::newRow("Abgleich ohne anlass")
        << abgleich << QByteArray(R"({"geraet":"demo-mac","version":"1.4"})") << fehlt(u"anlass"_s);
    QTest::newRow("Abgleich ohne version")
        << abgleich << QByteArray(R"({"geraet":"demo-mac","anlass":"hand"})")
        << fehlt(u"version"_s);
    QTest::newRow("Auswahl leer") << auswahl << QByteArray() << keinJson;
    QTest::newRow("Auswahl Text") << auswahl << QByteArray("\"demo-mac\"") << keinJson;
    QTest::newRow("Auswahl ohne geraet") << auswahl << QByteArray("{}") << fehlt(u"geraet"_s);
    QTest::newRow("Auswahl ohne lokal")
        << auswahl << QByteArray(R"({"geraet":"demo-mac"})") << keineListe;
    QTest::newRow("Auswahl lokal Text")
        << auswahl << QByteArray(R"({"geraet":"demo-mac","lokal":"a"})") << keineListe;
    QTest::newRow("Auswahl lokal Zahlen")
        << auswahl << QByteArray(R"({"geraet":"demo-mac","lokal":["a",1]})") << keineListe;
}

void TestDemocloud::schlechterInhalt()
{
    QFETCH(const QString, pfad);
    QFETCH(const QByteArray, inhalt);

    const Erhalten antwort = abruf_->fragen("POST", pfad, inhalt);

    QCOMPARE(antwort.status, 400);
    QTEST(antwort.fehler(), "fehler");
}

void TestDemocloud::unbekanntesGeraet_data()
{
    QTest::addColumn<QByteArray>("methode");
    QTest::addColumn<QString>("pfad");
    QTest::addColumn<QByteArray>("inhalt");
    QTest::newRow("Abgleich") << QByteArray("POST") << u"/api/abgleich"_s
                              << Abruf::abgleichInhalt(u"Küche"_s, u"hand"_s);
    QTest::newRow("Stand") << QByteArray("GET") << u"/api/stand?geraet=K%C3%BCche"_s
                           << QByteArray();
    QTest::newRow("Playlisten") << QByteArray("GET") << u"/api/playlisten?geraet=K%C3%BCche"_s
                                << QByteArray();
    QTest::newRow("Auswahl") << QByteArray("POST") << u"/api/einstellungen"_s
                             << QByteArray("{\"geraet\":\"Küche\",\"lokal\":[]}");
}

void TestDemocloud::unbekanntesGeraet()
{
    QFETCH(const QByteArray, methode);
    QFETCH(const QString, pfad);
    QFETCH(const QByteArray, inhalt);

    const Erhalten antwort = abruf_->fragen(methode, pfad, inhalt);

    QCOMPARE(antwort.status, 404);
    QCOMPARE(antwort.fehler(), u"Die Cloud kennt kein Gerät „Küche“."_s);
}

void TestDemocloud::standOhneGeraet()
{
    for (const QString &pfad : {u"/api/stand"_s, u"/api/stand?geraet="_s, u"/api/stand?x=1"_s}) {
        const Erhalten antwort = abruf_->holen(pfad);
        QCOMPARE(antwort.status, 400);
        QCOMPARE(antwort.fehler(), u"In der Anfrage fehlt der Parameter „geraet“."_s);
    }
}

void TestDemocloud::standSagtObEtwasWartet()
{
    const QString pfad = u"/api/stand?geraet=demo-mac"_s;

    QCOMPARE(abruf_->holen(pfad).json().value(u"ausstehend"_s), QJsonValue(true));
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);
    QCOMPARE(abruf_->holen(pfad).json().value(u"ausstehend"_s), QJsonValue(false));

    // What only this device has to give is not waiting for it.
    cloud_->aendern([](Welt &welt) { welt.geraete[0].fuerZentrale = {{u"djmdContent"_s, 1}}; });
    QCOMPARE(abruf_->holen(pfad).json().value(u"ausstehend"_s), QJsonValue(false));
}

void TestDemocloud::geraetenameInDerAbfrage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("abfrage");
    QTest::newRow("Umlaut und Plus") << u"Jörgs Mac 1+1"_s << u"J%C3%B6rgs%20Mac%201+1"_s;
    QTest::newRow("Plus als Prozent") << u"1+1"_s << u"1%2B1"_s;
    QTest::newRow("Trennzeichen") << u"a&b=c#d/"_s << u"a%26b%3Dc%23d/"_s;
    QTest::newRow("Prozent") << u"100 %, %20"_s << u"100%20%25,%20%2520"_s;
}

void TestDemocloud::geraetenameInDerAbfrage()
{
    QFETCH(const QString, name);
    QFETCH(const QString, abfrage);
    cloud_->aendern([&](Welt &welt) { welt.geraete[0].name = name; });

    const Erhalten antwort = abruf_->holen(u"/api/stand?x=y&geraet="_s + abfrage);

    QCOMPARE(antwort.status, 200);
    QCOMPARE(antwort.json().value(u"geraet"_s), QJsonValue(name));
}

void TestDemocloud::playlistenUndAuswahl()
{
    const QJsonObject antwort = abruf_->holen(u"/api/playlisten"_s).json();

    QSet<QString> bekannte;
    const QJsonArray playlisten = antwort.value(u"playlisten"_s).toArray();
    for (const QJsonValue eintrag : playlisten) {
        const QJsonObject playlist = eintrag.toObject();
        QCOMPARE(playlist.keys(), QStringList({u"eltern"_s, u"id"_s, u"name"_s, u"ordner"_s,
                                               u"seq"_s, u"titel"_s, u"uuid"_s}));
        bekannte.insert(playlist.value(u"uuid"_s).toString());
    }
    const QJsonArray lokal = antwort.value(u"lokal"_s).toArray();
    QCOMPARE(lokal.size(), 2);
    for (const QJsonValue uuid : lokal) {
        QVERIFY(bekannte.contains(uuid.toString()));
    }
}

void TestDemocloud::auswahlBleibtJeGeraet()
{
    cloud_->aendern([](Welt &welt) { welt.geraete.append({.name = u"zweites"_s}); });
    const auto lokal = [&](const QString &pfad) {
        return abruf_->holen(pfad).json().value(u"lokal"_s).toVariant().toStringList();
    };

    const Erhalten gesichert = abruf_->fragen("POST", u"/api/einstellungen"_s,
                                              R"({"geraet":"demo-mac","lokal":["b","a"]})");
    QCOMPARE(gesichert.status, 200);
    QCOMPARE(
        abruf_->fragen("POST", u"/api/einstellungen"_s, R"({"geraet":"zweites","lokal":["c"]})")
            .status,
        200);
    cloud_->beenden();
    QVERIFY(cloud_->starten().has_value());

    QCOMPARE(lokal(u"/api/playlisten"_s), QStringList({u"b"_s, u"a"_s}));
    QCOMPARE(lokal(u"/api/playlisten?geraet=demo-mac"_s), QStringList({u"b"_s, u"a"_s}));
    QCOMPARE(lokal(u"/api/playlisten?geraet=zweites"_s), QStringList({u"c"_s}));
}

void TestDemocloud::auswahlOhneDoppelte()
{
    const Erhalten antwort = abruf_->fragen("POST", u"/api/einstellungen"_s,
                                            R"({"geraet":"demo-mac","lokal":["a","b","a"]})");

    QCOMPARE(antwort.json(), QJsonObject({{u"geraet"_s, u"demo-mac"_s},
                                          {u"lokal"_s, QJsonArray({u"a"_s, u"b"_s})}}));
}

void TestDemocloud::festeAntwortErsetzt()
{
    cloud_->aendern([](Welt &welt) {
        welt.festeAntworten.insert(u"/api/playlisten"_s, {.status = 418, .inhalt = "<kaputt>"});
    });

    const Erhalten antwort = abruf_->holen(u"/api/playlisten"_s);
    QCOMPARE(antwort.status, 418);
    QCOMPARE(antwort.inhalt, QByteArray("<kaputt>"));

    abruf_->schluessel.clear();
    QCOMPARE(abruf_->holen(u"/api/playlisten"_s).status, 401);
}

void TestDemocloud::anfragenWerdenGemerkt()
{
    const QByteArray inhalt = R"({"geraet":"demo-mac","lokal":[]})";
    QCOMPARE(abruf_->holen(u"/api/stand?geraet=demo-mac"_s).status, 200);
    QCOMPARE(abruf_->fragen("POST", u"/api/einstellungen"_s, inhalt).status, 200);

    const QList<Anfrage> anfragen = cloud_->anfragen();
    QCOMPARE(anfragen.size(), 2);
    QCOMPARE(anfragen[0].methode, QByteArray("GET"));
    QCOMPARE(anfragen[0].pfad, u"/api/stand"_s);
    QCOMPARE(anfragen[0].abfrage, QByteArray("geraet=demo-mac"));
    QCOMPARE(anfragen[0].parameter(u"geraet"_s), u"demo-mac"_s);
    QCOMPARE(anfragen[0].kopfzeile("x-schluessel"), QByteArray("demo-schluessel"));
    QCOMPARE(anfragen[0].kopfzeile("REMOTE_ADDR"), QByteArray());
    QCOMPARE(anfragen[1].methode, QByteArray("POST"));
    QCOMPARE(anfragen[1].inhalt, inhalt);

    cloud_->anfragenVergessen();
    QCOMPARE(cloud_->anfragen().size(), 0);
}

KALVARO_TEST(TestDemocloud)
#include "tst_democloud.moc"
