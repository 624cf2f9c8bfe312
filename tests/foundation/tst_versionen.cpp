#include "foundation/versionen.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

int richtung(QStringView a, QStringView b)
{
    const auto ordnung = versionenVergleichen(a, b);
    return std::is_lt(ordnung) ? -1 : std::is_gt(ordnung) ? 1 : 0;
}

} // namespace

class TestVersionen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vergleichen_data();
    void vergleichen();
    void ordnetEineListe();
};

void TestVersionen::vergleichen_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("erwartet");

    QTest::newRow("equal") << u"1.4"_s << u"1.4"_s << 0;
    QTest::newRow("both empty") << QString() << QString() << 0;
    QTest::newRow("empty before anything") << QString() << u"0"_s << -1;
    QTest::newRow("1.10 is greater than 1.4") << u"1.10"_s << u"1.4"_s << 1;
    QTest::newRow("1.4.1 is greater than 1.4") << u"1.4.1"_s << u"1.4"_s << 1;
    QTest::newRow("1.3.9 is less than 1.4") << u"1.3.9"_s << u"1.4"_s << -1;
    QTest::newRow("2 is greater than 1.99") << u"2"_s << u"1.99"_s << 1;
    QTest::newRow("7.0.4 before 7.0.10") << u"7.0.4"_s << u"7.0.10"_s << -1;
    QTest::newRow("whole strings: 1.4.0 is longer than 1.4") << u"1.4.0"_s << u"1.4"_s << 1;
    QTest::newRow("leading zeros do not count") << u"1.04"_s << u"1.4"_s << 0;
    QTest::newRow("zeros only") << u"1.00"_s << u"1.0"_s << 0;
    QTest::newRow("leading zeros do not lengthen") << u"1.0009"_s << u"1.10"_s << -1;
    QTest::newRow("what follows equal numbers decides") << u"1.04b"_s << u"1.4a"_s << 1;
    QTest::newRow("character by character between numbers") << u"1.4a"_s << u"1.4b"_s << -1;
    QTest::newRow("a suffix comes after") << u"1.4beta"_s << u"1.4"_s << 1;
    QTest::newRow("letters compare by code, not by language") << u"Z"_s << u"a"_s << -1;
    QTest::newRow("umlauts compare by code") << u"ä"_s << u"z"_s << 1;
    QTest::newRow("a digit before a letter") << u"1"_s << u"a"_s << -1;
    QTest::newRow("a point before a digit") << u"1.x"_s << u"1.1"_s << 1;
    QTest::newRow("digits of other scripts are characters") << u"1.٢"_s << u"1.9"_s << 1;
    QTest::newRow("numbers beyond 64 bits")
        << u"1.99999999999999999999999"_s << u"1.100000000000000000000000"_s << -1;
    QTest::newRow("numbers beyond 64 bits that differ at the end")
        << u"340282366920938463463374607431768211456"_s
        << u"340282366920938463463374607431768211455"_s << 1;
}

void TestVersionen::vergleichen()
{
    QFETCH(QString, a);
    QFETCH(QString, b);

    QTEST(richtung(a, b), "erwartet");
    QTEST(-richtung(b, a), "erwartet");
}

void TestVersionen::ordnetEineListe()
{
    QStringList liste{u"10"_s, u"6.8.5"_s, u"7"_s, u"6.8.10"_s, u"7.0.1"_s, u"6.10"_s};

    std::sort(liste.begin(), liste.end(), [](const QString &a, const QString &b) {
        return std::is_lt(versionenVergleichen(a, b));
    });

    QCOMPARE(liste, (QStringList{u"6.8.5"_s, u"6.8.10"_s, u"6.10"_s, u"7"_s, u"7.0.1"_s, u"10"_s}));
}

KALVARO_TEST(TestVersionen)
#include "tst_versionen.moc"
