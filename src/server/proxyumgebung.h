#pragma once

#include <QNetworkProxy>
#include <QUrl>

#include <optional>

namespace kalvaro {

// What the environment says of proxies, in the spellings that other programs understand (curl(1),
// "ENVIRONMENT"): in small letters or capitals, only http_proxy never in capitals.

// Whether `no_proxy` names the host of `ziel`: by "*", by its name or that of a domain around it,
// with or without a dot or "*." before it, with or without a port, or by a network ("10.0.0.0/8").
[[nodiscard]] bool ohneProxy(const QUrl &ziel);

// The proxy for `ziel`: of http_proxy or https_proxy, else of all_proxy; HOST:PORT is one for HTTP.
// Absent when none is named, and when it is of a kind that only the system knows, such as the
// address of a script.
[[nodiscard]] std::optional<QNetworkProxy> umgebungsproxy(const QUrl &ziel);

} // namespace kalvaro
