// What an answer may become in memory.

#include "server/inhalt.h"
#include "testlauf.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QByteArray liste(const QByteArray &eintrag, qsizetype anzahl)
{
    return '[' + (eintrag + ',').repeated(anzahl - 1) + eintrag + ']';
}

} // namespace

class TestInhalt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wieEsIst_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<QJsonValue>("erwartet");
        QTest::newRow("map") << QByteArray("{\"a\":[1,\"]\"]}")
                             << QJsonValue(QJsonObject{{u"a"_s, QJsonArray{1, u"]"_s}}});
        QTest::newRow("list") << QByteArray("[1]") << QJsonValue(QJsonArray{1});
        QTest::newRow("nothing") << QByteArray() << QJsonValue(QJsonObject());
        QTest::newRow("a word") << QByteArray("hallo") << QJsonValue(QJsonObject());
        QTest::newRow("a number") << QByteArray("5") << QJsonValue(QJsonObject());
    }
    void wieEsIst()
    {
        QFETCH(const QByteArray, daten);
        QFETCH(const QJsonValue, erwartet);
        QCOMPARE(inhalt(daten), std::optional(erwartet));
    }

    // Three bytes of an answer became two hundred in memory.
    void kleineAntwortenMitVielenWertenSindZuGross_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::newRow("lists in a list") << liste("[1]", 3'000'000);
        QTest::newRow("maps in a list") << liste("{\"a\":1}", 1'000'000);
        QTest::newRow("numbers") << liste("1", 20'000'000);
        QTest::newRow("maps with texts")
            << liste("{\"a\":\"" + QByteArray(95, 'x') + "\"}", 600'000);
        QTest::newRow("one long text with an umlaut")
            << liste('"' + QByteArray(60'000'000, 'x') + "\\u00e4\"", 1);
        QTest::newRow("maps with eight keys")
            << liste("{\"a\":0,\"b\":0,\"c\":0,\"d\":0,\"e\":0,\"f\":0,\"g\":0,\"h\":\"" +
                         QByteArray(150, 'x') + "\"}",
                     290'000);
        QTest::newRow("texts") << liste("\"\"", 10'000'000);
    }
    void kleineAntwortenMitVielenWertenSindZuGross()
    {
        QFETCH(const QByteArray, daten);
        QVERIFY(!inhalt(daten));
    }

    void grosseAntwortenMitWenigenWertenGehen_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<int>("anzahl");
        const QByteArray playlist = "{\"id\":\"1234567\",\"eltern\":\"\",\"name\":\"Warm-up\","
                                    "\"ordner\":false,\"titel\":12,"
                                    "\"seq\":3,\"uuid\":\"8f14e45f-ceea-467f-a0e6-1b2c3d4e5f60\"}";
        QTest::newRow("130,000 playlists") << liste(playlist, 130'000) << 130'000;
        QTest::newRow("one long text") << liste('"' + QByteArray(60'000'000, '[') + '"', 1) << 1;
        QTest::newRow("escaped quotes")
            << liste('"' + QByteArray("\\\"[").repeated(10'000'000) + '"', 1) << 1;
    }
    void grosseAntwortenMitWenigenWertenGehen()
    {
        QFETCH(const QByteArray, daten);
        const auto gelesen = inhalt(daten);
        QVERIFY(gelesen);
        QTEST(int(gelesen->toArray().size()), "anzahl");
    }
};

KALVARO_TEST(TestInhalt)
#include "tst_inhalt.moc"
