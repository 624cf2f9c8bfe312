// libcurl and OpenSSL as libraries that the program is linked with.

#include "server/netzbindung.h"

namespace kalvaro {

bool netzbibliothekenLaden()
{
    return true;
}

} // namespace kalvaro
