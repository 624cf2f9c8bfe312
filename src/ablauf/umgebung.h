#pragma once

namespace kalvaro {

class Anmeldestart;
class Arbeitsplatz;
class Mitteilungen;
class Prozesse;
class Rekordbox;
class Statusobjekt;
class Transport;
class Uhr;

// What the program runs on; everything outlives the program.
struct Umgebung
{
    Uhr &uhr;
    Transport &transport;
    const Prozesse &prozesse;
    const Rekordbox &rekordbox;
    Arbeitsplatz &arbeitsplatz;
    Anmeldestart &anmeldestart;
    Mitteilungen &mitteilungen;
    Statusobjekt &statusobjekt;
};

} // namespace kalvaro
