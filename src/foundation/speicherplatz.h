#pragma once

#include <optional>

namespace kalvaro {

// Bytes that an unprivileged user may still write to the file system of the home folder; absent
// when the system does not tell.
[[nodiscard]] std::optional<double> freiAufMac();

} // namespace kalvaro
