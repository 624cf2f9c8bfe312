#pragma once

namespace kalvaro {

// Whether this process may open `anzahl` more files. Libraries end the program where they find none
// left for a thread's wake-up pipe, so it is asked before they start one.
[[nodiscard]] bool deskriptorenFrei(int anzahl);

} // namespace kalvaro
