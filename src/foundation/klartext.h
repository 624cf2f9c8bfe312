#pragma once

#include <QString>

namespace kalvaro {

// Text from outside as plain text for one line of a terminal: every character that could control
// one (C0, C1, DEL), part lines or change the direction of writing becomes a blank. Longer texts
// are cut after `laengstens` characters, with "…" at the end.
[[nodiscard]] QString klartext(QString text, qsizetype laengstens);

} // namespace kalvaro
