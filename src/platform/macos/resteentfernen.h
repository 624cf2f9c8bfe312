#pragma once

#include <QDateTime>
#include <QString>

namespace kalvaro {

// Removes what saves that were killed left behind of `datei`: beside it, under its name, a dot and
// six letters, as QSaveFile names a file until it is whole. Only plain files that were last written
// an hour before `jetzt` or earlier: a save takes moments.
void resteEntfernen(const QString &datei, const QDateTime &jetzt);

} // namespace kalvaro
