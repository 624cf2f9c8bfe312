#pragma once

#include <QString>
#include <QStringList>

// What stands in the repository, for tests that compare documents with the program.
namespace kalvaro {

// The text of a file, by its path in the repository; ends the test when it cannot be read.
[[nodiscard]] QString quelltext(const QString &pfad);

// The same of a source, with literals that stand over several lines in one piece.
[[nodiscard]] QString programmtext(const QString &pfad);

// All sources of the program, one after the other.
[[nodiscard]] QString programmtexte();

// The string literals in `text`, cut where a value is put in ("%1"), without the punctuation and
// blanks around.
[[nodiscard]] QStringList saetze(const QString &text);

// What the group of the pattern matches, each once, in order of appearance.
[[nodiscard]] QStringList alle(const QString &text, const QString &muster);

} // namespace kalvaro
