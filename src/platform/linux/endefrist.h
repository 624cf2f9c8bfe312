#pragma once

namespace kalvaro {

// Ends the process `millisekunden` from now at the latest, with `status`, whatever it then does or
// waits for: the main thread may be at a large answer, another one at a name or a proxy that cannot
// be cancelled. An earlier end that was asked for stays. May be called by a signal's handler.
void endeErzwingen(int millisekunden, int status);

} // namespace kalvaro
