#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

// Readers for the server's JSON answers. They never fail: what is missing or of another type reads
// as the default. An absent value is QJsonValue::Undefined; JSON null is present.
//
// A path is a list of keys separated by "."; empty keys are dropped and only maps are walked. The
// empty path names the value itself.
namespace kalvaro {

// The value at `weg`; absent when a key is missing or something other than a map is on the way.
[[nodiscard]] QJsonValue pfad(const QJsonValue &wert, QStringView weg);

// The longest text that is taken from a server to be shown, kept or written, in bytes of UTF-8.
inline constexpr qsizetype laengsterText = qsizetype{64} * 1024;

// The beginning of `text` that is no longer than that; what had to be cut off ends with "…".
[[nodiscard]] QString gekuerzt(const QString &text);

// The text at `weg`: strings as they are, absent and null as "", numbers in their shortest form,
// booleans as "1" or "0", maps and lists as compact JSON.
[[nodiscard]] QString text(const QJsonValue &wert, QStringView weg);

// The same, cut for what is shown, kept or written.
[[nodiscard]] QString kurztext(const QJsonValue &wert, QStringView weg);

// The number at `weg`: numbers, booleans (1 and 0) and strings that are wholly a decimal number
// with a point; a string beyond the range of a double is no number.
[[nodiscard]] std::optional<double> zahl(const QJsonValue &wert, QStringView weg);

// Whether a number other than 0, or true, stands at `weg`.
[[nodiscard]] bool wahr(const QJsonValue &wert, QStringView weg);

// The sum of all numbers (booleans count 1 and 0) in `wert` and in the maps below it. Lists and
// strings count 0.
[[nodiscard]] double summe(const QJsonValue &wert);

} // namespace kalvaro
