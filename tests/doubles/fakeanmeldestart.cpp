#include "doubles/fakeanmeldestart.h"

namespace kalvaro {

FakeAnmeldestart::FakeAnmeldestart(bool eingeschaltet)
    : zustand(eingeschaltet)
{
}

bool FakeAnmeldestart::an() const
{
    return zustand;
}

void FakeAnmeldestart::setzen(bool einschalten)
{
    aufrufe.append(einschalten);
    if (!verweigert) {
        zustand = einschalten;
    }
}

} // namespace kalvaro
