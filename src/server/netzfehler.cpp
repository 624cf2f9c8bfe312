#include "server/netzfehler.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

QString netzfehlertext(QNetworkReply::NetworkError art, const QString &sonst)
{
    switch (art) {
    case QNetworkReply::ConnectionRefusedError:
        return u"Die Verbindung wurde abgelehnt."_s;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError: // see Einmalbody
        return u"Die Verbindung wurde unterbrochen."_s;
    case QNetworkReply::HostNotFoundError:
        return u"Der Server wurde nicht gefunden."_s;
    case QNetworkReply::SslHandshakeFailedError:
        return u"Es kam keine sichere Verbindung zustande."_s;
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
        return u"Das Netz ist nicht erreichbar."_s;
    case QNetworkReply::OperationCanceledError:
        return u"Die Übertragung wurde abgebrochen."_s;
    case QNetworkReply::TooManyRedirectsError:
        return u"Der Server leitet zu oft weiter."_s;
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::UnknownProxyError:
        return u"Der Proxy-Server ist nicht erreichbar."_s;
    case QNetworkReply::ProxyNotFoundError:
        return u"Der Proxy-Server wurde nicht gefunden."_s;
    case QNetworkReply::ProxyAuthenticationRequiredError:
        return u"Der Proxy-Server verlangt eine Anmeldung."_s;
    case QNetworkReply::ProtocolUnknownError:
        return u"Die Adresse beginnt weder mit „http://“ noch mit „https://“."_s;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::UnknownContentError:
        return u"Der Server antwortet nicht verständlich."_s;
    case QNetworkReply::TimeoutError:
        return u"Der Server antwortet nicht rechtzeitig."_s;
    case QNetworkReply::InsecureRedirectError:
        return u"Der Server leitet auf eine unsichere Adresse um."_s;
    case QNetworkReply::BackgroundRequestNotAllowedError:
        return u"Die Übertragung ist im Hintergrund nicht erlaubt."_s;
    default:
        return sonst;
    }
}

bool istStatusmeldung(QNetworkReply::NetworkError art)
{
    switch (art) {
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

} // namespace kalvaro
