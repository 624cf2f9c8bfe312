#pragma once

#include <QString>

namespace kalvaro {

// Appends "yyyy-MM-dd HH:mm:ss", two blanks, `zeile` and a line feed to "kalvaro.log", in local
// time. One write per line, so concurrent writers never tear one. Never fails towards the caller;
// a text that UTF-8 cannot hold (a lone surrogate) is not written.
void protokoll(const QString &zeile);

} // namespace kalvaro
