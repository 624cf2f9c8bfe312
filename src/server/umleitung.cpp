#include "server/umleitung.h"

namespace kalvaro {

namespace {

int hafen(const QUrl &url)
{
    return url.port(url.scheme() == u"https" ? 443 : 80);
}

bool selberDienst(const QUrl &von, const QUrl &nach)
{
    if (von.host().isEmpty() || von.host() != nach.host()) {
        return false;
    }
    const bool selberHafen = hafen(von) == hafen(nach);
    if (von.scheme() == nach.scheme()) {
        return selberHafen;
    }
    const bool ueblich = hafen(von) == 80 && hafen(nach) == 443;
    return von.scheme() == u"http" && nach.scheme() == u"https" && (selberHafen || ueblich);
}

} // namespace

std::optional<QUrl> sprungziel(const QUrl &von, int status, const QByteArray &ort)
{
    const bool sprung =
        status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    if (!sprung || ort.isEmpty()) {
        return {};
    }
    const QUrl angegeben = QUrl::fromEncoded(ort);
    QUrl ziel = von.resolved(angegeben);
    if (!angegeben.isValid() || !ziel.isValid() || !selberDienst(von, ziel)) {
        return {};
    }
    ziel.setFragment({});
    ziel.setUserInfo(von.userInfo(QUrl::FullyEncoded), QUrl::StrictMode);
    return ziel;
}

} // namespace kalvaro
