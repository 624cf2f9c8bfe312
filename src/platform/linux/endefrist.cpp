#include "platform/linux/endefrist.h"

#include <csignal>
#include <sys/time.h>
#include <unistd.h>

namespace kalvaro {

void endeErzwingen(int millisekunden)
{
    std::signal(SIGALRM, [](int) { ::_exit(0); });
    itimerval frist = {};
    frist.it_value.tv_sec = millisekunden / 1000;
    frist.it_value.tv_usec = millisekunden % 1000 * 1000L;
    ::setitimer(ITIMER_REAL, &frist, nullptr);
}

} // namespace kalvaro
