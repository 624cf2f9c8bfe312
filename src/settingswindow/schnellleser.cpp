#include "settingswindow/schnellleser.h"

#include <string_view>

namespace kalvaro {

namespace {

using namespace std::string_view_literals;

class Eintragleser
{
public:
    Eintragleser(const char *z, const char *ende)
        : z_(z)
        , ende_(ende)
    {
    }

    [[nodiscard]] bool lesen()
    {
        if (!weiterHinter('{')) {
            return false;
        }
        if (weiterHinter('}')) {
            return true;
        }
        do {
            std::string_view schluessel;
            if (!text(schluessel) || !weiterHinter(':') || !wert(schluessel)) {
                return false;
            }
        } while (weiterHinter(','));
        return weiterHinter('}');
    }

    [[nodiscard]] const char *stelle() const { return z_; }
    [[nodiscard]] const Baumbau::Rohtexte &ergebnis() const { return roh_; }

private:
    enum class Art { Text, Zahl, Ja, Nein, Nichts };

    void leerraum()
    {
        while (z_ != ende_ && (*z_ == ' ' || *z_ == '\n' || *z_ == '\r' || *z_ == '\t')) {
            ++z_;
        }
    }

    // Goes behind `zeichen` and the blanks around it, if it is the next one.
    bool weiterHinter(char zeichen)
    {
        leerraum();
        if (z_ == ende_ || *z_ != zeichen) {
            return false;
        }
        ++z_;
        // What follows a whole entry is not its business.
        if (zeichen != '}') {
            leerraum();
        }
        return true;
    }

    // A text without escapes.
    bool text(std::string_view &gelesen)
    {
        if (z_ == ende_ || *z_ != '"') {
            return false;
        }
        const char *const von = ++z_;
        unsigned hoechstes = 0;
        for (; z_ != ende_ && *z_ != '"'; ++z_) {
            const auto zeichen = static_cast<unsigned char>(*z_);
            if (zeichen < ' ' || zeichen == '\\') {
                return false;
            }
            hoechstes |= zeichen;
        }
        if (z_ == ende_) {
            return false;
        }
        gelesen = {von, static_cast<size_t>(z_ - von)};
        ++z_;
        constexpr unsigned jenseitsVonAscii = 0x80;
        return (hoechstes & jenseitsVonAscii) == 0 || QByteArrayView(gelesen).isValidUtf8();
    }

    // A whole number that every reader takes for the same, as its digits and as a value.
    bool ganzzahl(std::string_view &ziffern, double &zahl)
    {
        constexpr qsizetype meisteZiffern = 15;
        const char *const von = z_;
        const bool minus = *z_ == '-';
        z_ += minus ? 1 : 0;
        const char *const ab = z_;
        qint64 wert = 0;
        for (; z_ != ende_ && *z_ >= '0' && *z_ <= '9' && z_ - ab < meisteZiffern; ++z_) {
            wert = wert * 10 + (*z_ - '0');
        }
        const bool fuehrendeNull = z_ != ab && *ab == '0' && (z_ - ab > 1 || minus);
        if (z_ == ab || z_ == ende_ || fuehrendeNull || ",} \n\r\t"sv.find(*z_) == ""sv.npos) {
            return false;
        }
        ziffern = {von, static_cast<size_t>(z_ - von)};
        zahl = static_cast<double>(minus ? -wert : wert);
        return true;
    }

    bool wort(std::string_view welches)
    {
        const bool da = std::string_view(z_, static_cast<size_t>(ende_ - z_)).starts_with(welches);
        z_ += da ? welches.size() : 0;
        return da;
    }

    bool wert(std::string_view schluessel)
    {
        std::string_view zeichen;
        double zahl = 0;
        Art art = Art::Nichts;
        if (z_ == ende_) {
            return false;
        }
        if (*z_ == '"') {
            art = Art::Text;
            return text(zeichen) && eintragen(schluessel, art, zeichen, zahl);
        }
        if (wort("true")) {
            art = Art::Ja;
        } else if (wort("false")) {
            art = Art::Nein;
        } else if (!wort("null")) {
            art = Art::Zahl;
            return ganzzahl(zeichen, zahl) && eintragen(schluessel, art, zeichen, zahl);
        }
        return eintragen(schluessel, art, zeichen, zahl);
    }

    bool eintragen(std::string_view schluessel, Art art, std::string_view zeichen, double zahl)
    {
        const auto alsText = [&](QByteArrayView &feld) {
            feld = zeichen;
            return art != Art::Ja && art != Art::Nein;
        };
        const auto alsZahl = [&](double &feld) {
            feld = zahl;
            return art == Art::Zahl || art == Art::Nichts;
        };
        if (schluessel == "id") {
            return alsText(roh_.id);
        }
        if (schluessel == "eltern") {
            return alsText(roh_.eltern);
        }
        if (schluessel == "uuid") {
            return alsText(roh_.uuid);
        }
        if (schluessel == "name") {
            return alsText(roh_.name);
        }
        if (schluessel == "titel") {
            return alsZahl(roh_.titel);
        }
        if (schluessel == "seq") {
            return alsZahl(roh_.seq);
        }
        if (schluessel == "ordner") {
            roh_.ordner = art == Art::Ja || zahl != 0;
        }
        return true;
    }

    const char *z_;
    const char *const ende_;
    Baumbau::Rohtexte roh_;
};

} // namespace

bool schnellLesen(const char *&z, const char *ende, Baumbau &bau)
{
    Eintragleser leser(z, ende);
    if (!leser.lesen()) {
        return false;
    }
    bau.eintrag(leser.ergebnis());
    z = leser.stelle();
    return true;
}

} // namespace kalvaro
