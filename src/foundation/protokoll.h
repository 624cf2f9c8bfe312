#pragma once

#include <QString>

namespace kalvaro {

// Appends "yyyy-MM-dd HH:mm:ss", two blanks, `zeile` and a line feed to "kalvaro.log", in local
// time. One write per line, so concurrent writers never tear one. Never fails towards the caller
// and never waits: a text that UTF-8 cannot hold (a lone surrogate) is not written, nor is anything
// to a log that is no plain file.
void protokoll(const QString &zeile);

} // namespace kalvaro
