// The tree straight from the bytes of an answer: always the one that JSON would give.

#include "antworten.h"
#include "nachbau.h"
#include "server/inhalt.h"
#include "settingswindow/baumleser.h"
#include "settingswindow/knoten.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto weiter = [] { return false; };

std::optional<Knotenliste> ueberJson(const QByteArray &daten)
{
    const auto gelesen = inhalt(daten);
    return gelesen ? std::optional(baumAus(*gelesen)) : std::nullopt;
}

// Some bytes more, fewer or others.
QByteArray beschaedigt(QByteArray daten, Zufall &zufall)
{
    constexpr QByteArrayView gern = "{}[],:\"\\ \n0-1e.tfn\xc3\xa4\xff\x00u";
    for (int i = zufall.bis(4); i >= 0 && !daten.isEmpty(); --i) {
        const int wo = zufall.bis(int(daten.size()));
        switch (zufall.bis(4)) {
        case 0:
            daten.remove(wo, 1);
            break;
        case 1:
            daten.insert(wo, gern[zufall.bis(int(gern.size()))]);
            break;
        case 2:
            daten[wo] = gern[zufall.bis(int(gern.size()))];
            break;
        default:
            daten.insert(wo, daten.sliced(wo / 2, zufall.bis(int(daten.size() - wo / 2))));
        }
    }
    return daten;
}

QByteArray liste(const QByteArray &eintrag, qsizetype anzahl)
{
    return R"({"playlisten":[)" + (eintrag + ',').repeated(anzahl - 1) + eintrag + "]}";
}

QByteArray einer(const QByteArray &felder)
{
    return R"({"playlisten":[{)" + felder + "}]}";
}

} // namespace

class TestBaumleser final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wieUeberJson_data();
    void wieUeberJson();
    void tiefeZaehltWieInDerGanzenAntwort();
    void zufaelligeAntworten();
    void beschaedigteAntworten();
    void grenzenDerStuecke();
    void langeTexteWerdenGekuerzt();

    void hunderttausendMitUmlautenGehen();
    void zuGross_data();
    void zuGross();
    void fragtUnterwegsObNochJemandWartet();
};

void TestBaumleser::wieUeberJson_data()
{
    QTest::addColumn<QByteArray>("daten");
    QTest::addColumn<int>("anzahl"); // of nodes

    const auto zeile = [](const char *name, const QByteArray &daten, int anzahl) {
        QTest::newRow(name) << daten << anzahl;
    };
    const QByteArray a = R"({"id":"1","name":"A"})";
    zeile("nothing", "", 0);
    zeile("blanks", " \n", 0);
    zeile("no JSON", "hallo", 0);
    zeile("empty map", " { } ", 0);
    zeile("a list", "[" + a + "]", 0);
    zeile("a byte order mark", "\xef\xbb\xbf" + liste(a, 1), 1);
    zeile("blanks everywhere", " { \"playlisten\" \n:\t[ " + a + " ,\r\n" + a + " ] } ", 2);
    zeile("something behind", liste(a, 1) + "x", 0);
    zeile("nothing closed", liste(a, 1).chopped(1), 0);
    zeile("list not closed", liste(a, 1).chopped(2), 0);
    zeile("closed by another bracket", liste(a, 1).chopped(1) + "]", 0);
    zeile("list closed by another bracket", liste(a, 1).chopped(2) + "}}", 0);
    zeile("map closed by another bracket", R"({"x":{}])", 0);
    zeile("comma at the end of the list", R"({"playlisten":[{},]})", 0);
    zeile("comma at its beginning", R"({"playlisten":[,{}]})", 0);
    zeile("two commas", R"({"playlisten":[{},,{}]})", 0);
    zeile("comma at the end of the map", R"({"playlisten":[{}],})", 0);
    zeile("no comma", R"({"playlisten":[{} {}]})", 0);
    zeile("no comma behind the list", R"({"playlisten":[{}]"x":1})", 0);
    zeile("no colon", R"({"playlisten"[{}]})", 0);
    zeile("key that is none", R"({playlisten:[{}]})", 0);
    zeile("wrong value elsewhere", R"({"playlisten":[{}],"x":nul})", 0);
    zeile("wrong value before", R"({"x":tru,"playlisten":[{}]})", 0);
    zeile("the last of two lists counts", R"({"playlisten":[{},{}],"playlisten":[{}]})", 1);
    zeile("also when it is none", R"({"playlisten":[{},{}],"playlisten":7})", 0);
    zeile("a list after something else", R"({"playlisten":7,"x":1,"playlisten":[{}]})", 1);
    zeile("key with an escape", R"({"playlist\u0065n":[{},{}]})", 2);
    zeile("key with an escape after it", R"({"playlisten":[{}],"playlist\u0065n":[{},{}]})", 2);
    zeile("key with an escape before it", R"({"playlist\u0065n":[{},{}],"playlisten":[{}]})", 1);
    zeile("entries that are no maps", R"({"playlisten":[1,"x",[2],null,true,{}]})", 1);
    zeile("brackets in texts", R"({"x":"]}{[\"","playlisten":[{"name":"]}\\"}]})", 1);
    zeile("invalid UTF-8", einer("\"name\":\"\xff\""), 0);
    zeile("a surrogate in UTF-8", einer("\"name\":\"\xed\xa0\x80\""), 0);
    zeile("overlong", einer("\"name\":\"\xc0\xaf\""), 0);
    zeile("invalid UTF-8 in a key", einer("\"\xc3\":1"), 0);
    zeile("invalid UTF-8 elsewhere", "{\"x\":\"\xff\",\"playlisten\":[{}]}", 0);
    zeile("no character", einer("\"name\":\"\xef\xbf\xbf\""), 1);
    zeile("beyond the BMP", einer("\"name\":\"\xf0\x9f\x8e\xa7\""), 1);
    zeile("half a pair", einer(R"("name":"\ud83c","uuid":"\udfa7x")"), 1);
    zeile("control characters", einer("\"name\":\"a\tb\x01\""), 1);
    zeile("a zero byte", einer(QByteArray("\"name\":\"a\0b\"", 12)), 1);
    zeile("escapes", einer(R"("name":"\"\\\/\b\f\n\r\t\u00e4\q")"), 1);
    zeile("escape that is cut", einer(R"("name":"\u00e")"), 0);
    zeile("umlauts", einer("\"name\":\"\xc3\xa4\xc3\xbf\xc2\x80\",\"uuid\":\"\xc3\x84\""), 1);
    for (const char *zahl : {"0",
                             "-0",
                             "00",
                             "01",
                             "-1",
                             "-",
                             "--1",
                             "1.",
                             ".5",
                             "1.5",
                             "1e3",
                             "1E+3",
                             "1e",
                             "+1",
                             "123456789012345",
                             "1234567890123456",
                             "9223372036854775807",
                             "9223372036854775808",
                             "1e400",
                             "0x1",
                             "1 2",
                             "NaN",
                             "true",
                             "false",
                             "null",
                             "nul",
                             "truefalse",
                             "\"5\"",
                             "\"1e2\"",
                             "[]",
                             "{}",
                             "[1,{\"a\":2}]",
                             "\"\"",
                             ""}) {
        for (const char *feld : {"titel", "seq", "ordner", "id", "uuid", "name", "eltern", "x"}) {
            QTest::addRow("%s is %s", feld, zahl)
                << einer(QByteArray("\"id\":\"k\",\"name\":\"N\",\"") + feld + "\":" + zahl) << -1;
        }
    }
    zeile("the last of two names counts", einer(R"("name":"A","name":"B")"), 1);
    zeile("the last of two names is none", einer(R"("name":"A","name":null)"), 1);
    zeile("chosen after the list",
          R"({"playlisten":[{"uuid":"a"},{"uuid":"7"},{"uuid":""}],"lokal":["a",7,"",null]})", 3);
    zeile("chosen before the list", R"({"lokal":["a"],"playlisten":[{"uuid":"a"}]})", 1);
    zeile("chosen twice", R"({"lokal":["a"],"lokal":["b"],"playlisten":[{"uuid":"a"}]})", 1);
    zeile("wrong choice", R"({"lokal":["a",],"playlisten":[{"uuid":"a"}]})", 0);
}

void TestBaumleser::wieUeberJson()
{
    QFETCH(const QByteArray, daten);
    QFETCH(const int, anzahl);

    const auto gelesen = baumLesen(daten, weiter);
    QVERIFY(gelesen);
    QVERIFY(gelesen == ueberJson(daten));
    if (anzahl >= 0) {
        QCOMPARE(int(gelesen->size()), anzahl);
    }
}

void TestBaumleser::tiefeZaehltWieInDerGanzenAntwort()
{
    int gut = 0;
    for (const int tiefe : {1'000, 1'018, 1'019, 1'020, 1'021, 1'022, 1'023, 1'024, 1'025}) {
        const QByteArray wert = QByteArray(tiefe, '[') + QByteArray(tiefe, ']');
        for (const QByteArray &daten :
             {einer("\"x\":" + wert), QByteArray("{\"playlisten\":[{}," + wert + "]}"),
              QByteArray("{\"playlisten\":[{}],\"x\":" + wert + "}")}) {
            const auto gelesen = baumLesen(daten, weiter);
            QVERIFY(gelesen && gelesen == ueberJson(daten));
            gut += gelesen->empty() ? 0 : 1;
        }
    }
    QVERIFY(gut > 3 && gut < 27);
}

void TestBaumleser::zufaelligeAntworten()
{
    for (quint32 keim = 0; keim < 2'000; ++keim) {
        Zufall zufall(keim);
        const QJsonDocument dokument(zufall.antwort());
        const auto format = keim % 2 == 0 ? QJsonDocument::Compact : QJsonDocument::Indented;
        QVERIFY2(baumLesen(dokument.toJson(format), weiter) == baumAus(dokument.object()),
                 qPrintable(QString::number(keim)));
    }
}

void TestBaumleser::beschaedigteAntworten()
{
    int mitKnoten = 0;
    for (quint32 keim = 0; keim < 10'000; ++keim) {
        Zufall zufall(keim);
        const QJsonDocument dokument(zufall.antwort());
        const auto format = keim % 2 == 0 ? QJsonDocument::Compact : QJsonDocument::Indented;
        const QByteArray daten = beschaedigt(dokument.toJson(format), zufall);
        const auto gelesen = baumLesen(daten, weiter);
        QVERIFY2(gelesen == ueberJson(daten), daten.constData());
        mitKnoten += gelesen->empty() ? 0 : 1;
    }
    QVERIFY(mitKnoten > 500);
}

// Odd entries bring pieces of 64 KiB, whose borders must not matter.
void TestBaumleser::grenzenDerStuecke()
{
    const QByteArray ungewoehnlich = R"({"name":"\u00e4","uuid":"1","titel":"7"})";
    for (const QByteArrayView ende : std::initializer_list<QByteArrayView>{
             "]}", ",]}", ",,{}]}", "}}", ", ]}", " x]}", ",\"\\u00e4\"]}"}) {
        const qsizetype schritt = ende.size() > 3 ? 1 : 7;
        for (qsizetype laenge = 65'480; laenge < 65'600; laenge += schritt) {
            const QByteArray name(laenge - ungewoehnlich.size(), 'n');
            const QByteArray daten = "{\"playlisten\":[" + ungewoehnlich + ",{\"name\":\"\\/" +
                                     name + "\"}" + ende.toByteArray();
            const auto gelesen = baumLesen(daten, weiter);
            QVERIFY(gelesen && gelesen == ueberJson(daten));
        }
    }
    QByteArray bunt;
    for (int i = 0; i < 5'000; ++i) {
        bunt +=
            (i % 3 == 0 ? ungewoehnlich : "{\"name\":\"N" + QByteArray::number(i) + "\"}") + ',';
    }
    const QByteArray daten = "{\"playlisten\":[" + bunt + "7]}";
    QCOMPARE(ueberJson(daten)->size(), size_t(5'000));
    QVERIFY(baumLesen(daten, weiter) == ueberJson(daten));
}

void TestBaumleser::langeTexteWerdenGekuerzt()
{
    for (const QByteArray &zeichen : {QByteArray("x"), QByteArray("\xc3\xa4"), QByteArray("\\n")}) {
        const QByteArray daten = einer("\"name\":\"" + zeichen.repeated(70'000) + '"');
        const auto gelesen = baumLesen(daten, weiter);
        QVERIFY(gelesen && gelesen == ueberJson(daten));
        QVERIFY(gelesen->front().name.endsWith(u'…'));
    }
}

// They did not: their tree of JSON would take more than 64 MiB and three times the answer.
void TestBaumleser::hunderttausendMitUmlautenGehen()
{
    const QByteArray playlist =
        R"({"id":"3000001","uuid":"6e73e372-e233-8aca-16b1-000000000001","name":"Für die Übung am )"
        R"(Samstag","ordner":false,"titel":120,"eltern":"o100","seq":10})";
    const QByteArray daten = liste(playlist, 100'000);
    QVERIFY(!inhalt(daten));
    const auto gelesen = baumLesen(daten, weiter);
    QVERIFY(gelesen);
    QCOMPARE(gelesen->size(), size_t(100'000));
    QCOMPARE(gelesen->back().name, u"Für die Übung am Samstag"_s);
}

void TestBaumleser::zuGross_data()
{
    QTest::addColumn<QByteArray>("daten");
    QTest::newRow("empty entries") << liste("{}", 3'000'000);
    QTest::newRow("values elsewhere")
        << QByteArray("{\"x\":[" + QByteArray("[1],").repeated(3'000'000) + "1]}");
    QTest::newRow("values in an entry") << QByteArray(
        "{\"playlisten\":[{\"x\":[" + QByteArray("[1],").repeated(3'000'000) + "1]}]}");
    QTest::newRow("short choices") << QByteArray("{\"lokal\":[" + [] {
        QByteArray viele;
        for (int i = 0; i < 2'000'000; ++i) {
            viele += '"' + QByteArray::number(i) + "\",";
        }
        return viele;
    }() + "1]}");
}

void TestBaumleser::zuGross()
{
    QFETCH(const QByteArray, daten);
    QVERIFY(!baumLesen(daten, weiter));
}

void TestBaumleser::fragtUnterwegsObNochJemandWartet()
{
    for (const QByteArray &eintrag :
         {QByteArray("{\"name\":\"N\"}"), QByteArray("{\"name\":1.5}")}) {
        constexpr int anzahl = 100'000;
        const QByteArray daten = liste(eintrag, anzahl);
        int gefragt = 0;
        QVERIFY(baumLesen(daten, [&] {
            ++gefragt;
            return false;
        }));
        QVERIFY2(gefragt > anzahl / 8'000, qPrintable(QString::number(gefragt)));

        const int mitte = gefragt / 2;
        gefragt = 0;
        QVERIFY(!baumLesen(daten, [&] { return ++gefragt == mitte; }));
        QCOMPARE(gefragt, mitte);
    }
}

KALVARO_TEST(TestBaumleser)
#include "tst_baumleser.moc"
