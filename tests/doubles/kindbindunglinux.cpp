#include "doubles/kindprogramm.h"

#include <csignal>
#include <sys/prctl.h>

namespace kalvaro {

void anTestBinden(QProcess &programm)
{
    programm.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

} // namespace kalvaro
