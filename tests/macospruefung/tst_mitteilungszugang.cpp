#include "attrappen.h"
#include "platform/macos/macmitteilungen.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Of UNAuthorizationOptions and UNNotificationPresentationOptions.
constexpr long tonUndHinweis = 2 | 4;
constexpr long listeUndBanner = 8 | 16;

} // namespace

class TestMitteilungszugang final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        attrappen::mitteilungen() = {.buendelkennung = u"de.kalvaro.kalvaro"_s};
        gruende.clear();
    }

    void erlaubnis()
    {
        zugang.erlaubnisErbitten();
        attrappen::nachreichen();
        QCOMPARE(attrappen::mitteilungen().erlaubnisse, std::vector<long>{tonUndHinweis});
    }

    void eineMitteilung()
    {
        zeigen(u"Bibliothek aktuell"_s, u"3 Titel – <b>neu</b>"_s, std::nullopt);
        const auto &bitten = attrappen::mitteilungen().bitten;
        QCOMPARE(bitten.size(), 1U);
        QCOMPARE(bitten[0].titel, u"Bibliothek aktuell"_s);
        QCOMPARE(bitten[0].inhalt, u"3 Titel – <b>neu</b>"_s);
        QVERIFY(bitten[0].angaben.isEmpty());
        QVERIFY(bitten[0].sofort);
        QCOMPARE(gruende, QStringList());
    }

    void mitZiel()
    {
        zeigen(u"kalvaro 1.5"_s, u"Neu"_s, u"https://kalvaro.de/neu?ä"_s);
        const QMap<QString, QString> angaben{{u"url"_s, u"https://kalvaro.de/neu?ä"_s}};
        QCOMPARE(attrappen::mitteilungen().bitten.at(0).angaben, angaben);
    }

    void keineErsetztDieAndere()
    {
        zeigen(u"a"_s, u"b"_s, std::nullopt);
        zeigen(u"a"_s, u"b"_s, std::nullopt);
        const auto &bitten = attrappen::mitteilungen().bitten;
        QCOMPARE(bitten.size(), 2U);
        QVERIFY(bitten[0].kennung != bitten[1].kennung);
        QVERIFY(!bitten[0].kennung.isEmpty());
    }

    void dasSystemLehntAb()
    {
        attrappen::mitteilungen().ablehnung = u"Mitteilungen sind für „kalvaro“ nicht erlaubt"_s;
        zeigen(u"a"_s, u"b"_s, std::nullopt);
        QCOMPARE(gruende, QStringList(u"Mitteilungen sind für „kalvaro“ nicht erlaubt"_s));
    }

    void ohneBuendelKeine()
    {
        attrappen::mitteilungen().buendelkennung.clear();
        zugang.erlaubnisErbitten();
        zugang.empfangen([](const QString &) {});
        zeigen(u"a"_s, u"b"_s, std::nullopt);
        QCOMPARE(gruende, QStringList(u"kalvaro läuft nicht aus „kalvaro.app“"_s));
        QVERIFY(attrappen::mitteilungen().erlaubnisse.empty());
        QVERIFY(attrappen::mitteilungen().bitten.empty());
    }

    void auchWennDasProgrammVornIst()
    {
        zugang.empfangen([](const QString &) {});
        QCOMPARE(attrappen::zeigeart(), std::optional(listeUndBanner));
    }

    void klick_data()
    {
        QTest::addColumn<QString>("feld");
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<bool>("geklickt");
        QTest::addColumn<QStringList>("ziele");
        QTest::newRow("target") << u"url"_s << QVariant(u"http://a/ü"_s) << true
                                << QStringList(u"http://a/ü"_s);
        QTest::newRow("no target") << QString() << QVariant() << true << QStringList();
        QTest::newRow("another field")
            << u"uri"_s << QVariant(u"http://a"_s) << true << QStringList();
        QTest::newRow("not a text") << u"url"_s << QVariant(1) << true << QStringList();
        QTest::newRow("dismissed") << u"url"_s << QVariant(u"http://a"_s) << false << QStringList();
    }

    // The centre is told that it was dealt with in every case.
    void klick()
    {
        QFETCH(QString, feld);
        QFETCH(QVariant, wert);
        QFETCH(bool, geklickt);
        QStringList gehoert;
        zugang.empfangen([&gehoert](const QString &ziel) { gehoert.append(ziel); });
        QCOMPARE(attrappen::anfassen(feld, wert, geklickt), 1);
        QTEST(gehoert, "ziele");
        zugang.empfangen([](const QString &) {});
    }

    void werNichtMehrHoertBleibtNichtLiegen()
    {
        const auto zeuge = std::make_shared<int>();
        zugang.empfangen([zeuge](const QString &) {});
        QVERIFY(zeuge.use_count() > 1);
        zugang.empfangen([](const QString &) {});
        QCOMPARE(zeuge.use_count(), 1L);
    }

    void werAntwortetHatBleibtNichtLiegen()
    {
        const auto zeuge = std::make_shared<int>();
        zugang.zeigen(u"a"_s, u"b"_s, std::nullopt, [zeuge](const QString &) {});
        QVERIFY(zeuge.use_count() > 1);
        attrappen::nachreichen();
        QCOMPARE(zeuge.use_count(), 1L);
    }

private:
    void zeigen(const QString &titel, const QString &inhalt, const std::optional<QString> &ziel)
    {
        zugang.zeigen(titel, inhalt, ziel, [this](const QString &grund) { gruende.append(grund); });
        attrappen::nachreichen();
    }

    const Mitteilungszugang zugang = Mitteilungszugang::desSystems();
    QStringList gruende;
};

KALVARO_TEST(TestMitteilungszugang)
#include "tst_mitteilungszugang.moc"
