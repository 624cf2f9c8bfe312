#include "platform/linux/loesen.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace kalvaro {

namespace {

// Everything the child needs, made before the fork: after it, only async-signal-safe calls.
struct Vorrat
{
    const char *ordner;
    std::array<char *, 2> argumente;
    std::vector<char *> variablen;
    int meldung; // where an errno goes; above 2, closed by exec
};

// Marks every descriptor above 2 to be closed by exec.
void schliessenBeimAusfuehren()
{
    if (::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) == 0) { // Linux 5.11
        return;
    }
    rlimit grenze = {};
    ::getrlimit(RLIMIT_NOFILE, &grenze);
    const int ende = static_cast<int>(std::min<rlim_t>(grenze.rlim_cur, 65536));
    for (int fd = 3; fd < ende; ++fd) {
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    }
}

// Handlers go with exec; what we ignore would stay ignored.
void signaleWieZuBeginn()
{
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int nummer = 1; nummer < NSIG; ++nummer) {
        ::sigaction(nummer, &standard, nullptr);
    }
    sigset_t keine;
    ::sigemptyset(&keine);
    ::sigprocmask(SIG_SETMASK, &keine, nullptr);
}

[[noreturn]] void ausfuehren(const Vorrat &vorrat)
{
    ::setsid();
    signaleWieZuBeginn();
    const int nichts = ::open("/dev/null", O_RDWR);
    int fehler = errno;
    for (int fd = 0; fd <= 2; ++fd) {
        ::dup2(nichts, fd);
    }
    schliessenBeimAusfuehren();
    if (nichts >= 0 && (::chdir(vorrat.ordner) == 0 || ::chdir("/") == 0)) {
        ::execve(vorrat.argumente[0], vorrat.argumente.data(), vorrat.variablen.data());
    }
    fehler = nichts >= 0 ? errno : fehler;
    [[maybe_unused]] const ssize_t geschrieben = ::write(vorrat.meldung, &fehler, sizeof fehler);
    ::_exit(127);
}

// Forks twice: the one between ends at once, so the program belongs to init. An errno, or 0.
int abspalten(const Vorrat &vorrat)
{
    // No handler of ours may run in the child, where it would act on what it shares with us.
    sigset_t alle;
    sigset_t vorher;
    ::sigfillset(&alle);
    ::sigprocmask(SIG_SETMASK, &alle, &vorher);
    const pid_t zwischen = ::fork();
    if (zwischen == 0) {
        const pid_t programm = ::fork();
        if (programm == 0) {
            ausfuehren(vorrat);
        }
        ::_exit(programm > 0 ? 0 : errno);
    }
    const int fehler = zwischen < 0 ? errno : 0;
    ::sigprocmask(SIG_SETMASK, &vorher, nullptr);
    int ende = 0;
    while (zwischen > 0 && ::waitpid(zwischen, &ende, 0) < 0 && errno == EINTR) {
    }
    return fehler != 0 || !WIFEXITED(ende) ? fehler : WEXITSTATUS(ende);
}

} // namespace

tl::expected<int, int> losgeloestStarten(const Startbefehl &befehl)
{
    Startbefehl eigener = befehl;
    Vorrat vorrat = {};
    vorrat.ordner = eigener.ordner.constData();
    vorrat.argumente = {eigener.programm.data(), nullptr};
    for (QByteArray &eintrag : eigener.variablen) {
        vorrat.variablen.push_back(eintrag.data());
    }
    vorrat.variablen.push_back(nullptr);

    std::array<int, 2> rohr = {};
    if (::pipe2(rohr.data(), O_CLOEXEC) != 0) {
        return tl::unexpected(errno);
    }
    // The child's standard descriptors are replaced; the report must not be one of them.
    vorrat.meldung = ::fcntl(rohr[1], F_DUPFD_CLOEXEC, 3);
    int fehler = vorrat.meldung < 0 ? errno : 0;
    ::close(rohr[1]);
    if (fehler == 0) {
        fehler = abspalten(vorrat);
        ::close(vorrat.meldung);
    }
    if (fehler != 0) {
        ::close(rohr[0]);
        return tl::unexpected(fehler);
    }
    return rohr[0];
}

} // namespace kalvaro
