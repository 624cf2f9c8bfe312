#pragma once

#include "platform/prozesse.h"

#include <QByteArray>
#include <QHash>

#include <chrono>

namespace kalvaro {

// The process table of Linux. The kernel keeps 15 bytes of a process's name (proc(5), "comm"), so
// a longer name is never found.
class LinuxProzesse final : public Prozesse
{
public:
    // `werkzeug` counts processes, `proc` is the process file system, `frist` bounds one count;
    // past it the count is 0.
    explicit LinuxProzesse(QString werkzeug = QStringLiteral("/usr/bin/pgrep"),
                           QByteArray proc = QByteArrayLiteral("/proc"),
                           std::chrono::milliseconds frist = std::chrono::seconds(2));

    [[nodiscard]] qsizetype anzahl(const QString &name) const override;

    // Processes of other users are skipped: the kernel does not tell where they run from. One that
    // has been seen outside of all bundles before is looked at only every few calls, so a program
    // that replaces itself by one in a bundle shows late; new and ended ones always show at once.
    [[nodiscard]] QStringList buendel() const override;

private:
    const QString werkzeug_;
    const QByteArray proc_;
    const std::chrono::milliseconds frist_;

    mutable QHash<int, int> draussen_; // process id → how often seen outside of all bundles
    mutable int blick_ = 0;            // number of the call
};

} // namespace kalvaro
