#include "platform/linux/endefrist.h"

#include <csignal>
#include <sys/time.h>
#include <unistd.h>

namespace kalvaro {

namespace {

volatile std::sig_atomic_t ausgang = 0; // of the signal's handler, which has no other way to know

} // namespace

void endeErzwingen(int millisekunden, int status)
{
    ausgang = status;
    std::signal(SIGALRM, [](int) { ::_exit(ausgang); });
    itimerval frist = {};
    frist.it_value.tv_sec = millisekunden / 1000;
    frist.it_value.tv_usec = millisekunden % 1000 * 1000L;
    itimerval bisher = {};
    ::getitimer(ITIMER_REAL, &bisher);
    if (!timerisset(&bisher.it_value) || timercmp(&frist.it_value, &bisher.it_value, <)) {
        ::setitimer(ITIMER_REAL, &frist, nullptr);
    }
}

} // namespace kalvaro
