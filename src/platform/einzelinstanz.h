#pragma once

#include <functional>

namespace kalvaro {

// At most one program runs for each user and session.
class Einzelinstanz
{
public:
    Einzelinstanz() = default;
    Einzelinstanz(const Einzelinstanz &) = delete;
    Einzelinstanz &operator=(const Einzelinstanz &) = delete;
    virtual ~Einzelinstanz() = default;

    // True when this is the only one from now on. False when another one runs already: it has then
    // been asked to open its window, unless `leise` is set, and this one ends.
    [[nodiscard]] virtual bool belegen(bool leise) = 0;

    // `oeffnen` is called in the first instance whenever another start asks for its window, also
    // for a start that came before this was set. While it runs, its window may come to the front.
    virtual void beiOeffnen(std::function<void()> oeffnen) = 0;
};

} // namespace kalvaro
