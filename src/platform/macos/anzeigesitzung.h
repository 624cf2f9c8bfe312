#pragma once

namespace kalvaro {

// Whether this process belongs to a session with a window server, "Quartz Display Services": one
// that came over ssh(1), or that the system started before anybody had logged in, does not.
[[nodiscard]] bool anzeigesitzungDa();

} // namespace kalvaro
