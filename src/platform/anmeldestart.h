#pragma once

namespace kalvaro {

// Starting the program in the background when the user logs in. Takes effect at the next login.
class Anmeldestart
{
public:
    Anmeldestart() = default;
    Anmeldestart(const Anmeldestart &) = delete;
    Anmeldestart &operator=(const Anmeldestart &) = delete;
    virtual ~Anmeldestart() = default;

    // Whether the file that does it exists, whatever its content.
    [[nodiscard]] virtual bool an() const = 0;

    // Writes or removes that file and logs "Start beim Anmelden: an" or "… aus". A failure is not
    // reported: an() tells afterwards.
    virtual void setzen(bool einschalten) = 0;
};

} // namespace kalvaro
