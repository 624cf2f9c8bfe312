#pragma once

namespace kalvaro {

// Ends the process `millisekunden` from now at the latest, with `status`, whatever it then waits
// for: QtNetwork's look-ups of host names cannot be cancelled and would hold up the end.
void endeErzwingen(int millisekunden, int status);

} // namespace kalvaro
