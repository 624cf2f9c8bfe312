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

// Appends "yyyy-MM-dd HH:mm:ss", two blanks, `zeile` and a line feed to "kalvaro.log", in local
// time. One write per line, so concurrent writers never tear one. Never fails towards the caller;
// a text that UTF-8 cannot hold (a lone surrogate) is not written.
void protokoll(const QString &zeile);

} // namespace kalvaro
