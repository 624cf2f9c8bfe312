#pragma once

#include <QString>

#include <optional>

// What an application bundle ("…/rekordbox.app") says of itself in "Contents/Info.plist".
namespace kalvaro {

[[nodiscard]] QString infodatei(const QString &buendel);

// The text under `schluessel`, for example "CFBundleExecutable". Absent when the file is missing,
// unreadable, broken, over 4 MiB or no regular file, or has no text there. Follows symbolic links;
// never waits, not even on a named pipe.
[[nodiscard]] std::optional<QString> infotext(const QString &buendel, QStringView schluessel);

} // namespace kalvaro
