#pragma once

#include <QByteArray>

#include <tl/expected.hpp>

namespace kalvaro {

enum class Entpackfehler { Unlesbar, ZuGross };

// Undoes the content codings of a whole HTTP body. `kodierung` is the value of "Content-Encoding"
// (RFC 9110, 8.4): "gzip", "x-gzip", "deflate" (in both of its forms) and "identity", several with
// commas between them. A body that is damaged, cut short or followed by more is unreadable, as is
// an unknown coding; an empty body stays empty. `grenze` bounds the bytes after each coding.
[[nodiscard]] tl::expected<QByteArray, Entpackfehler>
entpacken(const QByteArray &daten, const QByteArray &kodierung, qsizetype grenze);

} // namespace kalvaro
