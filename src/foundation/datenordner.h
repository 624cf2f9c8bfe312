#pragma once

#include <QString>

namespace kalvaro {

// Absolute path of the per-user data folder "kalvaro", without a trailing slash: the account, the
// settings and the log lie in it. Computed once, on first use.
[[nodiscard]] const QString &appOrdner();

// Creates appOrdner() with its parents. A failure is ignored: later reads and writes in the folder
// fail in their own ways.
void ordnerAnlegen();

// Absolute path of the file `name` in appOrdner().
[[nodiscard]] QString datei(const QString &name);

} // namespace kalvaro
