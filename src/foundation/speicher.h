#pragma once

namespace kalvaro {

// Gives back to the system what was freed and is kept for the next request. Callable from any
// thread. Does nothing where the C library does so by itself.
void speicherZurueckgeben();

} // namespace kalvaro
