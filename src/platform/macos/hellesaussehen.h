#pragma once

namespace kalvaro {

// Draws this program in the light appearance whatever the system's is. Needs the application
// object.
void hellesAussehen();

} // namespace kalvaro
