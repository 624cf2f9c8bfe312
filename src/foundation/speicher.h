#pragma once

namespace kalvaro {

// Has all threads take from one heap, since the end of any other stays with the program whatever is
// freed in it. Before the first thread begins. Does nothing where the C library is another.
void speicherTeilen();

// Gives back to the system what was freed and is kept for the next request. Callable from any
// thread. Does nothing where the C library does so by itself.
void speicherZurueckgeben();

} // namespace kalvaro
