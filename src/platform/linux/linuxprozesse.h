#pragma once

#include "foundation/uhr.h"
#include "platform/prozesse.h"

#include <QByteArray>

#include <chrono>
#include <vector>

namespace kalvaro {

// The process table of Linux. The kernel keeps 15 bytes of a process's name (proc(5), "comm"), so
// a longer name is never found.
class LinuxProzesse final : public Prozesse
{
public:
    // `werkzeug` counts processes, `proc` is the process file system. `uhr` must outlive this
    // object.
    explicit LinuxProzesse(Uhr &uhr, QString werkzeug = QStringLiteral("/usr/bin/pgrep"),
                           QByteArray proc = QByteArrayLiteral("/proc"));

    // The tool has 2 s. A count that is no longer wanted, or late, is given up and not waited for.
    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const override;

    // Processes of other users are skipped: the kernel does not tell where they run from. One that
    // has been seen outside of all bundles for some seconds is looked at only every few calls, so a
    // program that replaces itself by one in a bundle shows late; new and ended ones always show at
    // once.
    [[nodiscard]] QStringList buendel() const override;

private:
    struct Aussenseiter
    {
        int pid = 0;
        std::chrono::milliseconds seit{}; // first seen outside of all bundles, Uhr::laufzeit()
    };

    Uhr &uhr_;
    const QString werkzeug_;
    const QByteArray proc_;

    mutable std::vector<Aussenseiter> draussen_; // by pid
    mutable std::vector<Aussenseiter> vorher_;   // those of the call before; keeps its memory
    mutable int blick_ = 0;                      // number of the call
};

} // namespace kalvaro
