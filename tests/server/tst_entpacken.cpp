#include "server/entpacken.h"
#include "testlauf.h"

#include "gepackt.h"

using namespace kalvaro;

namespace {

constexpr qsizetype grenze = 1000;
const QByteArray klar = "{\"text\":\"hallo, hallo, hallo\"}";

QByteArray verdorben(QByteArray daten, qsizetype stelle)
{
    daten[stelle] = static_cast<char>(daten.at(stelle) ^ 1);
    return daten;
}

} // namespace

class TestEntpacken final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lesbar_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<QByteArray>("kodierung");
        QTest::addColumn<QByteArray>("erwartet");
        const auto zeile = [](const char *name, const QByteArray &daten, const char *kodierung) {
            QTest::newRow(name) << daten << QByteArray(kodierung) << klar;
        };
        zeile("no coding", klar, "");
        zeile("identity", klar, "identity");
        zeile("gzip", gzip(klar), "gzip");
        zeile("x-gzip", gzip(klar), "x-gzip");
        zeile("capitals and blanks", gzip(klar), " GZip ");
        zeile("deflate", deflate(klar), "deflate");
        zeile("deflate without its header", deflateOhneKopf(klar), "deflate");
        zeile("one coding that counts", gzip(klar), "identity, gzip");
        zeile("empty list entries", gzip(klar), "gzip,,");
        zeile("two gzip members", gzip(klar.left(5)) + gzip(klar.mid(5)), "gzip");
        QTest::newRow("empty body of a 204") << QByteArray() << QByteArray("gzip") << QByteArray();
        QTest::newRow("as long as the bound")
            << gzip(QByteArray(grenze, 'x')) << QByteArray("gzip") << QByteArray(grenze, 'x');
        const QByteArray lang(200000, 'y');
        QTest::newRow("plain bytes are not bounded") << lang << QByteArray() << lang;
    }
    void lesbar()
    {
        QFETCH(QByteArray, daten);
        QFETCH(QByteArray, kodierung);
        const auto ergebnis = entpacken(daten, kodierung, grenze);
        QVERIFY(ergebnis);
        QTEST(*ergebnis, "erwartet");
    }

    void unlesbar_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<QByteArray>("kodierung");
        const QByteArray gepackt = gzip(klar);
        const auto zeile = [](const char *name, const QByteArray &daten, const char *kodierung) {
            QTest::newRow(name) << daten << QByteArray(kodierung);
        };
        zeile("unknown coding", klar, "br");
        zeile("not packed at all", klar, "gzip");
        zeile("deflate, not packed at all", klar, "deflate");
        zeile("half", gepackt.left(gepackt.size() / 2), "gzip");
        zeile("header only", gepackt.left(10), "gzip");
        zeile("without its checksum", gepackt.chopped(8), "gzip");
        zeile("one byte short", gepackt.chopped(1), "gzip");
        zeile("wrong checksum", verdorben(gepackt, gepackt.size() - 8), "gzip");
        zeile("wrong length", verdorben(gepackt, gepackt.size() - 1), "gzip");
        zeile("followed by garbage", gepackt + "garbage", "gzip");
        zeile("second coding damaged", deflate(gepackt.chopped(1)), "gzip, deflate");
        zeile("deflate cut short", deflate(klar).chopped(1), "deflate");
        zeile("deflate without its header cut short", deflateOhneKopf(klar).chopped(1), "deflate");
    }
    void unlesbar()
    {
        QFETCH(QByteArray, daten);
        QFETCH(QByteArray, kodierung);
        const auto ergebnis = entpacken(daten, kodierung, grenze);
        QVERIFY(!ergebnis);
        QCOMPARE(ergebnis.error(), Entpackfehler::Unlesbar);
    }

    void zuGross_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<QByteArray>("kodierung");
        const QByteArray zuLang(grenze + 1, 'x');
        const QByteArray bombe(2000000, 'x');
        QTest::newRow("one byte past the bound") << gzip(zuLang) << QByteArray("gzip");
        QTest::newRow("bomb") << gzip(bombe) << QByteArray("gzip");
        QTest::newRow("bomb in deflate") << deflateOhneKopf(bombe) << QByteArray("deflate");
        QTest::newRow("bomb in many members")
            << gzip(QByteArray(grenze, 'x')).repeated(2) << QByteArray("gzip");
    }
    void zuGross()
    {
        QFETCH(QByteArray, daten);
        QFETCH(QByteArray, kodierung);
        const auto ergebnis = entpacken(daten, kodierung, grenze);
        QVERIFY(!ergebnis);
        QCOMPARE(ergebnis.error(), Entpackfehler::ZuGross);
    }
};

KALVARO_TEST(TestEntpacken)
#include "tst_entpacken.moc"
