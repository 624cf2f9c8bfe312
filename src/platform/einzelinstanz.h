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

// What became of a start.
enum class Belegung {
    Erste,      // this is the only one from now on
    Uebergeben, // another one runs, and has taken what this one wants
    Stumm,      // another one runs, but does not answer
};

// At most one program runs for each data folder.
class Einzelinstanz
{
public:
    Einzelinstanz() = default;
    Einzelinstanz(const Einzelinstanz &) = delete;
    Einzelinstanz &operator=(const Einzelinstanz &) = delete;
    virtual ~Einzelinstanz() = default;

    // Decides whether this one runs. Another one that does is told `wunsch`, if there is one; it
    // has 3 s to take it. What is no `Erste` has nothing left to do but end.
    [[nodiscard]] virtual Belegung belegen(std::optional<Wunsch> wunsch) = 0;

    // `ruf` is called in the first instance whenever another start or the desktop wants something
    // of it, also for what came before this was set. While it runs, its window may come to the
    // front.
    virtual void beiWunsch(std::function<void(Wunsch)> ruf) = 0;
};

} // namespace kalvaro
