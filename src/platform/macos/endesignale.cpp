#include "platform/macos/endesignale.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace kalvaro {

namespace {

constexpr std::array behandelte{SIGTERM, SIGINT, SIGHUP};

constexpr int laengstesEnde = 700; // milliseconds

// All that a handler has to go by.
std::array<int, 2> weckrohr{-1, -1};
volatile std::sig_atomic_t ungesehen = 0;
volatile std::sig_atomic_t ausgang = 0;

void melden(int)
{
    spaetestensEnden(laengstesEnde, 0);
    ungesehen = 1;
    const char zeichen = 0;
    [[maybe_unused]] const auto geschrieben = ::write(weckrohr[1], &zeichen, 1);
}

void behandeln(int nummer, void (*wie)(int))
{
    struct sigaction tat = {};
    tat.sa_handler = wie;
    tat.sa_flags = SA_RESTART;
    ::sigaction(nummer, &tat, nullptr);
}

} // namespace

void spaetestensEnden(int millisekunden, int status)
{
    ausgang = status;
    behandeln(SIGALRM, [](int) { ::_exit(ausgang); });
    itimerval frist = {};
    frist.it_value.tv_sec = millisekunden / 1000;
    frist.it_value.tv_usec = static_cast<suseconds_t>(millisekunden % 1000) * 1000;
    itimerval bisher = {};
    ::getitimer(ITIMER_REAL, &bisher);
    if (!timerisset(&bisher.it_value) || timercmp(&frist.it_value, &bisher.it_value, <)) {
        ::setitimer(ITIMER_REAL, &frist, nullptr);
    }
}

// This system has no pipe2(2), so nobody may be started between the calls; nobody is.
Endesignale::Endesignale(std::function<void()> ende)
{
    ungesehen = 0;
    if (::pipe(weckrohr.data()) != 0) {
        return;
    }
    for (const int fd : weckrohr) {
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
        ::fcntl(fd, F_SETFL, O_NONBLOCK);
    }
    hoerer_ = std::make_unique<QSocketNotifier>(weckrohr[0], QSocketNotifier::Read);
    connect(hoerer_.get(), &QSocketNotifier::activated, this, [ruf = std::move(ende)] {
        std::array<char, 16> verworfen{};
        [[maybe_unused]] const auto gelesen =
            ::read(weckrohr[0], verworfen.data(), verworfen.size());
        ruf();
        ungesehen = 0;
    });
    for (const int nummer : behandelte) {
        // nohup(1) starts a program that is to outlive its terminal.
        struct sigaction bisher = {};
        ::sigaction(nummer, nullptr, &bisher);
        if (nummer != SIGHUP || bisher.sa_handler != SIG_IGN) {
            behandeln(nummer, melden);
        }
    }
}

// The end is under way then: one more wish for it must not make it look like a crash.
Endesignale::~Endesignale()
{
    for (const int nummer : behandelte) {
        behandeln(nummer, SIG_IGN);
    }
    hoerer_.reset();
    for (int &fd : weckrohr) {
        ::close(fd);
        fd = -1;
    }
}

bool Endesignale::wartet()
{
    return ungesehen != 0;
}

} // namespace kalvaro
