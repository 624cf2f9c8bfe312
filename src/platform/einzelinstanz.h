#pragma once

#include <functional>
#include <optional>

namespace kalvaro {

// What a start, or the desktop, wants of the program that runs.
enum class Wunsch {
    Oeffnen,     // its window, with a sync
    Abgleichen,  // a sync
    Beenden,     // that it ends
    Hintergrund, // that it runs
};

// At most one program runs for each user and session.
class Einzelinstanz
{
public:
    Einzelinstanz() = default;
    Einzelinstanz(const Einzelinstanz &) = delete;
    Einzelinstanz &operator=(const Einzelinstanz &) = delete;
    virtual ~Einzelinstanz() = default;

    // True when this is the only one from now on. False when another one runs already: it has then
    // been told `wunsch`, if there is one, and this one ends.
    [[nodiscard]] virtual bool belegen(std::optional<Wunsch> wunsch) = 0;

    // `ruf` is called in the first instance whenever another start or the desktop wants something
    // of it, also for what came before this was set. While it runs, its window may come to the
    // front.
    virtual void beiWunsch(std::function<void(Wunsch)> ruf) = 0;
};

} // namespace kalvaro
