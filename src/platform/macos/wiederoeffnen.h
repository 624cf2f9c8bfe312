#pragma once

#include <functional>
#include <memory>

namespace kalvaro {

// Calls `ruf` whenever the user opens the program that runs once more: by its tile in the Dock, in
// the Finder or with open(1). That is the Apple event "rapp", which the toolkit makes no difference
// to any other activation. Lasts until the answer is let go. Only once the event loop runs: the
// application object has handlers of its own, which it sets as it finishes launching.
[[nodiscard]] std::shared_ptr<void> wiederoeffnenHoeren(std::function<void()> ruf);

} // namespace kalvaro
