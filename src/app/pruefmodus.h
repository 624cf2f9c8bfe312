#pragma once

namespace kalvaro {

// "--pruefen": runs the check-up and prints what it found on standard output, with `json` for
// tools. Returns the status to end with: 0 when all is well, else 1. There must be no application
// object.
[[nodiscard]] int pruefmodus(int &argc, char **argv, bool json);

} // namespace kalvaro
