#include "assessment/bewertung.h"

#include "doubles/jsonlesen.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestBewertung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vorgaben();
    void einzelneAngaben();
    void gleichheit();
    void angebot_data();
    void angebot();
    void eineUebermaessigeVersionIstKeinAngebot();
    void keinAngebot_data();
    void keinAngebot();
    void ohneAntwortKeinAngebot();
    void adresse_data();
    void adresse();
    void keineAdresse_data();
    void keineAdresse();
};

void TestBewertung::vorgaben()
{
    const Bewertung b;

    QCOMPARE(b.art, Art::Warn);
    QVERIFY(!b.startbar);
    QVERIFY(!b.offline);
    QVERIFY(b.titel.isEmpty());
    QVERIFY(b.detail.isEmpty());
    QVERIFY(b.betrieb.isEmpty());
    QVERIFY(b.antwort.isUndefined());
    QVERIFY(!b.neueVersion.has_value());
    QVERIFY(!b.updateAdresse.has_value());
}

void TestBewertung::einzelneAngaben()
{
    const Bewertung b{.titel = u"Titel"_s, .startbar = true, .neueVersion = u"2"_s};

    QCOMPARE(b.art, Art::Warn);
    QCOMPARE(b.titel, u"Titel"_s);
    QVERIFY(b.startbar);
    QVERIFY(!b.offline);
    QCOMPARE(b.neueVersion, u"2"_s);
    QVERIFY(b.antwort.isUndefined());
}

void TestBewertung::gleichheit()
{
    const Bewertung b{.art = Art::Gut, .antwort = json(R"({"a":1})")};
    Bewertung kopie = b;
    QCOMPARE(kopie, b);

    kopie.antwort = json(R"({"a":2})");

    QVERIFY(kopie != b);
}

// It went into the settings and the log, megabytes of it.
void TestBewertung::eineUebermaessigeVersionIstKeinAngebot()
{
    const auto mit = [](qsizetype version, qsizetype adresse) {
        return json(R"({"app":{"version":")" + QByteArray(version, '9') + R"(","url":"https://)" +
                    QByteArray(adresse - 8, 'a') + R"("}})");
    };
    QVERIFY(updateAngebot(mit(64, 65536)).has_value());
    QVERIFY(!updateAngebot(mit(65, 100)).has_value());
    QVERIFY(!updateAngebot(mit(64, 65537)).has_value());
}

void TestBewertung::angebot_data()
{
    QTest::addColumn<QByteArray>("antwort");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("url");

    const auto antwort = [](const QByteArray &version, const QByteArray &url) {
        return QByteArray(R"({"app":{"version":")" + version + R"(","url":")" + url + R"("}})");
    };
    const QString ziel = u"https://cloud/kalvaro.zip"_s;
    QTest::newRow("1.4.1 yields an offer")
        << antwort("1.4.1", "https://cloud/kalvaro.zip") << u"1.4.1"_s << ziel;
    QTest::newRow("1.10 yields an offer")
        << antwort("1.10", "https://cloud/kalvaro.zip") << u"1.10"_s << ziel;
    QTest::newRow("2 yields an offer")
        << antwort("2", "https://cloud/kalvaro.zip") << u"2"_s << ziel;
    QTest::newRow("a suffix") << antwort("1.4b", "https://cloud/kalvaro.zip") << u"1.4b"_s << ziel;
    QTest::newRow("leading zeros keep their look")
        << antwort("1.05", "https://cloud/kalvaro.zip") << u"1.05"_s << ziel;
    QTest::newRow("the address is not checked beyond its beginning")
        << antwort("1.5", "https://") << u"1.5"_s << u"https://"_s;
    QTest::newRow("other keys beside it")
        << QByteArray(R"({"x":1,"app":{"y":[],"version":"1.5","url":"https://cloud/kalvaro.zip"}})")
        << u"1.5"_s << ziel;
}

void TestBewertung::angebot()
{
    QFETCH(QByteArray, antwort);
    QFETCH(QString, version);
    QFETCH(QString, url);

    const auto angebot = updateAngebot(json(antwort));

    QVERIFY(angebot.has_value());
    QCOMPARE(*angebot, (Updateangebot{version, url}));
}

void TestBewertung::keinAngebot_data()
{
    QTest::addColumn<QByteArray>("antwort");

    const auto app = [](const char *name, const QByteArray &inhalt) {
        QTest::newRow(name) << QByteArray("{\"app\":" + inhalt + '}');
    };
    app("1.4, equal to the running version", R"({"version":"1.4","url":"https://c/k"})");
    app("1.04, equal as well", R"({"version":"1.04","url":"https://c/k"})");
    app("1.3.9 is older", R"({"version":"1.3.9","url":"https://c/k"})");
    app("0.99 is older", R"({"version":"0.99","url":"https://c/k"})");
    app("http with a newer version", R"({"version":"1.5","url":"http://c/k"})");
    app("an empty address", R"({"version":"1.5","url":""})");
    app("a missing address", R"({"version":"1.5"})");
    app("the scheme in capitals", R"({"version":"1.5","url":"HTTPS://c/k"})");
    app("a blank before the scheme", R"({"version":"1.5","url":" https://c/k"})");
    app("the scheme inside", R"({"version":"1.5","url":"file:///https://c/k"})");
    app("one slash", R"({"version":"1.5","url":"https:/c/k"})");
    app("an empty version", R"({"version":"","url":"https://c/k"})");
    app("a missing version", R"({"url":"https://c/k"})");
    app("the version null", R"({"version":null,"url":"https://c/k"})");
    app("the version a number", R"({"version":2,"url":"https://c/k"})");
    app("the version a boolean", R"({"version":true,"url":"https://c/k"})");
    app("the version a map", R"({"version":{"a":"2"},"url":"https://c/k"})");
    app("the version a list", R"({"version":["2"],"url":"https://c/k"})");
    app("the address a list", R"({"version":"1.5","url":["https://c/k"]})");
    app("app a string", R"("1.5")");
    app("app a list", R"([{"version":"1.5","url":"https://c/k"}])");
    app("app null", "null");
    QTest::newRow("no app") << QByteArray("{}");
    QTest::newRow("the keys at the top") << QByteArray(R"({"version":"1.5","url":"https://c/k"})");
    QTest::newRow("an answer that is a list") << QByteArray("[]");
}

void TestBewertung::keinAngebot()
{
    QFETCH(QByteArray, antwort);

    QVERIFY(!updateAngebot(json(antwort)).has_value());
}

void TestBewertung::ohneAntwortKeinAngebot()
{
    QVERIFY(!updateAngebot(QJsonValue::Undefined).has_value());
}

void TestBewertung::adresse_data()
{
    QTest::addColumn<QString>("adresse");

    QTest::newRow("an ordinary address") << u"https://cloud.example/kalvaro-1.5.zip"_s;
    QTest::newRow("with port, query and fragment") << u"https://cloud.example:8443/a?b=c&d=%20#e"_s;
}

void TestBewertung::adresse()
{
    QFETCH(QString, adresse);

    const auto url = updateUrl(adresse);

    QVERIFY(url.has_value());
    QCOMPARE(url->toString(QUrl::FullyEncoded), adresse);
}

void TestBewertung::keineAdresse_data()
{
    QTest::addColumn<QString>("adresse");

    QTest::newRow("an empty text") << QString();
    QTest::newRow("a blank in the host") << u"https://cloud example/"_s;
    QTest::newRow("a broken port") << u"https://cloud.example:port/"_s;
    QTest::newRow("half a percent code") << u"https://cloud.example/%2"_s;
    QTest::newRow("an open bracket") << u"https://[::1/"_s;
}

void TestBewertung::keineAdresse()
{
    QFETCH(QString, adresse);

    QVERIFY(!updateUrl(adresse).has_value());
}

KALVARO_TEST(TestBewertung)
#include "tst_bewertung.moc"
