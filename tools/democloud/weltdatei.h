#pragma once

#include "welt.h"

#include <tl/expected.hpp>

namespace kalvaro::democloud {

// A world from a JSON file; the format stands in README.md. The error is one German sentence that
// names the file, the place in it and the reason.
[[nodiscard]] tl::expected<Welt, QString> weltLaden(const QString &pfad);

// The same from memory; `quelle` names the source in errors.
[[nodiscard]] tl::expected<Welt, QString> weltAusJson(const QByteArray &json,
                                                      const QString &quelle);

} // namespace kalvaro::democloud
