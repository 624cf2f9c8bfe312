#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace kalvaro {

// Where a request to `von` goes on to after an answer with `status` and `ort` as "Location" (RFC
// 9110, 10.2.2); absent when the answer is to be taken as it is. It goes on within the same service
// only: same host and same port, from http to https also from port 80 to 443. A name and password
// of the address stay.
[[nodiscard]] std::optional<QUrl> sprungziel(const QUrl &von, int status, const QByteArray &ort);

} // namespace kalvaro
