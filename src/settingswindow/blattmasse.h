#pragma once

// Lengths of the settings sheet in logical pixels, for a system font of usual size.
namespace kalvaro::blattmasse {

inline constexpr int fensterbreite = 480;
inline constexpr int rand = 22;
inline constexpr int oberrand = 20;
inline constexpr int unterrand = 18;
inline constexpr int abstand = 12;
inline constexpr int baumhoehe = 280;

} // namespace kalvaro::blattmasse
