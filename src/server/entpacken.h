#pragma once

#include <QByteArray>

#include <tl/expected.hpp>

namespace kalvaro {

enum class Entpackfehler { Unlesbar, ZuGross };

// Undoes the content coding of a whole HTTP body. `kodierung` is the value of "Content-Encoding"
// (RFC 9110, 8.4): "gzip", "x-gzip", "deflate" (in both of its forms) or "identity". A body that is
// damaged, cut short or followed by more is unreadable, as is an unknown coding; an empty body
// stays empty. `grenze` bounds the bytes that come out.
//
// Several codings on top of each other are unreadable, too: no server does that, and each of them
// can make a body a thousand times as large.
[[nodiscard]] tl::expected<QByteArray, Entpackfehler>
entpacken(const QByteArray &daten, const QByteArray &kodierung, qsizetype grenze);

} // namespace kalvaro
