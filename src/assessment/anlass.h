#pragma once

#include <QString>

namespace kalvaro {

// Why a sync is asked for.
enum class Anlass {
    Anmeldung,  // the program started in the background
    Hand,       // the user wants one
    Vorstart,   // before rekordbox starts
    Nachher,    // rekordbox has quit
    Nachholen,  // catches up one that is still owed
    Aufgewacht, // the computer woke from sleep
};

// Its name in the log and in the request.
[[nodiscard]] QString anlassname(Anlass anlass);

} // namespace kalvaro
