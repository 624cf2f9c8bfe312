#pragma once

#include "platform/anmeldestart.h"

#include <QByteArray>
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

    // Writes a file anew that is ours and names a program which is gone; any other stays, and none
    // is created. Without a word in the log: nothing was switched.
    void nachfuehren();

protected:
    explicit Startdatei(QString datei);

    [[nodiscard]] virtual QByteArray inhalt() const = 0;

    // Whether `vorhanden` was written by this class and no longer holds.
    [[nodiscard]] virtual bool ueberholt(const QByteArray &vorhanden) const;

private:
    void schreiben();

    const QString datei_;
};

} // namespace kalvaro
