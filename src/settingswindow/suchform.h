#pragma once

#include <QByteArray>
#include <QString>

namespace kalvaro {

// As people compare names: without accents, upper and lower case alike.
[[nodiscard]] QString suchform(const QString &name);

// The same of a text of Latin-1 in UTF-8, quickly.
[[nodiscard]] QByteArray suchbytes(QLatin1StringView name);

} // namespace kalvaro
