#include "platform/linux/laufzeitordner.h"

#include <QtGlobal>

namespace kalvaro {

QByteArray laufzeitordner()
{
    QByteArray ordner = qgetenv("XDG_RUNTIME_DIR");
    if (!ordner.startsWith('/')) {
        return {};
    }
    while (ordner.size() > 1 && ordner.endsWith('/')) {
        ordner.chop(1);
    }
    return ordner;
}

} // namespace kalvaro
