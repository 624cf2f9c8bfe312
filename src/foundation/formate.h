#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

// Short German texts for figures and times. "–" stands for an absent value.
namespace kalvaro {

// A whole number with "." between thousands; halves round to even (2.5 gives "2").
[[nodiscard]] QString fZahl(std::optional<double> wert);

// A byte count as decimal gigabytes: one decimal below 100 GB, none from there on.
[[nodiscard]] QString fGB(std::optional<double> wert);

// Local time as "heute HH:mm", "gestern HH:mm" or "dd.MM. HH:mm", seen from `jetzt`.
[[nodiscard]] QString fZeit(const QDateTime &zeit, const QDateTime &jetzt);

// The same for a time stamp "yyyy-MM-dd HH:mm:ss" of the server, which is taken as local time. An
// empty text gives "–"; one that is no such time stamp comes back unchanged.
[[nodiscard]] QString fZeit(const QString &stempel, const QDateTime &jetzt);

} // namespace kalvaro
