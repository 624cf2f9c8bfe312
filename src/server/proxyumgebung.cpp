#include "server/proxyumgebung.h"

#include <QHostAddress>
#include <QRegularExpression>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString variable(const QString &name, bool auchGross = true)
{
    const QString klein = qEnvironmentVariable(name.toLatin1().constData());
    return klein.isEmpty() && auchGross
               ? qEnvironmentVariable(name.toUpper().toLatin1().constData())
               : klein;
}

bool passt(QString eintrag, const QString &host, int port)
{
    eintrag = eintrag.toLower();
    if (eintrag == u"*") {
        return true;
    }
    if (const auto netz = QHostAddress::parseSubnet(eintrag);
        eintrag.contains(u'/') && netz.second >= 0) {
        return QHostAddress(host).isInSubnet(netz);
    }
    static const QRegularExpression mitHafen(u"^\\[?([^\\[\\]]*?)\\]?(?::(\\d+))?$"_s);
    const bool nackt = eintrag.count(u':') > 1 && !eintrag.startsWith(u'[');
    const QRegularExpressionMatch teile = mitHafen.match(eintrag);
    if (!nackt && teile.hasMatch()) {
        if (!teile.captured(2).isEmpty() && teile.captured(2).toInt() != port) {
            return false;
        }
        eintrag = teile.captured(1);
    }
    if (eintrag.startsWith(u"*."_s)) {
        eintrag.remove(0, 1);
    }
    if (eintrag.startsWith(u'.')) {
        eintrag.remove(0, 1);
    }
    return !eintrag.isEmpty() && (host == eintrag || host.endsWith(u'.' + eintrag));
}

} // namespace

bool ohneProxy(const QUrl &ziel)
{
    static const QRegularExpression trenner(u"[,\\s]+"_s);
    const QStringList eintraege = variable(u"no_proxy"_s).split(trenner, Qt::SkipEmptyParts);
    const QString host = ziel.host().toLower();
    const int port = ziel.port(ziel.scheme() == u"https" ? 443 : 80);
    return std::any_of(eintraege.begin(), eintraege.end(),
                       [&](const QString &eintrag) { return passt(eintrag, host, port); });
}

std::optional<QNetworkProxy> umgebungsproxy(const QUrl &ziel)
{
    const bool sicher = ziel.scheme() == u"https";
    QString wert = sicher ? variable(u"https_proxy"_s) : variable(u"http_proxy"_s, false);
    if (wert.isEmpty()) {
        wert = variable(u"all_proxy"_s);
    }
    static const QRegularExpression nurHost(u"^[^:/@]+(:\\d+)?/?$"_s);
    const QUrl url(nurHost.match(wert).hasMatch() ? u"http://"_s + wert : wert);
    const bool http = url.scheme() == u"http";
    const bool socks = url.scheme() == u"socks5" || url.scheme() == u"socks5h";
    if (wert.isEmpty() || url.host().isEmpty() || (!http && !socks)) {
        return {};
    }
    constexpr int ueblich = 1080; // where curl(1) looks as well
    return QNetworkProxy(socks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
                         static_cast<quint16>(url.port(ueblich)), url.userName(QUrl::FullyDecoded),
                         url.password(QUrl::FullyDecoded));
}

} // namespace kalvaro
