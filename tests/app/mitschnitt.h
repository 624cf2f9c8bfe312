#pragma once

#include <QFile>
#include <QTemporaryFile>

#include <cstdio>

#include <unistd.h>

namespace kalvaro {

// While it lives, what this process writes to `strom` (stdout or stderr) is kept instead of shown.
class Mitschnitt
{
public:
    explicit Mitschnitt(std::FILE *welcher)
        : strom(welcher)
        , vorher(::dup(::fileno(welcher)))
    {
        if (!datei.open()) {
            qFatal("Cannot keep the output");
        }
        std::fflush(strom);
        ::dup2(datei.handle(), ::fileno(strom));
    }
    Mitschnitt(const Mitschnitt &) = delete;
    Mitschnitt &operator=(const Mitschnitt &) = delete;
    ~Mitschnitt() { beenden(); }

    // Ends the recording; returns what was written.
    QString beenden()
    {
        if (vorher >= 0) {
            std::fflush(strom);
            ::dup2(vorher, ::fileno(strom));
            ::close(vorher);
            vorher = -1;
        }
        QFile geschrieben(datei.fileName());
        return geschrieben.open(QIODevice::ReadOnly) ? QString::fromUtf8(geschrieben.readAll())
                                                     : QString();
    }

private:
    std::FILE *const strom;
    int vorher;
    QTemporaryFile datei;
};

} // namespace kalvaro
