#pragma once

#include <string_view>

namespace kalvaro {

// Walks over bytes of JSON along brackets and commas, without a look at what lies between.
class Jsonzeiger
{
public:
    explicit Jsonzeiger(std::string_view bytes)
        : z_(bytes.data())
        , ende_(z_ + bytes.size())
    {
    }

    [[nodiscard]] const char *stelle() const { return z_; }
    [[nodiscard]] const char *ende() const { return ende_; }
    [[nodiscard]] bool amEnde() const { return z_ == ende_; }
    [[nodiscard]] bool ist(char zeichen) const { return z_ != ende_ && *z_ == zeichen; }

    void setzen(const char *stelle) { z_ = stelle; }
    void leerraum();

    // Goes behind `zeichen` and the blanks after it, if it is the next one.
    bool hinter(char zeichen);

    // Goes behind the text that begins here; false: it does not end.
    [[nodiscard]] bool hinterText();

    // Goes to the comma or bracket that ends the value that begins here; false: nothing does.
    [[nodiscard]] bool hinterWert();

private:
    const char *z_;
    const char *ende_;
};

} // namespace kalvaro
