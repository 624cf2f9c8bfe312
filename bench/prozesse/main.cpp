// What one tick of the watch costs in a process table of 500: the list of running bundles.
//
//   kalvaro-bench-prozesse [TICKS]
//
// Prints "blick MILLISECONDS" and "langsamster MILLISECONDS" of processor time, the median and the
// slowest.

#include "foundation/uhr.h"
#include "platform/linux/linuxprozesse.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int prozesse = 500;

// On which each look is one tick of the watch after the one before.
class Taktuhr final : public Uhr
{
public:
    [[nodiscard]] QDateTime jetzt() const override { return {}; }
    [[nodiscard]] std::chrono::milliseconds laufzeit() const override
    {
        return std::chrono::seconds(3 * ++blick_);
    }
    [[nodiscard]] Weckruf nach(Sekunden, std::function<void()>) override { return {}; }
    [[nodiscard]] Weckruf alle(Sekunden, std::function<void()>) override { return {}; }

private:
    mutable int blick_ = 0;
};

double prozessorzeit()
{
    timespec zeit = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &zeit);
    return double(zeit.tv_sec) * 1000 + double(zeit.tv_nsec) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    const int blicke = argc > 1 ? std::atoi(argv[1]) : 200;
    QCoreApplication anwendung(argc, argv);
    const QTemporaryDir tafel;
    for (int i = 1; i <= prozesse; ++i) {
        const QString ordner = tafel.filePath(QString::number(i));
        QDir().mkpath(ordner);
        QFile::link(i % 100 == 0 ? u"/Applications/Programm.app/Contents/MacOS/programm"_s
                                 : u"/usr/bin/true"_s,
                    ordner + u"/exe"_s);
    }
    Taktuhr uhr;
    const LinuxProzesse liste(uhr, u"/usr/bin/pgrep"_s, QFile::encodeName(tafel.path()));
    QList<double> dauern;
    for (int i = 0; i < blicke; ++i) {
        const double anfang = prozessorzeit();
        const bool gefunden = !liste.buendel().isEmpty();
        dauern.append(prozessorzeit() - anfang);
        if (!gefunden) {
            return 1;
        }
    }
    std::sort(dauern.begin(), dauern.end());
    std::printf("blick %.4f\nlangsamster %.4f\n", dauern[blicke / 2], dauern.last());
    return 0;
}
