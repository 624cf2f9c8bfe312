#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

// The German sentences that say what changed, and where changes are still missing. All inputs are
// parts of a server answer and may be absent or mistyped, which counts as nothing.
namespace kalvaro {

// Names the tracks and playlists of a map from table name to count, in the dative plural ("3 Titeln
// und 1 Playlist"); "" when neither table has a count above 0.
[[nodiscard]] QString menge(const QJsonValue &aenderungen);

// Says in which direction changes went, or would go when `probe` is set (dry run). Meant for a
// result whose counts are not all 0: with nothing to name it speaks of smaller changes.
[[nodiscard]] QString richtungen(const QJsonValue &ergebnis, bool probe);

// One sentence for each other device with rekordbox open or a transfer running; absent when no
// device has either.
[[nodiscard]] std::optional<QString> andereHinweise(const QJsonValue &antwort);

} // namespace kalvaro
