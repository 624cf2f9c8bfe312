#include "foundation/formate.h"
#include "testlauf.h"

#include <QLocale>

#include <cmath>
#include <ctime>
#include <limits>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Zahl = std::optional<double>;

namespace {

constexpr double unendlich = std::numeric_limits<double>::infinity();
constexpr double keineZahl = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TestFormate final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void zahlen_data();
    void zahlen();
    void gigabyte_data();
    void gigabyte();
    void zeitpunkt_data();
    void zeitpunkt();
    void zeitpunktEinerAnderenZone();
    void stempel_data();
    void stempel();
    void stempelImJahreswechsel();

private:
    const QDateTime jetzt{QDate(2026, 3, 13), QTime(18, 7)};
};

void TestFormate::initTestCase()
{
    // Figures are German whatever the system's language; times are those of a European zone with
    // summer time, written out so that no time zone database is needed.
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
}

void TestFormate::zahlen_data()
{
    QTest::addColumn<Zahl>("wert");
    QTest::addColumn<QString>("erwartet");

    QTest::newRow("1234567.5 gives 1.234.568") << Zahl(1234567.5) << u"1.234.568"_s;
    QTest::newRow("2.5 gives 2") << Zahl(2.5) << u"2"_s;
    QTest::newRow("absent gives –") << Zahl() << u"–"_s;
    QTest::newRow("0") << Zahl(0) << u"0"_s;
    QTest::newRow("0.5 to even") << Zahl(0.5) << u"0"_s;
    QTest::newRow("1.5 to even") << Zahl(1.5) << u"2"_s;
    QTest::newRow("3.5 to even") << Zahl(3.5) << u"4"_s;
    QTest::newRow("a little over a half") << Zahl(2.500001) << u"3"_s;
    QTest::newRow("-2.5 to even") << Zahl(-2.5) << u"-2"_s;
    QTest::newRow("999 without a point") << Zahl(999) << u"999"_s;
    QTest::newRow("999.5 grows a point") << Zahl(999.5) << u"1.000"_s;
    QTest::newRow("1000") << Zahl(1000) << u"1.000"_s;
    QTest::newRow("-1234") << Zahl(-1234) << u"-1.234"_s;
    QTest::newRow("the largest whole number of a double")
        << Zahl(9007199254740992.0) << u"9.007.199.254.740.992"_s;
    QTest::newRow("1e21 without an exponent") << Zahl(1e21) << u"1.000.000.000.000.000.000.000"_s;
    QTest::newRow("not a number") << Zahl(keineZahl) << u"NaN"_s;
    QTest::newRow("infinity") << Zahl(unendlich) << u"∞"_s;
}

void TestFormate::zahlen()
{
    QFETCH(Zahl, wert);

    QTEST(fZahl(wert), "erwartet");
}

void TestFormate::gigabyte_data()
{
    QTest::addColumn<Zahl>("bytes");
    QTest::addColumn<QString>("erwartet");

    QTest::newRow("0 gives 0,0 GB") << Zahl(0) << u"0,0 GB"_s;
    QTest::newRow("100 000 000 000 gives 100 GB") << Zahl(100e9) << u"100 GB"_s;
    QTest::newRow("52 300 000 000 gives 52,3 GB") << Zahl(52.3e9) << u"52,3 GB"_s;
    QTest::newRow("99 960 000 000 gives 100,0 GB, the digits are chosen before rounding")
        << Zahl(99.96e9) << u"100,0 GB"_s;
    QTest::newRow("123 456 000 000 gives 123 GB") << Zahl(123.456e9) << u"123 GB"_s;
    QTest::newRow("1 234 000 000 000 gives 1.234 GB") << Zahl(1234e9) << u"1.234 GB"_s;
    QTest::newRow("absent gives – without a unit") << Zahl() << u"–"_s;
    QTest::newRow("0.25 GB to even") << Zahl(250'000'000) << u"0,2 GB"_s;
    QTest::newRow("0.15 GB to even, on its shortest decimal") << Zahl(150'000'000) << u"0,2 GB"_s;
    QTest::newRow("0.35 GB to even, on its shortest decimal") << Zahl(350'000'000) << u"0,4 GB"_s;
    QTest::newRow("0.05 GB to even") << Zahl(50'000'000) << u"0,0 GB"_s;
    QTest::newRow("a byte more than 0.25 GB") << Zahl(250'000'001) << u"0,3 GB"_s;
    QTest::newRow("100.5 GB to even") << Zahl(100.5e9) << u"100 GB"_s;
    QTest::newRow("101.5 GB to even") << Zahl(101.5e9) << u"102 GB"_s;
    QTest::newRow("whole gigabytes keep their decimal") << Zahl(7e9) << u"7,0 GB"_s;
    QTest::newRow("decimal, not 1024-based") << Zahl(1024.0 * 1024 * 1024) << u"1,1 GB"_s;
    QTest::newRow("negative") << Zahl(-1.5e9) << u"-1,5 GB"_s;
    QTest::newRow("not a number") << Zahl(keineZahl) << u"NaN GB"_s;
    QTest::newRow("infinity") << Zahl(unendlich) << u"∞ GB"_s;
}

void TestFormate::gigabyte()
{
    QFETCH(Zahl, bytes);

    QTEST(fGB(bytes), "erwartet");
}

void TestFormate::zeitpunkt_data()
{
    QTest::addColumn<QDateTime>("zeit");
    QTest::addColumn<QString>("erwartet");

    const auto am = [](int monat, int tag, int h, int m, int s = 0) {
        return QDateTime(QDate(2026, monat, tag), QTime(h, m, s));
    };
    QTest::newRow("this morning gives heute 09:15") << am(3, 13, 9, 15) << u"heute 09:15"_s;
    QTest::newRow("yesterday evening gives gestern 22:40")
        << am(3, 12, 22, 40) << u"gestern 22:40"_s;
    QTest::newRow("a day last week gives 07.03. 18:05") << am(3, 7, 18, 5) << u"07.03. 18:05"_s;
    QTest::newRow("today's first second") << am(3, 13, 0, 0) << u"heute 00:00"_s;
    QTest::newRow("today's last second") << am(3, 13, 23, 59, 59) << u"heute 23:59"_s;
    QTest::newRow("yesterday's last second") << am(3, 12, 23, 59, 59) << u"gestern 23:59"_s;
    QTest::newRow("yesterday's first second") << am(3, 12, 0, 0) << u"gestern 00:00"_s;
    QTest::newRow("the last second before yesterday") << am(3, 11, 23, 59, 59) << u"11.03. 23:59"_s;
    QTest::newRow("tomorrow") << am(3, 14, 8, 0) << u"14.03. 08:00"_s;
    QTest::newRow("today, a year ago")
        << QDateTime(QDate(2025, 3, 13), QTime(9, 15)) << u"13.03. 09:15"_s;
}

void TestFormate::zeitpunkt()
{
    QFETCH(QDateTime, zeit);

    QTEST(fZeit(zeit, jetzt), "erwartet");
}

void TestFormate::zeitpunktEinerAnderenZone()
{
    const auto weltzeit = QDateTime::fromString(u"2026-03-12T23:30:00Z"_s, Qt::ISODate);

    QCOMPARE(fZeit(weltzeit, jetzt), u"heute 00:30"_s);
    QCOMPARE(fZeit(weltzeit, jetzt.toUTC()), u"heute 00:30"_s);
}

void TestFormate::stempel_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("erwartet");

    QTest::newRow("a time stamp of this morning gives heute 09:15")
        << u"2026-03-13 09:15:00"_s << u"heute 09:15"_s;
    QTest::newRow("of yesterday evening gives gestern 22:40")
        << u"2026-03-12 22:40:59"_s << u"gestern 22:40"_s;
    QTest::newRow("of a day last week gives 07.03. 18:05")
        << u"2026-03-07 18:05:00"_s << u"07.03. 18:05"_s;
    QTest::newRow("in summer time") << u"2025-07-01 23:59:59"_s << u"01.07. 23:59"_s;
    QTest::newRow("the empty text gives –") << QString() << u"–"_s;

    const QStringList unveraendert{u"vorhin"_s,
                                   u" "_s,
                                   u"2026-03-13"_s,
                                   u"09:15:00"_s,
                                   u"2026-03-13T09:15:00"_s,
                                   u"2026-03-13 09:15"_s,
                                   u"2026-03-13 09:15:00 Uhr"_s,
                                   u" 2026-03-13 09:15:00"_s,
                                   u"2026-03-13 09:15:00Z"_s,
                                   u"13.03.2026 09:15:00"_s,
                                   u"2026-02-30 09:15:00"_s,
                                   u"2026-13-01 09:15:00"_s,
                                   u"2026-03-13 24:00:00"_s,
                                   u"2026-03-13 09:61:00"_s,
                                   u"0000-00-00 00:00:00"_s,
                                   u"<b>2026</b>"_s};
    for (const QString &text : unveraendert) {
        QTest::addRow("an unparsable text returns that text: \"%s\"", qPrintable(text))
            << text << text;
    }
}

void TestFormate::stempel()
{
    QFETCH(QString, text);

    QTEST(fZeit(text, jetzt), "erwartet");
}

void TestFormate::stempelImJahreswechsel()
{
    const QDateTime neujahr(QDate(2027, 1, 1), QTime(0, 5));

    QCOMPARE(fZeit(u"2026-12-31 23:58:00"_s, neujahr), u"gestern 23:58"_s);
    QCOMPARE(fZeit(u"2026-12-30 23:58:00"_s, neujahr), u"30.12. 23:58"_s);
}

KALVARO_TEST(TestFormate)
#include "tst_formate.moc"
