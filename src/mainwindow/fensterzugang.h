#pragma once

namespace kalvaro {

// From now on screen readers take the main window for a window; Qt calls a plain widget a panel,
// also where it is one. Idempotent.
void fensterzugangAnmelden();

} // namespace kalvaro
