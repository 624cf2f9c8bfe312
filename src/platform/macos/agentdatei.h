#pragma once

#include <QByteArray>
#include <QString>

namespace kalvaro {

// What an agent of launchd(8) says of itself, as launchd.plist(5) describes it.
struct Agentdatei
{
    QString kennung{};         // "Label"
    QString programm{};        // the first of "ProgramArguments"
    bool abgeschaltet = false; // "Disabled"

    bool operator==(const Agentdatei &) const = default;
};

// Reads the property list of an agent, written as XML. What is missing or of another type there is
// empty here; so is everything of a broken, a binary or an overly nested one.
[[nodiscard]] Agentdatei agentLesen(const QByteArray &bytes);

} // namespace kalvaro
