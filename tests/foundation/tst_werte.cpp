#include "foundation/werte.h"

#include "doubles/jsonlesen.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Zahl = std::optional<double>;

namespace {

constexpr int groessteTiefe = 1024; // of QJsonDocument's parser
constexpr int megabyte = 1'000'000;
constexpr qint64 zuLange = 5000; // ms; far above a linear run, far below a quadratic one

QString tieferWeg(int tiefe)
{
    return QStringList(tiefe, u"a"_s).join(u'.');
}

} // namespace

class TestWerte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void weg_data();
    void weg();
    void wegOhneSchluesselGibtDenWertSelbst_data();
    void wegOhneSchluesselGibtDenWertSelbst();

    void texte_data();
    void texte();
    void zahlen_data();
    void zahlen();
    void zahltexte_data();
    void zahltexte();
    void wahrheit_data();
    void wahrheit();
    void summen_data();
    void summen();
    void fehltDerWertGeltenDieVorgaben();

    void verschachtelungBisZurGrenzeDesParsers();
    void listenBisZurGrenzeDesParsers();
    void breiteSumme();
    void einMegabyteText();
    void gekuerztAufVierundsechzigKibibyte();
    void einMegabyteZiffern_data();
    void einMegabyteZiffern();
};

void TestWerte::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void TestWerte::weg_data()
{
    QTest::addColumn<QByteArray>("wert");
    QTest::addColumn<QString>("weg");
    QTest::addColumn<QJsonValue>("erwartet");

    const QJsonValue fehlt(QJsonValue::Undefined);
    const QByteArray ab = R"({"a":{"b":"x"},"c":7})";
    QTest::newRow("one key") << ab << u"c"_s << QJsonValue(7);
    QTest::newRow("two keys") << ab << u"a.b"_s << QJsonValue(u"x"_s);
    QTest::newRow("empty keys between dots are dropped") << ab << u"a..b"_s << QJsonValue(u"x"_s);
    QTest::newRow("dots at both ends") << ab << u"..a.b."_s << QJsonValue(u"x"_s);
    QTest::newRow("a missing key") << ab << u"d"_s << fehlt;
    QTest::newRow("a missing key below a map") << ab << u"a.c"_s << fehlt;
    QTest::newRow("a key below a missing key") << ab << u"d.b"_s << fehlt;
    QTest::newRow("a key below a string") << ab << u"a.b.c"_s << fehlt;
    QTest::newRow("a key below a number") << ab << u"c.a"_s << fehlt;
    QTest::newRow("a key below null") << QByteArray(R"({"a":null})") << u"a.b"_s << fehlt;
    QTest::newRow("null at the end is present")
        << QByteArray(R"({"a":{"b":null}})") << u"a.b"_s << QJsonValue(QJsonValue::Null);
    QTest::newRow("a list is never indexed") << QByteArray(R"({"a":[1,2]})") << u"a.0"_s << fehlt;
    QTest::newRow("a list at the top") << QByteArray(R"([{"a":1}])") << u"a"_s << fehlt;
    QTest::newRow("a scalar at the top") << QByteArray("5") << u"a"_s << fehlt;
    QTest::newRow("keys are case-sensitive") << ab << u"A"_s << fehlt;
    QTest::newRow("blanks belong to the key")
        << QByteArray(R"({" a ":{"ö":1}})") << u" a .ö"_s << QJsonValue(1);
    QTest::newRow("an empty key in the map cannot be reached")
        << QByteArray(R"({"a":{"":{"b":1},"b":2}})") << u"a..b"_s << QJsonValue(2);
    QTest::newRow("a key with a dot cannot be reached")
        << QByteArray(R"({"a.b":1})") << u"a.b"_s << fehlt;
}

void TestWerte::weg()
{
    QFETCH(QByteArray, wert);
    QFETCH(QString, weg);

    QTEST(pfad(json(wert), weg), "erwartet");
}

void TestWerte::wegOhneSchluesselGibtDenWertSelbst_data()
{
    QTest::addColumn<QString>("weg");

    QTest::newRow("the empty path") << QString();
    QTest::newRow("one dot") << u"."_s;
    QTest::newRow("dots only") << u"...."_s;
}

void TestWerte::wegOhneSchluesselGibtDenWertSelbst()
{
    QFETCH(QString, weg);
    const QJsonValue werte[] = {json("{\"a\":1}"), json("[1]"),           json("\"x\""),
                                json("null"),      QJsonValue::Undefined, json("3")};

    for (const QJsonValue &wert : werte) {
        QCOMPARE(pfad(wert, weg), wert);
    }
}

void TestWerte::texte_data()
{
    QTest::addColumn<QByteArray>("wert");
    QTest::addColumn<QString>("weg");
    QTest::addColumn<QString>("erwartet");

    const QByteArray ab = R"({"a":{"b":"x"}})";
    QTest::newRow("path a.b gives x") << ab << u"a.b"_s << u"x"_s;
    QTest::newRow("path a.c gives the empty string") << ab << u"a.c"_s << QString();
    QTest::newRow("path a gives the inner map's description") << ab << u"a"_s << uR"({"b":"x"})"_s;
    QTest::newRow("the empty path gives the description of the whole map")
        << ab << QString() << uR"({"a":{"b":"x"}})"_s;
    QTest::newRow("path a.b gives the empty string when a holds null")
        << QByteArray(R"({"a":null})") << u"a.b"_s << QString();
    QTest::newRow("path a.b gives the empty string when b holds null")
        << QByteArray(R"({"a":{"b":null}})") << u"a.b"_s << QString();

    const auto zeile = [](const char *name, const QByteArray &wert, const QString &erwartet) {
        QTest::newRow(name) << QByteArray("{\"a\":" + wert + '}') << u"a"_s << erwartet;
    };
    zeile("a string unchanged", R"(" x\n<b>&amp;\u00e4 ")", u" x\n<b>&amp;ä "_s);
    zeile("an empty string", R"("")", QString());
    zeile("the number 3 gives 3", "3", u"3"_s);
    zeile("the number 2.5 gives 2.5", "2.5", u"2.5"_s);
    zeile("the number 3.0 gives 3", "3.0", u"3"_s);
    zeile("0", "0", u"0"_s);
    zeile("-17", "-17", u"-17"_s);
    zeile("0.1 in its shortest form", "0.1", u"0.1"_s);
    zeile("1e2 as a whole number", "1e2", u"100"_s);
    zeile("a thousand without grouping", "1234567", u"1234567"_s);
    zeile("17 digits", "0.30000000000000004", u"0.30000000000000004"_s);
    zeile("a whole number beyond 2^53", "9007199254740993", u"9007199254740993"_s);
    zeile("a negative whole number beyond 2^53", "-9007199254740993", u"-9007199254740993"_s);
    zeile("the largest of 64 bits", "9223372036854775807", u"9223372036854775807"_s);
    zeile("the smallest of 64 bits", "-9223372036854775808", u"-9223372036854775808"_s);
    zeile("beyond 64 bits", "9223372036854775808", u"9223372036854776000"_s);
    zeile("1e300", "1e300", u"1e+300"_s);
    zeile("true gives 1", "true", u"1"_s);
    zeile("false gives 0", "false", u"0"_s);
    zeile("null", "null", QString());
    zeile("a list gives its description", R"([1,"b",null,{"c":true}])",
          uR"([1,"b",null,{"c":true}])"_s);
    zeile("an empty list", "[]", u"[]"_s);
    zeile("an empty map", "{}", u"{}"_s);
}

void TestWerte::texte()
{
    QFETCH(QByteArray, wert);
    QFETCH(QString, weg);

    QTEST(text(json(wert), weg), "erwartet");
}

void TestWerte::zahlen_data()
{
    QTest::addColumn<QByteArray>("wert");
    QTest::addColumn<Zahl>("erwartet");

    QTest::newRow("the string 12.5 gives 12.5") << QByteArray(R"("12.5")") << Zahl(12.5);
    QTest::newRow("the string 12,5 gives absent") << QByteArray(R"("12,5")") << Zahl();
    QTest::newRow("the JSON value true gives 1.0") << QByteArray("true") << Zahl(1.0);
    QTest::newRow("the JSON value false gives 0.0") << QByteArray("false") << Zahl(0.0);
    QTest::newRow("a number") << QByteArray("-2.25") << Zahl(-2.25);
    QTest::newRow("zero") << QByteArray("0") << Zahl(0.0);
    QTest::newRow("a whole number beyond 2^53 as its double")
        << QByteArray("9007199254740993") << Zahl(9007199254740992.0);
    QTest::newRow("null") << QByteArray("null") << Zahl();
    QTest::newRow("a map") << QByteArray(R"({"b":1})") << Zahl();
    QTest::newRow("a list") << QByteArray("[1]") << Zahl();
    QTest::newRow("the string true") << QByteArray(R"("true")") << Zahl();
}

void TestWerte::zahlen()
{
    QFETCH(QByteArray, wert);

    QTEST(zahl(json("{\"k\":" + wert + '}'), u"k"), "erwartet");
    QTEST(zahl(json(wert), u""), "erwartet");
}

void TestWerte::zahltexte_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Zahl>("erwartet");

    const QList<std::pair<const char16_t *, double>> zahlen{
        {u"0", 0},
        {u"-0", 0},
        {u"12", 12},
        {u"-12", -12},
        {u"+1", 1},
        {u"+.5", 0.5},
        {u".5", 0.5},
        {u"-.5", -0.5},
        {u"5.", 5},
        {u"007", 7},
        {u"1e3", 1000},
        {u"1E3", 1000},
        {u"1e+3", 1000},
        {u"1e-3", 0.001},
        {u"0.1", 0.1},
        {u"0.30000000000000004", 0.30000000000000004},
        {u"123456789012345678", 123456789012345678.0},
        {u"9007199254740993", 9007199254740992.0},
        {u"1.7976931348623157e308", 1.7976931348623157e308},
        {u"2.2250738585072014e-308", 2.2250738585072014e-308},
        {u"5e-324", 5e-324},
        {u"1e-400", 0},
        {u"-1e-400", 0},
        {u"0e999999", 0},
    };
    for (const auto &[text, wert] : zahlen) {
        const QString t = QString::fromUtf16(text);
        QTest::addRow("a number: %s", qPrintable(t)) << t << Zahl(wert);
    }

    const QStringList keine{u""_s,         u" "_s,     u" 1"_s,         u"1 "_s,     u"1 000"_s,
                            u"1\n"_s,      u"\t1"_s,   u"1\u00a0000"_s, u"1,5"_s,    u"1.000,5"_s,
                            u"1,000.5"_s,  u"1.2.3"_s, u"1'000"_s,      u"inf"_s,    u"-inf"_s,
                            u"INFINITY"_s, u"∞"_s,     u"nan"_s,        u"NaN"_s,    u"nan(1)"_s,
                            u"0x10"_s,     u"0x1p3"_s, u"1f"_s,         u"1e400"_s,  u"-1e400"_s,
                            u"1e"_s,       u"1e+"_s,   u"e5"_s,         u"e"_s,      u"."_s,
                            u"+"_s,        u"-"_s,     u"+-1"_s,        u"-+1"_s,    u"++1"_s,
                            u"--1"_s,      u"1-"_s,    u"1+1"_s,        u"1.5.e1"_s, u"٣"_s,
                            u"１"_s,       u"½"_s,     u"−1"_s,         u"1€"_s,     u"zwei"_s,
                            u"true"_s,     u"1e5.5"_s, u"+."_s,         u"1_000"_s,  u"0b1"_s};
    for (const QString &t : keine) {
        const QString name = QString(t).replace(u'\n', u"\\n"_s).replace(u'\t', u"\\t"_s);
        QTest::addRow("no number: \"%s\"", qPrintable(name)) << t << Zahl();
    }
    QTest::newRow("no number: a zero byte after the digits") << u"1"_s + QChar(0) << Zahl();
    QTest::newRow("no number: a character whose low byte is a digit")
        << QString(QChar(0x0131)) << Zahl();
}

void TestWerte::zahltexte()
{
    QFETCH(QString, text);

    const Zahl gelesen = zahl(QJsonValue(text), u"");

    QTEST(gelesen, "erwartet");
}

void TestWerte::wahrheit_data()
{
    QTest::addColumn<QByteArray>("wert");
    QTest::addColumn<bool>("erwartet");

    QTest::newRow("a key holding 1 gives true") << QByteArray("1") << true;
    QTest::newRow("the string true gives false") << QByteArray(R"("true")") << false;
    QTest::newRow("0 gives false") << QByteArray("0") << false;
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("-1 is non-zero") << QByteArray("-1") << true;
    QTest::newRow("0.001 is non-zero") << QByteArray("0.001") << true;
    QTest::newRow("0.0") << QByteArray("0.0") << false;
    QTest::newRow("a whole number beyond 2^53") << QByteArray("9007199254740993") << true;
    QTest::newRow("the string 1") << QByteArray(R"("1")") << false;
    QTest::newRow("null") << QByteArray("null") << false;
    QTest::newRow("a map") << QByteArray(R"({"a":1})") << false;
    QTest::newRow("a list") << QByteArray("[1]") << false;
}

void TestWerte::wahrheit()
{
    QFETCH(QByteArray, wert);

    QTEST(wahr(json("{\"k\":" + wert + '}'), u"k"), "erwartet");
}

void TestWerte::summen_data()
{
    QTest::addColumn<QByteArray>("wert");
    QTest::addColumn<double>("erwartet");

    QTest::newRow("a map {a: 1, b: {c: 2, d: the string 3}, e: the list [4]} gives 3.0")
        << QByteArray(R"({"a":1,"b":{"c":2,"d":"3"},"e":[4]})") << 3.0;
    QTest::newRow("an empty map") << QByteArray("{}") << 0.0;
    QTest::newRow("a number") << QByteArray("2.5") << 2.5;
    QTest::newRow("booleans count as 1 and 0")
        << QByteArray(R"({"a":true,"b":false,"c":{"d":true}})") << 2.0;
    QTest::newRow("true alone") << QByteArray("true") << 1.0;
    QTest::newRow("negative numbers") << QByteArray(R"({"a":3,"b":-3})") << 0.0;
    QTest::newRow("null") << QByteArray(R"({"a":null,"b":1})") << 1.0;
    QTest::newRow("null alone") << QByteArray("null") << 0.0;
    QTest::newRow("a numeric string alone") << QByteArray(R"("3")") << 0.0;
    QTest::newRow("a list alone") << QByteArray("[4]") << 0.0;
    QTest::newRow("a map in a list in a map") << QByteArray(R"({"a":[{"b":4}]})") << 0.0;
    QTest::newRow("whole numbers beyond 2^53")
        << QByteArray(R"({"a":9007199254740993})") << 9007199254740992.0;
}

void TestWerte::summen()
{
    QFETCH(QByteArray, wert);

    QTEST(summe(json(wert)), "erwartet");
}

void TestWerte::fehltDerWertGeltenDieVorgaben()
{
    const QJsonValue fehlt(QJsonValue::Undefined);

    for (const QStringView weg : {u"", u"a", u"a.b"}) {
        QVERIFY(pfad(fehlt, weg).isUndefined());
        QCOMPARE(text(fehlt, weg), QString());
        QVERIFY(!zahl(fehlt, weg).has_value());
        QVERIFY(!wahr(fehlt, weg));
    }
    QCOMPARE(summe(fehlt), 0.0);
}

void TestWerte::verschachtelungBisZurGrenzeDesParsers()
{
    QVERIFY(verschachtelt(groessteTiefe + 1, "1").isNull());
    const QJsonValue tief(verschachtelt(groessteTiefe, "1").object());
    const QString weg = tieferWeg(groessteTiefe);

    QCOMPARE(summe(tief), 1.0);
    QCOMPARE(text(tief, weg), u"1"_s);
    QCOMPARE(zahl(tief, weg), Zahl(1.0));
    QVERIFY(wahr(tief, weg));
    QVERIFY(pfad(tief, weg + u".a"_s).isUndefined());
    QCOMPARE(text(tief, u"").size(), groessteTiefe * 6 + 1);
}

void TestWerte::listenBisZurGrenzeDesParsers()
{
    const QByteArray quelle =
        QByteArray("[").repeated(groessteTiefe) + '7' + QByteArray("]").repeated(groessteTiefe);
    const QJsonValue tief(QJsonDocument::fromJson(quelle).array());
    QVERIFY(!tief.toArray().isEmpty());

    QCOMPARE(text(tief, u""), QString::fromLatin1(quelle));
    QCOMPARE(summe(tief), 0.0);
    QVERIFY(!zahl(tief, u"").has_value());
}

void TestWerte::breiteSumme()
{
    QJsonObject breit;
    for (int i = 0; i < 100'000; ++i) {
        breit.insert(u"tabelle%1"_s.arg(i, 6, 10, QChar(u'0')), i % 2);
    }
    QElapsedTimer stoppuhr;
    stoppuhr.start();

    QCOMPARE(summe(breit), 50'000.0);

    QVERIFY(stoppuhr.elapsed() < zuLange);
}

void TestWerte::einMegabyteText()
{
    const QString lang(megabyte, u'ä');
    const QJsonValue wert(QJsonObject{{u"a"_s, lang}});
    QElapsedTimer stoppuhr;
    stoppuhr.start();

    QCOMPARE(text(wert, u"a"), lang);
    QVERIFY(!zahl(wert, u"a").has_value());
    QVERIFY(!wahr(wert, u"a"));
    QCOMPARE(summe(wert), 0.0);
    QVERIFY(pfad(wert, QString(megabyte, u'.') + u'a').isString());
    QVERIFY(pfad(wert, lang).isUndefined());

    QVERIFY(stoppuhr.elapsed() < zuLange);
}

void TestWerte::gekuerztAufVierundsechzigKibibyte()
{
    const auto zeichen = {u"x"_s, u"ä"_s, u"…"_s, u"😀"_s};
    for (const QString &eines : zeichen) {
        const QString lang = eines.repeated(70'000);
        const QString kurz = gekuerzt(lang);
        QVERIFY(kurz.endsWith(u'…'));
        QVERIFY(lang.startsWith(kurz.chopped(1)));
        QVERIFY(!kurz.chopped(1).endsWith(QChar(0xD83D)));
        const qsizetype bytes = kurz.toUtf8().size();
        QVERIFY2(bytes <= laengsterText && bytes > laengsterText - 8, qPrintable(eines));
        const qsizetype passend = laengsterText / std::max<qsizetype>(eines.toUtf8().size(), 1);
        QCOMPARE(gekuerzt(eines.repeated(passend)), eines.repeated(passend));
        QVERIFY(gekuerzt(eines.repeated(passend + 1)) != eines.repeated(passend + 1));
    }
    QCOMPARE(kurztext(QJsonObject{{u"a"_s, QString(100'000, u'x')}}, u"a").size(),
             laengsterText - 2);
    const QJsonValue bunt = json(
        R"({"b":[1,-2.5,1e30,true,null,"ä\"\n\u0001"],"a":{"x":{},"y":[]},"":9007199254740993})");
    QCOMPARE(kurztext(bunt, u""), text(bunt, u""));
    QCOMPARE(kurztext(bunt, u"b"), text(bunt, u"b"));
    QJsonArray viele;
    for (int i = 0; i < 50'000; ++i) {
        viele.append(i);
    }
    const QString ganz = text(viele, u"");
    const QString anfang = kurztext(viele, u"");
    QVERIFY(anfang.size() < ganz.size() && ganz.startsWith(anfang.chopped(1)));
    QCOMPARE(anfang.toUtf8().size(), laengsterText);
}

void TestWerte::einMegabyteZiffern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Zahl>("erwartet");

    const QString nullen(megabyte, u'0');
    const QString dreien(megabyte, u'3');
    QTest::newRow("a whole number beyond the range of a double") << dreien << Zahl();
    QTest::newRow("decimals") << u"0."_s + dreien << Zahl(1.0 / 3);
    QTest::newRow("leading zeros") << nullen + u"12.5"_s << Zahl(12.5);
    QTest::newRow("trailing decimal zeros") << u"12.5"_s + nullen << Zahl(12.5);
    QTest::newRow("below the range of a double") << u"0."_s + nullen + u'1' << Zahl(0.0);
    QTest::newRow("an exponent beyond all bounds") << u"1e"_s + dreien << Zahl();
    QTest::newRow("an exponent below all bounds") << u"1e-"_s + dreien << Zahl(0.0);
    QTest::newRow("a letter at the end") << dreien + u'x' << Zahl();
    QTest::newRow("signs only") << QString(megabyte, u'+') << Zahl();
    QTest::newRow("points only") << QString(megabyte, u'.') << Zahl();
}

void TestWerte::einMegabyteZiffern()
{
    QFETCH(QString, text);
    QElapsedTimer stoppuhr;
    stoppuhr.start();

    const Zahl gelesen = zahl(QJsonValue(text), u"");

    QVERIFY2(stoppuhr.elapsed() < zuLange, qPrintable(QString::number(stoppuhr.elapsed())));
    QTEST(gelesen, "erwartet");
}

KALVARO_TEST(TestWerte)
#include "tst_werte.moc"
