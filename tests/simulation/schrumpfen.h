#pragma once

#include <algorithm>
#include <cstddef>

namespace kalvaro {

// Takes out of `folge` whatever is not needed for `scheitert(folge)` to stay true: first large
// pieces, then smaller ones, at last single elements, until none of them can go.
template<typename Folge, typename Probe>
[[nodiscard]] Folge geschrumpft(Folge folge, const Probe &scheitert)
{
    using Abstand = typename Folge::difference_type;
    for (size_t stueck = folge.size() / 2; stueck > 0;) {
        bool gekuerzt = false;
        for (size_t ab = 0; ab < folge.size();) {
            const auto anfang = folge.begin() + static_cast<Abstand>(ab);
            const auto ende = anfang + static_cast<Abstand>(std::min(stueck, folge.size() - ab));
            Folge kuerzer(folge.begin(), anfang);
            kuerzer.insert(kuerzer.end(), ende, folge.end());
            if (scheitert(kuerzer)) {
                folge = kuerzer;
                gekuerzt = true;
            } else {
                ab += stueck;
            }
        }
        // Single elements until nothing changes: what one needs may have gone with another.
        if (stueck > 1 || !gekuerzt) {
            stueck /= 2;
        }
    }
    return folge;
}

} // namespace kalvaro
