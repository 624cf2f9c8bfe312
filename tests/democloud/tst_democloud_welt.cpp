#include "beispielwelt.h"
#include "bibliothek.h"
#include "testlauf.h"
#include "weltdatei.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// World files and the generated library.
class TestDemocloudWelt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leereWelt();
    void volleWelt();
    void playlistenWieSieSind();
    void erzeugteAnzahl();
    void festeAntworten();
    void fehlerNenntOrtUndGrund_data();
    void fehlerNenntOrtUndGrund();
    void syntaxfehlerNenntZeileUndSpalte_data();
    void syntaxfehlerNenntZeileUndSpalte();
    void dateifehlerNenntDieDatei();
    void beispielIstGueltig();
    void bibliothek_data();
    void bibliothek();
    void bibliothekIstImmerDieselbe();
    void beispielweltPasstZusammen();
};

namespace {

Welt gelesen(const QByteArray &json)
{
    const auto welt = weltAusJson(json, u"test"_s);
    if (!welt) {
        qWarning("%s", qUtf8Printable(welt.error()));
        return {};
    }
    return *welt;
}

QString fehlerBei(const QByteArray &json)
{
    const auto welt = weltAusJson(json, u"w.json"_s);
    return welt ? QString() : welt.error();
}

QJsonArray liste(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).array();
}

} // namespace

void TestDemocloudWelt::leereWelt()
{
    const Welt welt = gelesen("{}");

    QCOMPARE(welt.betrieb, Betrieb::Scharf);
    QCOMPARE(welt.appVersion, QString());
    QCOMPARE(welt.statistik, Statistik());
    QCOMPARE(welt.geraete.size(), 1);
    QCOMPARE(welt.geraete[0].name, u"demo-mac"_s);
    QVERIFY(welt.geraete[0].fuerGeraet.isEmpty());
    QVERIFY(welt.andere.isEmpty());
    QCOMPARE(welt.playlisten, QByteArray("[]"));
    QVERIFY(!welt.beginn.isValid());
}

void TestDemocloudWelt::volleWelt()
{
    const Welt welt = gelesen(R"({
        "betrieb": "schatten",
        "app": {"version": "1.5", "url": "http://kalvaro.example/unsicher"},
        "statistik": {"titel": 1, "playlisten": 2, "hot_cues": 3, "dateigroesse": 9007199254740991,
                      "analysiert": 5, "analysegroesse": 6, "stand": "2026-03-07 18:05:00"},
        "geraete": [{"name": "a", "zustand": "müde", "aendert_geraet": {"djmdContent": 7},
                     "aendert_zentrale": {"djmdCue": 8}, "lokal": ["u", "v"]}, {"name": "b"}],
        "andere": [{"name": "c", "periode": 10.5, "offen_ab": 1, "offen_dauer": 2.5,
                    "laeuft_dauer": 3, "bringt": {"djmdPlaylist": 9}}],
        "nachher": {"djmdHistory": 10}
    })");

    QCOMPARE(welt.betrieb, Betrieb::Schatten);
    QCOMPARE(welt.appVersion, u"1.5"_s);
    QCOMPARE(welt.appUrl, u"http://kalvaro.example/unsicher"_s);
    const Statistik zahlen{.titel = 1,
                           .playlisten = 2,
                           .hotCues = 3,
                           .dateigroesse = 9'007'199'254'740'991,
                           .analysiert = 5,
                           .analysegroesse = 6,
                           .stand = u"2026-03-07 18:05:00"_s};
    QCOMPARE(welt.statistik, zahlen);
    QCOMPARE(welt.geraete.size(), 2);
    QCOMPARE(welt.geraete[0].zustand, u"müde"_s);
    QCOMPARE(welt.geraete[0].fuerGeraet, Aenderungen({{u"djmdContent"_s, 7}}));
    QCOMPARE(welt.geraete[0].fuerZentrale, Aenderungen({{u"djmdCue"_s, 8}}));
    QCOMPARE(welt.geraete[0].lokal, QStringList({u"u"_s, u"v"_s}));
    QCOMPARE(welt.andere.size(), 1);
    QCOMPARE(welt.andere[0].periode, 10.5);
    QCOMPARE(welt.andere[0].offenAb, 1.0);
    QCOMPARE(welt.andere[0].offenDauer, 2.5);
    QCOMPARE(welt.andere[0].laeuftDauer, 3.0);
    QCOMPARE(welt.andere[0].bringt, Aenderungen({{u"djmdPlaylist"_s, 9}}));
    QCOMPARE(welt.nachRekordbox, Aenderungen({{u"djmdHistory"_s, 10}}));
}

// Tests of the program feed it with lists that no honest cloud would send.
void TestDemocloudWelt::playlistenWieSieSind()
{
    const QByteArray feindlich =
        R"([1,"x",null,{"id":7,"eltern":7},{"id":"a","titel":"viele"},[[]],{"name":"<b>\n"}])";

    QCOMPARE(gelesen("{\"playlisten\":" + feindlich + "}").playlisten,
             QJsonDocument(liste(feindlich)).toJson(QJsonDocument::Compact));
}

void TestDemocloudWelt::erzeugteAnzahl()
{
    QCOMPARE(gelesen(R"({"playlisten": 50})").statistik.playlisten, 50);
    const Welt welt = gelesen(R"({"playlisten": 50, "statistik": {"titel": 3}})");
    QCOMPARE(welt.playlisten, kalvaro::democloud::bibliothek(50));
    QCOMPARE(welt.statistik.playlisten, 50);
    QCOMPARE(gelesen(R"({"playlisten": 50, "statistik": {"playlisten": 3}})").statistik.playlisten,
             3);
}

void TestDemocloudWelt::festeAntworten()
{
    const Welt welt = gelesen(R"({"antworten": {
        "/api/stand": {"status": 500, "inhalt": {"fehler": "Wartung"}},
        "/api/abgleich": {"inhalt": [1, null]},
        "/api/playlisten": {"inhalt": "Text"},
        "/api/status": {"status": 204},
        "/api/einstellungen": {"status": 502, "roh": "<html>"}}})");

    const auto antwort = [&](const QString &pfad) { return welt.festeAntworten.value(pfad); };
    QCOMPARE(antwort(u"/api/stand"_s).status, 500);
    QCOMPARE(antwort(u"/api/stand"_s).inhalt, QByteArray(R"({"fehler":"Wartung"})"));
    QCOMPARE(antwort(u"/api/abgleich"_s).status, 200);
    QCOMPARE(antwort(u"/api/abgleich"_s).inhalt, QByteArray("[1,null]"));
    QCOMPARE(antwort(u"/api/playlisten"_s).inhalt, QByteArray("\"Text\""));
    QCOMPARE(antwort(u"/api/status"_s).status, 204);
    QCOMPARE(antwort(u"/api/status"_s).inhalt, QByteArray());
    QCOMPARE(antwort(u"/api/einstellungen"_s).inhalt, QByteArray("<html>"));
}

void TestDemocloudWelt::fehlerNenntOrtUndGrund_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("meldung");
    const auto zeile = [](const char *name, const char *json, const QString &rest) {
        QTest::newRow(name) << QByteArray(json) << u"Welt „w.json“, "_s + rest;
    };
    const QString ganzzahl = u"eine ganze Zahl von 0 bis %1 wird erwartet."_s.arg(9007199254740991);
    zeile("Liste", "[]", u"oberste Ebene: ein Objekt { … } wird erwartet."_s);
    zeile("unbekannter Schlüssel", R"({"app": {"verzion": "1"}})",
          u"app.verzion: unbekannter Schlüssel (bekannt sind: version, url)."_s);
    zeile("Betrieb", R"({"betrieb": "heiß"})",
          u"betrieb: „schatten“ oder „scharf“ wird erwartet."_s);
    zeile("Betrieb als Zahl", R"({"betrieb": 1})", u"betrieb: ein Text wird erwartet."_s);
    zeile("leere Version", R"({"app": {"version": ""}})",
          u"app.version: ein Text wird erwartet, der nicht leer ist."_s);
    zeile("Statistik als Text", R"({"statistik": {"titel": "12"}})",
          u"statistik.titel: "_s + ganzzahl);
    zeile("Bruchteil", R"({"statistik": {"titel": 1.5}})", u"statistik.titel: "_s + ganzzahl);
    zeile("negativ", R"({"geraete": [{"name": "a"}, {"name": "b", "aendert_geraet": {"x": -1}}]})",
          u"geraete[1].aendert_geraet.x: "_s + ganzzahl);
    zeile("Änderungen als Liste", R"({"nachher": []})",
          u"nachher: ein Objekt { … } wird erwartet."_s);
    zeile("keine Geräte", R"({"geraete": []})", u"geraete: mindestens ein Gerät wird gebraucht."_s);
    zeile("Geräte als Objekt", R"({"geraete": {}})", u"geraete: eine Liste [ … ] wird erwartet."_s);
    zeile("Gerät ohne Namen", R"({"geraete": [{}]})",
          u"geraete[0].name: ein Text wird erwartet, der nicht leer ist."_s);
    zeile("Gerät zweimal", R"({"geraete": [{"name": "a"}, {"name": "a"}]})",
          u"geraete[1].name: „a“ kommt zweimal vor."_s);
    zeile("lokal mit Zahl", R"({"geraete": [{"name": "a", "lokal": ["u", 2]}]})",
          u"geraete[0].lokal[1]: ein Text wird erwartet."_s);
    zeile("Periode null", R"({"andere": [{"name": "a", "periode": 0}]})",
          u"andere[0].periode: eine Zahl von Sekunden ab 1 wird erwartet."_s);
    zeile("Periode zu kurz", R"({"andere": [{"periode": 10, "offen_ab": 5, "offen_dauer": 6}]})",
          u"andere[0].periode: kürzer als offen_ab, offen_dauer und laeuft_dauer zusammen."_s);
    zeile("Playlisten als Text", R"({"playlisten": "viele"})",
          u"playlisten: eine Liste [ … ] oder eine Anzahl wird erwartet."_s);
    zeile("zu viele Playlisten", R"({"playlisten": 1000001})",
          u"playlisten: eine ganze Zahl von 0 bis 1000000 wird erwartet."_s);
    zeile("Antwort auf unbekanntem Weg", R"({"antworten": {"/x": {}}})",
          u"antworten./x: unbekannter Schlüssel (bekannt sind: /api/status, /api/abgleich, "
          "/api/stand, /api/playlisten, /api/einstellungen)."_s);
    zeile("Antwort mit Status 100", R"({"antworten": {"/api/stand": {"status": 100}}})",
          u"antworten./api/stand.status: ein HTTP-Status von 200 bis 599 wird erwartet."_s);
    zeile("der erste Fehler gilt", R"({"betrieb": "x", "andere": 1})",
          u"betrieb: „schatten“ oder „scharf“ wird erwartet."_s);
}

void TestDemocloudWelt::fehlerNenntOrtUndGrund()
{
    QFETCH(const QByteArray, json);
    QTEST(fehlerBei(json), "meldung");
}

void TestDemocloudWelt::syntaxfehlerNenntZeileUndSpalte_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("anfang");
    QTest::newRow("leer") << QByteArray() << u"Welt „w.json“, Zeile 1, Spalte 1: "_s;
    QTest::newRow("dritte Zeile") << QByteArray("{\n\"betrieb\": \"scharf\",\n  falsch\n}")
                                  << u"Welt „w.json“, Zeile 3, Spalte "_s;
    QTest::newRow("fehlende Klammer")
        << QByteArray("{\n\"andere\": [") << u"Welt „w.json“, Zeile 2, Spalte "_s;
    QTest::newRow("Wert fehlt") << QByteArray("{\"app\": }")
                                << u"Welt „w.json“, Zeile 1, Spalte "_s;
    QTest::newRow("nach dem Ende")
        << QByteArray("{}\n\n{}") << u"Welt „w.json“, Zeile 3, Spalte "_s;
    QTest::newRow("kein UTF-8") << QByteArray("{\"betrieb\": \"\xff\"}")
                                << u"Welt „w.json“, Zeile 1, Spalte "_s;
    QTest::newRow("sehr tief") << QByteArray("{\"playlisten\":" + QByteArray(5000, '['))
                               << u"Welt „w.json“, Zeile 1, Spalte "_s;
}

void TestDemocloudWelt::syntaxfehlerNenntZeileUndSpalte()
{
    QFETCH(const QByteArray, json);
    QFETCH(const QString, anfang);

    const QString meldung = fehlerBei(json);

    QVERIFY2(meldung.startsWith(anfang), qUtf8Printable(meldung));
    QVERIFY2(meldung.endsWith(u'.'), qUtf8Printable(meldung));
}

void TestDemocloudWelt::dateifehlerNenntDieDatei()
{
    const QTemporaryDir ordner;
    const QString fehlt = ordner.filePath(u"fehlt 1%.json"_s);

    QCOMPARE(weltLaden(fehlt).error(), u"Welt „%1“: die Datei gibt es nicht."_s.arg(fehlt));
    QCOMPARE(weltLaden(ordner.path()).error(),
             u"Welt „%1“: das ist ein Ordner."_s.arg(ordner.path()));

    QFile datei(ordner.filePath(u"halb.json"_s));
    QVERIFY(datei.open(QIODevice::WriteOnly));
    datei.write("{");
    datei.close();
    QVERIFY(weltLaden(datei.fileName())
                .error()
                .startsWith(u"Welt „%1“, Zeile 1, Spalte "_s.arg(datei.fileName())));
}

// The example of README.md must load.
void TestDemocloudWelt::beispielIstGueltig()
{
    QFile datei(QStringLiteral(DEMOCLOUD_ANLEITUNG));
    QVERIFY(datei.open(QIODevice::ReadOnly));
    const QByteArray text = datei.readAll();
    const qsizetype anfang = text.indexOf("```json\n{\n") + 8;
    const QByteArray json = text.mid(anfang, text.indexOf("```", anfang) - anfang);

    const auto welt = weltAusJson(json, u"README.md"_s);

    QVERIFY2(welt.has_value(), welt ? "" : qUtf8Printable(welt.error()));
    QCOMPARE(welt->andere.size(), 1);
}

void TestDemocloudWelt::bibliothek_data()
{
    QTest::addColumn<int>("anzahl");
    QTest::addColumn<int>("tiefe"); // folders above the deepest playlist, at least
    QTest::newRow("keine") << 0 << 0;
    QTest::newRow("eine") << 1 << 3;
    QTest::newRow("acht") << 8 << 3;
    QTest::newRow("Beispielwelt") << 184 << 3;
    QTest::newRow("tausend") << 1000 << 4;
    QTest::newRow("hunderttausend") << 100'000 << 7;
}

void TestDemocloudWelt::bibliothek()
{
    QFETCH(const int, anzahl);
    QFETCH(const int, tiefe);

    const QJsonArray eintraege = liste(kalvaro::democloud::bibliothek(anzahl));

    QHash<QString, QString> elternVon;
    QSet<QString> uuids;
    QSet<QString> plaetze;
    int playlisten = 0;
    for (const QJsonValue wert : eintraege) {
        const QJsonObject eintrag = wert.toObject();
        const QString eltern = eintrag.value(u"eltern"_s).toString();
        elternVon.insert(eintrag.value(u"id"_s).toString(), eltern);
        uuids.insert(eintrag.value(u"uuid"_s).toString());
        plaetze.insert(eltern + u'/' + QString::number(eintrag.value(u"seq"_s).toInt()));
        playlisten += eintrag.value(u"ordner"_s).toBool() ? 0 : 1;
    }
    QCOMPARE(playlisten, anzahl);
    QCOMPARE(elternVon.size(), eintraege.size());
    QCOMPARE(uuids.size(), eintraege.size());
    QCOMPARE(plaetze.size(), eintraege.size());

    int tiefste = 0;
    for (auto it = elternVon.cbegin(); it != elternVon.cend(); ++it) {
        int stufen = 0;
        QString eltern = it.value();
        for (; eltern != u"root"_s; eltern = elternVon.value(eltern)) {
            QVERIFY(elternVon.contains(eltern));
            ++stufen;
        }
        tiefste = std::max(tiefste, stufen);
    }
    QCOMPARE(tiefste, tiefe);
}

void TestDemocloudWelt::bibliothekIstImmerDieselbe()
{
    QCOMPARE(kalvaro::democloud::bibliothek(500), kalvaro::democloud::bibliothek(500));
    const QJsonObject erste = liste(kalvaro::democloud::bibliothek(1)).last().toObject();
    QCOMPARE(erste.value(u"uuid"_s).toString(), u"11116e73-1c03-5de6-9130-5f9925ae8ab4"_s);
}

void TestDemocloudWelt::beispielweltPasstZusammen()
{
    const Welt welt = beispielwelt(QDateTime::fromMSecsSinceEpoch(0));

    QSet<QString> bekannte;
    qint64 playlisten = 0;
    const QJsonArray eintraege = liste(welt.playlisten);
    for (const QJsonValue wert : eintraege) {
        const QJsonObject eintrag = wert.toObject();
        bekannte.insert(eintrag.value(u"uuid"_s).toString());
        playlisten += eintrag.value(u"ordner"_s).toBool() ? 0 : 1;
    }
    QCOMPARE(playlisten, welt.statistik.playlisten);
    for (const QString &uuid : welt.geraete[0].lokal) {
        QVERIFY(bekannte.contains(uuid));
    }
    for (const AnderesGeraet &geraet : welt.andere) {
        QVERIFY(geraet.offenAb + geraet.offenDauer + geraet.laeuftDauer <= geraet.periode);
    }
}

KALVARO_TEST(TestDemocloudWelt)
#include "tst_democloud_welt.moc"
