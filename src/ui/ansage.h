#pragma once

#include <QString>

class QWidget;

namespace kalvaro {

// Has screen readers say `inhalt` once, politely: nobody is interrupted. Every call is news, also
// with the same words. Says nothing for a widget that cannot be seen, and costs nothing where no
// assistive technology listens.
void ansagen(QWidget &woher, const QString &inhalt);

// How that reaches them with the Qt that this is built with.
void ansageAbgeben(QWidget &fenster, const QString &inhalt);

// Whether screen readers take the rows of a tree for table cells with this Qt. Of those they say by
// themselves whether they are checked; of tree items they do not.
[[nodiscard]] bool zeilenSindZellen();

} // namespace kalvaro
