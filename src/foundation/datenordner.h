#pragma once

#include <QString>

namespace kalvaro {

// Where programs of this user keep their data: an absolute path without a slash at its end. A
// relative $XDG_DATA_HOME is ignored ("XDG Base Directory Specification" 0.8).
[[nodiscard]] QString datenwurzel();

// Absolute path of the per-user data folder "kalvaro", without a trailing slash: the account, the
// settings and the log lie in it. Computed once, on first use.
[[nodiscard]] const QString &appOrdner();

// Creates appOrdner() with its parents. A failure is ignored: later reads and writes in the folder
// fail in their own ways.
void ordnerAnlegen();

// Absolute path of the file `name` in appOrdner().
[[nodiscard]] QString datei(const QString &name);

} // namespace kalvaro
