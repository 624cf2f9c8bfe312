#include "foundation/deskriptoren.h"

#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace kalvaro {

bool deskriptorenFrei(int anzahl)
{
    std::vector<int> probe;
    for (int i = 0; i < anzahl; ++i) {
        const int fd = ::open("/", O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            break;
        }
        probe.push_back(fd);
    }
    for (const int fd : probe) {
        ::close(fd);
    }
    return probe.size() == static_cast<std::size_t>(anzahl);
}

} // namespace kalvaro
