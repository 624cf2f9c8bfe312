#include "settingswindow/jsonzeiger.h"

namespace kalvaro {

void Jsonzeiger::leerraum()
{
    while (z_ != ende_ && (*z_ == ' ' || *z_ == '\t' || *z_ == '\n' || *z_ == '\r')) {
        ++z_;
    }
}

bool Jsonzeiger::hinter(char zeichen)
{
    if (!ist(zeichen)) {
        return false;
    }
    ++z_;
    leerraum();
    return true;
}

bool Jsonzeiger::hinterText()
{
    for (++z_; z_ != ende_ && *z_ != '"'; ++z_) {
        if (*z_ == '\\' && z_ + 1 != ende_) {
            ++z_;
        }
    }
    if (z_ == ende_) {
        return false;
    }
    ++z_;
    return true;
}

bool Jsonzeiger::hinterWert()
{
    for (long long offen = 0; z_ != ende_;) {
        const char zeichen = *z_;
        if (zeichen == '"') {
            if (!hinterText()) {
                return false;
            }
            continue;
        }
        const bool zu = zeichen == ']' || zeichen == '}';
        if (offen == 0 && (zu || zeichen == ',')) {
            return true;
        }
        offen += zu ? -1 : zeichen == '[' || zeichen == '{' ? 1 : 0;
        ++z_;
    }
    return false;
}

} // namespace kalvaro
