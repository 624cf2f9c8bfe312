#pragma once

#include "platform/anmeldestart.h"

#include <QList>

namespace kalvaro {

// A start at login that lives in memory and records every switching.
class FakeAnmeldestart final : public Anmeldestart
{
public:
    explicit FakeAnmeldestart(bool eingeschaltet = false);

    [[nodiscard]] bool an() const override;
    void setzen(bool einschalten) override;

    // Switching has no effect from now on, as when the file cannot be written.
    void verweigern() { verweigert = true; }

    // Every call of setzen(), in order.
    [[nodiscard]] const QList<bool> &gesetzt() const { return aufrufe; }

private:
    bool zustand;
    bool verweigert = false;
    QList<bool> aufrufe;
};

} // namespace kalvaro
