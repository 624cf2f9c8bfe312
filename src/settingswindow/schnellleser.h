#pragma once

#include "settingswindow/baumbau.h"

namespace kalvaro {

// Reads the entry that begins at `z`, hands it over and goes behind it, provided that it is written
// plainly: a map of texts without escapes, whole numbers, "true", "false" and "null", each where a
// server sends it. Else nothing has happened, and somebody who knows all of JSON must look.
bool schnellLesen(const char *&z, const char *ende, Baumbau &bau);

} // namespace kalvaro
