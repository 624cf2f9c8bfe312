#pragma once

#include <QString>

class QWidget;

namespace kalvaro {

// Writes a PNG picture of `inhalt` at the screen's scale to the local file `pfad`. Returns whether
// it was written.
bool bildSpeichern(QWidget *inhalt, const QString &pfad);

} // namespace kalvaro
