#pragma once

#include <QtGlobal>

namespace kalvaro {

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KALVARO_MIT_ASAN
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KALVARO_MIT_ASAN
#endif

// Milliseconds within which the program ends, whatever is in flight.
#ifdef KALVARO_MIT_ASAN
inline constexpr qint64 endfrist = 5000; // the search for leaks comes on top
#else
inline constexpr qint64 endfrist = 1000;
#endif

} // namespace kalvaro
