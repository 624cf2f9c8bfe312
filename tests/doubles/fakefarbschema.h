#pragma once

#include "platform/farbschema.h"

#include <utility>

namespace kalvaro {

// A desktop whose colours the test chooses.
class FakeFarbschema final : public Farbschema
{
public:
    [[nodiscard]] Farbwunsch wunsch() const override { return jetzt_; }
    void beiWechsel(std::function<void()> gewechselt) override
    {
        gewechselt_ = std::move(gewechselt);
    }

    void wechseln(Farbwunsch neu)
    {
        if (std::exchange(jetzt_, neu) != neu && gewechselt_) {
            gewechselt_();
        }
    }

private:
    Farbwunsch jetzt_;
    std::function<void()> gewechselt_;
};

} // namespace kalvaro
