#pragma once

namespace kalvaro {

class Verweis;

// What screen readers see of a link: a button that can have the focus and yet be busy, which Qt's
// own description of a button does not know.

// From now on every Verweis is described so. Idempotent.
void knopfzugangAnmelden();

// Tells assistive technology that `knopf` has become busy or free.
void beschaeftigtMelden(Verweis &knopf);

} // namespace kalvaro
