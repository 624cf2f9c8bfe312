#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kalvaro {

// What an autostart entry does, "Desktop Entry Specification" 1.5 and "Desktop Application
// Autostart Specification" 0.5.
struct Autostarteintrag
{
    QString abgeschaltet{};  // the line that switches it off, "Hidden=true"; empty when none does
    QStringList kommando{};  // the arguments of "Exec", without field codes
    QString voraussetzung{}; // "TryExec": without this program the entry is ignored

    // The program that it starts, also where a shell is put before it; empty when it names none.
    [[nodiscard]] QString programm() const;

    bool operator==(const Autostarteintrag &) const = default;
};

[[nodiscard]] Autostarteintrag autostarteintragLesen(const QByteArray &inhalt);

} // namespace kalvaro
