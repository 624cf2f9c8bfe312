#pragma once

#include <QStringList>
#include <QTemporaryDir>

namespace kalvaro {

// The program as `cmake --install` leaves it, below a folder of its own. Ends the test when that
// fails.
class Einbau
{
public:
    // Prefix and folder together: either the folder is DESTDIR, or the prefix lies in it.
    enum class Art { Ziel, Praefix };
    explicit Einbau(Art art, const QString &praefix = QStringLiteral("/usr"));

    // Where a file of the prefix lies, for example "share/man".
    [[nodiscard]] QString ort(const QString &datei) const;

    // All files below the prefix, sorted.
    [[nodiscard]] QStringList dateien() const;

private:
    QTemporaryDir ordner_;
    const QString wurzel_;
};

} // namespace kalvaro
