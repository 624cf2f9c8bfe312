#pragma once

#include <QString>

namespace kalvaro {

// Absolute path of the folder of applications: "/Applications", or what $KALVARO_APPLICATIONS
// names.
[[nodiscard]] QString programmordner();

} // namespace kalvaro
