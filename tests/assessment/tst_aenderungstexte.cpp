#include "assessment/aenderungstexte.h"

#include "doubles/jsonlesen.h"
#include "testlauf.h"

#include <QJsonObject>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString offen = u" ist rekordbox noch offen – Änderungen von dort fehlen hier noch."_s;
const QString laeuft = u" überträgt gerade noch – dessen Änderungen fehlen hier noch."_s;

} // namespace

class TestAenderungstexte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mengen_data();
    void mengen();
    void richtungssaetze_data();
    void richtungssaetze();
    void hinweise_data();
    void hinweise();
    void keineHinweise_data();
    void keineHinweise();
    void ohneWert();
    void dreiMillionenGeraete();

    void hunderttausendGeraete();
    void einMegabyteName();
    void verschachtelungBisZurGrenzeDesParsers();
};

void TestAenderungstexte::mengen_data()
{
    QTest::addColumn<QByteArray>("aenderungen");
    QTest::addColumn<QString>("erwartet");

    QTest::newRow("djmdContent 1 and djmdPlaylist 2")
        << QByteArray(R"({"djmdContent":1,"djmdPlaylist":2})") << u"1 Titel und 2 Playlisten"_s;
    QTest::newRow("3 tracks and 1 playlist")
        << QByteArray(R"({"djmdPlaylist":1,"djmdContent":3})") << u"3 Titeln und 1 Playlist"_s;
    QTest::newRow("djmdContent 2500") << QByteArray(R"({"djmdContent":2500})") << u"2.500 Titeln"_s;
    QTest::newRow("an empty map") << QByteArray("{}") << QString();
    QTest::newRow("one track") << QByteArray(R"({"djmdContent":1})") << u"1 Titel"_s;
    QTest::newRow("one playlist") << QByteArray(R"({"djmdPlaylist":1})") << u"1 Playlist"_s;
    QTest::newRow("two playlists") << QByteArray(R"({"djmdPlaylist":2})") << u"2 Playlisten"_s;
    QTest::newRow("1234567 playlists")
        << QByteArray(R"({"djmdPlaylist":1234567})") << u"1.234.567 Playlisten"_s;
    QTest::newRow("a count of 0 is left out")
        << QByteArray(R"({"djmdContent":0,"djmdPlaylist":1})") << u"1 Playlist"_s;
    QTest::newRow("a negative count is left out")
        << QByteArray(R"({"djmdContent":3,"djmdPlaylist":-1})") << u"3 Titeln"_s;
    QTest::newRow("negative counts of both are left out")
        << QByteArray(R"({"djmdContent":-3,"djmdPlaylist":-1})") << QString();
    QTest::newRow("both 0") << QByteArray(R"({"djmdContent":0,"djmdPlaylist":0})") << QString();
    QTest::newRow("only other tables") << QByteArray(R"({"djmdCue":40})") << QString();
    QTest::newRow("other tables are not named")
        << QByteArray(R"({"djmdCue":40,"djmdContent":2})") << u"2 Titeln"_s;
    QTest::newRow("a count given as a string")
        << QByteArray(R"({"djmdContent":"12"})") << u"12 Titeln"_s;
    QTest::newRow("a count that is no number counts as 0")
        << QByteArray(R"({"djmdContent":"viele","djmdPlaylist":[4]})") << QString();
    QTest::newRow("null") << QByteArray(R"({"djmdContent":null})") << QString();
    QTest::newRow("a list instead of a map") << QByteArray("[1,2]") << QString();
    QTest::newRow("a number instead of a map") << QByteArray("7") << QString();
    QTest::newRow("keys in other case") << QByteArray(R"({"djmdcontent":3})") << QString();
}

void TestAenderungstexte::mengen()
{
    QFETCH(QByteArray, aenderungen);

    QTEST(menge(json(aenderungen)), "erwartet");
}

void TestAenderungstexte::richtungssaetze_data()
{
    QTest::addColumn<QByteArray>("ergebnis");
    QTest::addColumn<QString>("wirklich");
    QTest::addColumn<QString>("probe");

    const QString klein = u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s;
    const QString kleinProbe = u"Nur kleinere Unterschiede (Cues, Verlauf, Analysen)."_s;

    QTest::newRow("only cue changes")
        << QByteArray(R"({"aendert_geraet":{"djmdCue":4},"aendert_zentrale":{"djmdCue":1}})")
        << klein << kleinProbe;
    QTest::newRow("tracks in both directions")
        << QByteArray(
               R"({"aendert_zentrale":{"djmdContent":1},"aendert_geraet":{"djmdContent":3}})")
        << u"Übernommen: Änderungen an 3 Titeln. Gesichert: Änderungen an 1 Titel."_s
        << u"Diesem Mac fehlen Änderungen an 3 Titeln. Von hier kämen Änderungen an 1 Titel."_s;
    QTest::newRow("only to this Mac")
        << QByteArray(R"({"aendert_geraet":{"djmdContent":1,"djmdPlaylist":2}})")
        << u"Übernommen: Änderungen an 1 Titel und 2 Playlisten."_s
        << u"Diesem Mac fehlen Änderungen an 1 Titel und 2 Playlisten."_s;
    QTest::newRow("only to the central copy")
        << QByteArray(R"({"aendert_zentrale":{"djmdPlaylist":1},"aendert_geraet":{}})")
        << u"Gesichert: Änderungen an 1 Playlist."_s
        << u"Von hier kämen Änderungen an 1 Playlist."_s;
    QTest::newRow("tracks one way, cues the other")
        << QByteArray(R"({"aendert_zentrale":{"djmdCue":9},"aendert_geraet":{"djmdContent":2}})")
        << u"Übernommen: Änderungen an 2 Titeln."_s
        << u"Diesem Mac fehlen Änderungen an 2 Titeln."_s;
    QTest::newRow("an empty result") << QByteArray("{}") << klein << kleinProbe;
    QTest::newRow("change maps of the wrong type")
        << QByteArray(R"({"aendert_zentrale":5,"aendert_geraet":["djmdContent"]})") << klein
        << kleinProbe;
    QTest::newRow("no map at all") << QByteArray("null") << klein << kleinProbe;
}

void TestAenderungstexte::richtungssaetze()
{
    QFETCH(QByteArray, ergebnis);

    QTEST(richtungen(json(ergebnis), false), "wirklich");
    QTEST(richtungen(json(ergebnis), true), "probe");
}

void TestAenderungstexte::hinweise_data()
{
    QTest::addColumn<QByteArray>("andere");
    QTest::addColumn<QString>("erwartet");

    QTest::newRow("one device with rekordbox open and a transfer running: only open rekordbox")
        << QByteArray(R"([{"name":"Studio","rekordbox_offen":true,"laeuft":true}])")
        << u"Auf „Studio“"_s + offen;
    QTest::newRow("rekordbox open")
        << QByteArray(R"([{"name":"Studio","rekordbox_offen":true,"laeuft":false}])")
        << u"Auf „Studio“"_s + offen;
    QTest::newRow("a transfer running")
        << QByteArray(R"([{"name":"Studio","rekordbox_offen":false,"laeuft":true}])")
        << u"„Studio“"_s + laeuft;
    QTest::newRow("a device without name")
        << QByteArray(R"([{"rekordbox_offen":true}])") << u"Auf „“"_s + offen;
    QTest::newRow("the name null")
        << QByteArray(R"([{"name":null,"laeuft":true}])") << u"„“"_s + laeuft;
    QTest::newRow("the name a number")
        << QByteArray(R"([{"name":2,"laeuft":true}])") << u"„2“"_s + laeuft;
    QTest::newRow("the name a list")
        << QByteArray(R"([{"name":["a",1],"laeuft":true}])") << u"„[\"a\",1]“"_s + laeuft;
    QTest::newRow("the name as it is")
        << QByteArray(R"([{"name":" <b>A&amp;B</b>\n%1 ","laeuft":true}])")
        << u"„ <b>A&amp;B</b>\n%1 “"_s + laeuft;
    QTest::newRow("several devices in the order of the list")
        << QByteArray(
               R"([{"name":"Z","laeuft":true},{"name":"M"},{"name":"A","rekordbox_offen":true}])")
        << u"„Z“"_s + laeuft + u" Auf „A“"_s + offen;
    QTest::newRow("the same device twice")
        << QByteArray(R"([{"name":"A","laeuft":true},{"name":"A","laeuft":true}])")
        << u"„A“"_s + laeuft + u" „A“"_s + laeuft;
    QTest::newRow("an open flag of the wrong type leaves the transfer")
        << QByteArray(R"([{"name":"A","rekordbox_offen":1,"laeuft":true}])") << u"„A“"_s + laeuft;
    QTest::newRow("entries that are no maps are passed over")
        << QByteArray(R"(["A",null,[{"laeuft":true}],7,{"name":"B","laeuft":true}])")
        << u"„B“"_s + laeuft;
}

void TestAenderungstexte::hinweise()
{
    QFETCH(QByteArray, andere);

    const auto hinweise = andereHinweise(json("{\"andere\":" + andere + '}'));

    QVERIFY(hinweise.has_value());
    QTEST(*hinweise, "erwartet");
}

void TestAenderungstexte::keineHinweise_data()
{
    QTest::addColumn<QByteArray>("antwort");

    QTest::newRow("no list") << QByteArray("{}");
    QTest::newRow("an empty list") << QByteArray(R"({"andere":[]})");
    QTest::newRow("null") << QByteArray(R"({"andere":null})");
    QTest::newRow("a map instead of a list")
        << QByteArray(R"({"andere":{"name":"Studio","laeuft":true}})");
    QTest::newRow("a list of devices whose flags are both false or missing") << QByteArray(
        R"({"andere":[{"name":"A","rekordbox_offen":false,"laeuft":false},{"name":"B"}]})");
    QTest::newRow("flags that are no booleans") << QByteArray(
        R"({"andere":[{"rekordbox_offen":1},{"laeuft":"true"},{"laeuft":null},{"laeuft":[true]}]})");
    QTest::newRow("keys with a dot are no path")
        << QByteArray(R"({"andere":[{"rekordbox":{"offen":true}}]})");
    QTest::newRow("an answer that is a list") << QByteArray(R"([{"laeuft":true}])");
    QTest::newRow("an answer that is null") << QByteArray("null");
}

void TestAenderungstexte::keineHinweise()
{
    QFETCH(QByteArray, antwort);

    QVERIFY(!andereHinweise(json(antwort)).has_value());
}

void TestAenderungstexte::ohneWert()
{
    const QJsonValue fehlt(QJsonValue::Undefined);

    QCOMPARE(menge(fehlt), QString());
    QCOMPARE(richtungen(fehlt, true), u"Nur kleinere Unterschiede (Cues, Verlauf, Analysen)."_s);
    QVERIFY(!andereHinweise(fehlt).has_value());
}

void TestAenderungstexte::hunderttausendGeraete()
{
    QJsonArray andere;
    for (int i = 0; i < 100'000; ++i) {
        andere.append(QJsonObject{
            {u"name"_s, i}, {u"rekordbox_offen"_s, i % 2 == 0}, {u"laeuft"_s, i % 4 == 1}});
    }
    const auto hinweise = andereHinweise(QJsonObject{{u"andere"_s, andere}});

    QVERIFY(hinweise.has_value());
    QVERIFY(hinweise->startsWith(u"Auf „0“"_s + offen + u" „1“"_s + laeuft));
    QVERIFY(hinweise->endsWith(u'…'));
    QVERIFY(hinweise->toUtf8().size() <= 65'536);
}

void TestAenderungstexte::einMegabyteName()
{
    const QString lang(1'000'000, u'x');
    const QJsonArray andere{QJsonObject{{u"name"_s, lang}, {u"laeuft"_s, true}}};

    const auto hinweise = andereHinweise(QJsonObject{{u"andere"_s, andere}});

    QVERIFY(hinweise.has_value());
    QVERIFY(hinweise->startsWith(u"„"_s + lang.first(60'000)));
    QVERIFY(hinweise->toUtf8().size() <= 65'536);
}

void TestAenderungstexte::verschachtelungBisZurGrenzeDesParsers()
{
    const QJsonObject tief = verschachtelt(1024, R"("djmdContent")").object();
    QVERIFY(!tief.isEmpty());

    QCOMPARE(menge(tief), QString());
    QCOMPARE(richtungen(QJsonObject{{u"aendert_geraet"_s, tief}}, false),
             u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s);
    QVERIFY(!andereHinweise(QJsonObject{{u"andere"_s, QJsonArray{tief}}}).has_value());
}

// A few hundred bytes held the end of the program back for eleven seconds.
void TestAenderungstexte::dreiMillionenGeraete()
{
    QByteArray liste = QByteArray(R"({"laeuft":false},)").repeated(9'999);
    liste += QByteArray(R"({"name":"A","laeuft":true},)").repeated(2);
    liste.chop(1);
    const auto zehntausend = andereHinweise(json("{\"andere\":[" + liste + "]}"));
    QVERIFY(zehntausend.has_value());
    QCOMPARE(zehntausend->count(u"„A“"_s), 1); // nobody reads more than ten thousand

    const QByteArray lang = R"({"name":")" + QByteArray(10'000, 'n') + R"(","laeuft":true},)";
    const auto kurz =
        andereHinweise(json("{\"andere\":[" + lang.repeated(1'000).chopped(1) + "]}"));
    QVERIFY(kurz.has_value());
    QVERIFY(kurz->toUtf8().size() <= 65'536);
    QVERIFY(kurz->endsWith(u'…'));
}

KALVARO_TEST(TestAenderungstexte)
#include "tst_aenderungstexte.moc"
