#pragma once

#include "platform/arbeitsplatz.h"
#include "platform/macos/oeffnungsfehler.h"

#include <memory>

namespace kalvaro {

// The way to the workspace of macOS, apart from what the program makes of it.
struct Arbeitsplatzzugang
{
    using Oeffnungsruf = std::function<void(std::optional<Oeffnungsfehler>)>;

    // Something that lasts as long as it is held.
    using Halter = std::shared_ptr<void>;

    // Opens the bundle at a path, in front. The call comes once, from any thread.
    std::function<void(const QString &buendel, Oeffnungsruf fertig)> oeffnen;

    // Brings the program and this window of it to the front, in the space that is shown.
    std::function<void(QWindow &fenster)> nachVorn;

    std::function<void(Arbeitsplatz::Auftritt auftritt)> auftreten;

    // Calls `geweckt` on the main thread after each sleep, until the answer is let go.
    std::function<Halter(std::function<void()> geweckt)> wachen;

    // By NSWorkspace and the application object, which must be there when they are called.
    [[nodiscard]] static Arbeitsplatzzugang desSystems();
};

} // namespace kalvaro
