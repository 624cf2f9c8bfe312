#pragma once

namespace kalvaro {

// Whether libcurl and OpenSSL are there to be called. They come with the first request: together
// with what they bring along, they take longer to load than everything that a window needs. Where
// they cannot be loaded (no descriptor is free), the next call tries again; until then their
// functions do nothing and return zero.
[[nodiscard]] bool netzbibliothekenLaden();

} // namespace kalvaro
