#include "server/proxyumgebung.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestProxyumgebung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (const auto *name : {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY",
                                 "HTTPS_PROXY", "ALL_PROXY", "NO_PROXY"}) {
            qunsetenv(name);
        }
    }
    void cleanupTestCase() { init(); }

    // With these spellings the key went to the proxy that was to be left out.
    void ausgenommen_data()
    {
        QTest::addColumn<QString>("liste");
        QTest::addColumn<QString>("ziel");
        QTest::addColumn<bool>("direkt");
        const auto zeile = [](const QString &liste, const QString &ziel, bool direkt) {
            QTest::newRow(qPrintable(liste + u" | "_s + ziel)) << liste << ziel << direkt;
        };
        const QString cloud = u"http://cloud.test/x"_s;
        for (const auto &liste :
             {u"*"_s, u"test"_s, u".test"_s, u"*.test"_s, u"cloud.test"_s, u"CLOUD.TEST"_s,
              u" a , cloud.test"_s, u"a cloud.test b"_s, u"cloud.test:80"_s, u"a,,.cloud.test"_s}) {
            zeile(liste, cloud, true);
        }
        for (const auto &liste : {u""_s, u"loud.test"_s, u"cloud"_s, u"cloud.test:81"_s,
                                  u"x.cloud.test"_s, u"."_s, u","_s, u"10.0.0.0/8"_s}) {
            zeile(liste, cloud, false);
        }
        zeile(u"10.0.0.0/8"_s, u"http://10.1.2.3"_s, true);
        zeile(u"10.0.0.0/8"_s, u"http://11.1.2.3"_s, false);
        zeile(u"10.1.2.3"_s, u"https://10.1.2.3"_s, true);
        zeile(u"10.1.2.3:443"_s, u"https://10.1.2.3"_s, true);
        zeile(u"fd00::/8"_s, u"http://[fd00::1]"_s, true);
        zeile(u"fd00::1"_s, u"http://[fd00::1]"_s, true);
        zeile(u"[fd00::1]:80"_s, u"http://[fd00::1]"_s, true);
        zeile(u"[fd00::1]:81"_s, u"http://[fd00::1]"_s, false);
    }
    void ausgenommen()
    {
        QFETCH(const QString, liste);
        QFETCH(const QString, ziel);
        qputenv("no_proxy", liste.toLatin1());
        QTEST(ohneProxy(QUrl(ziel)), "direkt");
        qunsetenv("no_proxy");
        qputenv("NO_PROXY", liste.toLatin1());
        QTEST(ohneProxy(QUrl(ziel)), "direkt");
    }

    // Passed by without a word.
    void genannt_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("wert");
        QTest::addColumn<QString>("erwartet"); // "": none
        const auto zeile = [](const char *name, const char *wert, const QString &erwartet) {
            QTest::newRow((QByteArray(name) + '=' + wert).constData())
                << QByteArray(name) << QByteArray(wert) << erwartet;
        };
        zeile("http_proxy", "http://p:3128", u"http p 3128  "_s);
        zeile("http_proxy", "http://p:3128/", u"http p 3128  "_s);
        zeile("http_proxy", "p:3128", u"http p 3128  "_s);
        zeile("http_proxy", "p", u"http p 1080  "_s);
        zeile("http_proxy", "http://[fd00::1]:3128", u"http fd00::1 3128  "_s);
        zeile("http_proxy", "http://n:w%40@p:1", u"http p 1 n w@"_s);
        zeile("all_proxy", "socks5://p:1", u"socks p 1  "_s);
        zeile("ALL_PROXY", "socks5h://p", u"socks p 1080  "_s);
        zeile("HTTP_PROXY", "http://p:1", {}); // a request's own header "Proxy" becomes that in CGI
        zeile("https_proxy", "http://p:1", {});
        zeile("http_proxy", "pac+http://p/x", {});
        zeile("http_proxy", "wpad:", {});
        zeile("http_proxy", "ftp://p:1", {});
        zeile("http_proxy", "", {});
    }
    void genannt()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const QByteArray, wert);
        qputenv(name.constData(), wert);
        const auto proxy = umgebungsproxy(QUrl(u"http://cloud.test"_s));
        QString gezeigt;
        if (proxy) {
            const bool socks = proxy->type() == QNetworkProxy::Socks5Proxy;
            gezeigt = u"%1 %2 %3 %4 %5"_s.arg(socks ? u"socks"_s : u"http"_s, proxy->hostName())
                          .arg(proxy->port())
                          .arg(proxy->user(), proxy->password());
        }
        QTEST(gezeigt, "erwartet");
    }

    void derEigeneGehtVor()
    {
        qputenv("all_proxy", "http://alle:1");
        qputenv("HTTPS_PROXY", "http://sicher:1");
        QCOMPARE(umgebungsproxy(QUrl(u"https://c"_s))->hostName(), u"sicher"_s);
        QCOMPARE(umgebungsproxy(QUrl(u"http://c"_s))->hostName(), u"alle"_s);
    }
};

KALVARO_TEST(TestProxyumgebung)
#include "tst_proxyumgebung.moc"
