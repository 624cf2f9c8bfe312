#include "platform/linux/signale.h"

#include "platform/linux/endefrist.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace kalvaro {

namespace {

constexpr std::array behandelte{SIGTERM, SIGINT, SIGHUP};

constexpr int laengstesEnde = 700; // milliseconds; giving back much memory takes a while more

// A pipe to oneself: all that a signal handler may do is write a byte, and see to it that the end
// comes also where nobody reads it for long.
std::array<int, 2> rohr{-1, -1};

volatile std::sig_atomic_t wartet = 0;

void weckeSchleife(int)
{
    endeErzwingen(laengstesEnde, 0);
    wartet = 1;
    const char zeichen = 0;
    [[maybe_unused]] const auto geschrieben = ::write(rohr[1], &zeichen, 1);
}

void behandeln(int nummer, void (*wie)(int))
{
    struct sigaction tat = {};
    tat.sa_handler = wie;
    tat.sa_flags = SA_RESTART;
    ::sigaction(nummer, &tat, nullptr);
}

} // namespace

Signale::Signale(std::function<void()> ende)
{
    wartet = 0;
    if (::pipe2(rohr.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    hoerer_ = new QSocketNotifier(rohr[0], QSocketNotifier::Read, this);
    connect(hoerer_, &QSocketNotifier::activated, this, [ruf = std::move(ende)] {
        std::array<char, 16> verworfen{};
        [[maybe_unused]] const auto gelesen = ::read(rohr[0], verworfen.data(), verworfen.size());
        ruf();
        wartet = 0;
    });
    for (const int nummer : behandelte) {
        // nohup(1) starts a program that is to outlive its terminal.
        struct sigaction bisher = {};
        ::sigaction(nummer, nullptr, &bisher);
        if (nummer != SIGHUP || bisher.sa_handler != SIG_IGN) {
            behandeln(nummer, weckeSchleife);
        }
    }
}

// The end is under way then: one more wish for it must not make it look like a crash.
Signale::~Signale()
{
    for (const int nummer : behandelte) {
        behandeln(nummer, SIG_IGN);
    }
    delete hoerer_;
    ::close(rohr[0]);
    ::close(rohr[1]);
    rohr = {-1, -1};
}

bool endesignalWartet()
{
    return wartet != 0;
}

} // namespace kalvaro
