#pragma once

#include <QByteArray>

namespace kalvaro {

// $XDG_RUNTIME_DIR without a slash at its end; empty when it is missing or relative, which is to be
// ignored ("XDG Base Directory Specification" 0.8).
[[nodiscard]] QByteArray laufzeitordner();

} // namespace kalvaro
