#pragma once

#include <QByteArray>
#include <QJsonValue>

#include <optional>

namespace kalvaro {

// The JSON of an answer: a list or a map, an empty map when `daten` are neither. Absent when it
// would take more memory than 64 MiB and three times the size of `daten`: three bytes can be a
// list.
[[nodiscard]] std::optional<QJsonValue> inhalt(const QByteArray &daten);

} // namespace kalvaro
