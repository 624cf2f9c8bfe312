#pragma once

#include "platform/anmeldestart.h"

#include <QByteArray>
#include <QDir>
#include <QString>

namespace kalvaro {

// Start at login by means of one file that the session reads; the kinds of session differ only in
// where it lies and how it is written. Nothing but the file is touched: the running session is
// neither asked nor told.
class Startdatei : public Anmeldestart
{
public:
    [[nodiscard]] bool an() const final;

    // Replaces the file as a whole: a failure leaves the former one. Missing parent folders are
    // created.
    void setzen(bool einschalten) final;

protected:
    explicit Startdatei(QString datei);

    [[nodiscard]] virtual QByteArray inhalt() const = 0;

private:
    const QString ort_;
};

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

    const QString programm_;
};

} // namespace kalvaro
