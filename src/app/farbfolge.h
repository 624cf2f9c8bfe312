#pragma once

#include "ui/erscheinung.h"

namespace kalvaro {

class Farbschema;

// Keeps the application's look as light or dark as the desktop wants it.
class Farbfolge
{
public:
    // `schema` absent: the look follows nothing, as pictures need it.
    Farbfolge(QApplication &anwendung, Farbschema *schema);
    ~Farbfolge();
    Farbfolge(const Farbfolge &) = delete;
    Farbfolge &operator=(const Farbfolge &) = delete;

private:
    Farbschema *const schema_;
    Erscheinung erscheinung_;
};

} // namespace kalvaro
