#pragma once

#include "platform/startdatei.h"

#include <QDir>

namespace kalvaro {

// Where the agent lies in the home folder `heim`.
[[nodiscard]] QString agentpfad(const QString &heim = QDir::homePath());

// The per-user agent of launchd(8), a property list as launchd.plist(5) describes it, in
// "Library/LaunchAgents" of the home folder `heim`.
class LaunchAgent final : public Startdatei
{
public:
    // `programm` is the path of the executable; empty when it cannot be told, then the usual place
    // is written.
    explicit LaunchAgent(QString programm, const QString &heim = QDir::homePath());

private:
    [[nodiscard]] QByteArray inhalt() const override;
    [[nodiscard]] bool ueberholt(const QByteArray &vorhanden) const override;

    const QString programm_;
};

} // namespace kalvaro
