#pragma once

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

// Files that anybody may have put something else in the place of: only plain ones are opened, and
// no open waits, neither for a pipe's other end nor for a device. Symbolic links are followed.
namespace kalvaro {

enum class Dateimangel {
    Fehlt,
    KeineDatei, // a folder, a pipe, a device, a socket
    ImKreis,    // its links lead back to themselves
    Rechte,
    Verschlossen, // cannot be opened for another reason
    Unlesbar,
    ZuGross,
};

inline constexpr qint64 groessteDatei = qint64{4} * 1024 * 1024; // bytes; usual ones have hundreds

// The whole content, unless it has more than `hoechstens` bytes.
[[nodiscard]] tl::expected<QByteArray, Dateimangel>
gewoehnlichLesen(const QString &pfad, qint64 hoechstens = groessteDatei);

// Adds `bytes` at the end with one write, so that the kernel keeps them together whoever else
// writes. Creates the file, readable as the umask allows. False when they are not all written.
bool gewoehnlichErgaenzen(const QString &pfad, const QByteArray &bytes);

} // namespace kalvaro
