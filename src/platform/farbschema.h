#pragma once

#include "foundation/farbwunsch.h"

#include <functional>

namespace kalvaro {

// How light or dark the desktop wants programs to be, now and while they run.
class Farbschema
{
public:
    Farbschema() = default;
    Farbschema(const Farbschema &) = delete;
    Farbschema &operator=(const Farbschema &) = delete;
    virtual ~Farbschema() = default;

    // As far as it is known by now; does not wait.
    [[nodiscard]] virtual Farbwunsch wunsch() const = 0;

    // Calls `gewechselt`, from the event loop, whenever wunsch() has become another one.
    virtual void beiWechsel(std::function<void()> gewechselt) = 0;
};

} // namespace kalvaro
