#include "server/netzfehler.h"
#include "testlauf.h"

#include <QMetaEnum>
#include <QSet>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestNetzfehler final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A kind either says that a status came, or it has a German sentence of ours.
    void jedeArtHatEinenText()
    {
        const auto arten = QMetaEnum::fromType<QNetworkReply::NetworkError>();
        for (int i = 0; i < arten.keyCount(); ++i) {
            const auto art = static_cast<QNetworkReply::NetworkError>(arten.value(i));
            const QString text = netzfehlertext(art, u"english"_s);
            if (art == QNetworkReply::NoError || istStatusmeldung(art)) {
                continue;
            }
            QVERIFY2(text != u"english" && text.endsWith(u'.') && text.at(0).isUpper(),
                     arten.key(i));
        }
    }

    void texte_data()
    {
        QTest::addColumn<QNetworkReply::NetworkError>("art");
        QTest::addColumn<QString>("text");
        const auto zeile = [](QNetworkReply::NetworkError art, const QString &text) {
            QTest::newRow(qPrintable(text)) << art << text;
        };
        zeile(QNetworkReply::ConnectionRefusedError, u"Die Verbindung wurde abgelehnt."_s);
        zeile(QNetworkReply::RemoteHostClosedError, u"Die Verbindung wurde unterbrochen."_s);
        zeile(QNetworkReply::HostNotFoundError, u"Der Server wurde nicht gefunden."_s);
        zeile(QNetworkReply::SslHandshakeFailedError,
              u"Es kam keine sichere Verbindung zustande."_s);
        zeile(QNetworkReply::UnknownNetworkError, u"Das Netz ist nicht erreichbar."_s);
        zeile(QNetworkReply::OperationCanceledError, u"Die Übertragung wurde abgebrochen."_s);
        zeile(QNetworkReply::TooManyRedirectsError, u"Der Server leitet zu oft weiter."_s);
        zeile(QNetworkReply::ProxyTimeoutError, u"Der Proxy-Server ist nicht erreichbar."_s);
        zeile(QNetworkReply::ProxyNotFoundError, u"Der Proxy-Server wurde nicht gefunden."_s);
        zeile(QNetworkReply::ProxyAuthenticationRequiredError,
              u"Der Proxy-Server verlangt eine Anmeldung."_s);
        zeile(QNetworkReply::ProtocolUnknownError,
              u"Die Adresse beginnt weder mit „http://“ noch mit „https://“."_s);
        zeile(QNetworkReply::ProtocolFailure, u"Der Server antwortet nicht verständlich."_s);
        zeile(QNetworkReply::InternalServerError, u"sonst"_s);
    }
    void texte()
    {
        QFETCH(QNetworkReply::NetworkError, art);
        QTEST(netzfehlertext(art, u"sonst"_s), "text");
    }

    void statusmeldungen_data()
    {
        QTest::addColumn<QNetworkReply::NetworkError>("art");
        QTest::addColumn<bool>("status");
        QTest::newRow("400") << QNetworkReply::ProtocolInvalidOperationError << true;
        QTest::newRow("401") << QNetworkReply::AuthenticationRequiredError << true;
        QTest::newRow("404") << QNetworkReply::ContentNotFoundError << true;
        QTest::newRow("418") << QNetworkReply::UnknownContentError << true;
        QTest::newRow("500") << QNetworkReply::InternalServerError << true;
        QTest::newRow("599") << QNetworkReply::UnknownServerError << true;
        QTest::newRow("none") << QNetworkReply::NoError << false;
        QTest::newRow("cut off") << QNetworkReply::RemoteHostClosedError << false;
        QTest::newRow("refused") << QNetworkReply::ConnectionRefusedError << false;
        QTest::newRow("proxy wants a login")
            << QNetworkReply::ProxyAuthenticationRequiredError << false;
    }
    void statusmeldungen()
    {
        QFETCH(QNetworkReply::NetworkError, art);
        QTEST(istStatusmeldung(art), "status");
    }
};

KALVARO_TEST(TestNetzfehler)
#include "tst_netzfehler.moc"
