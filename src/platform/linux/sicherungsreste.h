#pragma once

#include <QString>

namespace kalvaro {

// Removes what saves that were killed left behind of `datei`: beside it, under its name, a dot and
// six letters, as QSaveFile names a file until it is whole. Only plain files of this user that no
// process has open; where the file system cannot tell (network ones), those older than an hour.
void sicherungsresteEntfernen(const QString &datei);

} // namespace kalvaro
