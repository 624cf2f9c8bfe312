#pragma once

#include <cstdlib>
#include <memory>

namespace kalvaro {

// An answer of xcb's, which its reader frees; null where there was none.
template<typename Antwort>
using Gelesen = std::unique_ptr<Antwort, void (*)(void *)>;

template<typename Antwort>
[[nodiscard]] Gelesen<Antwort> gelesen(Antwort *antwort)
{
    return {antwort, std::free};
}

} // namespace kalvaro
