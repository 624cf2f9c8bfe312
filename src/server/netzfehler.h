#pragma once

#include <QNetworkReply>

namespace kalvaro {

// The German sentence for a failed exchange. The texts are ours, so they are
// German and short whatever catalogues are installed; `sonst` serves for a kind without a text.
[[nodiscard]] QString netzfehlertext(QNetworkReply::NetworkError art, const QString &sonst);

// Whether `art` only says that the server answered with an HTTP status of 400 or more.
[[nodiscard]] bool istStatusmeldung(QNetworkReply::NetworkError art);

} // namespace kalvaro
