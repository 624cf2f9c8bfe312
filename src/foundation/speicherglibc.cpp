// With glibc, which keeps what lies between blocks in use.

#include "foundation/speicher.h"

#include <malloc.h>

namespace kalvaro {

void speicherTeilen()
{
    mallopt(M_ARENA_MAX, 1);
}

void speicherZurueckgeben()
{
    malloc_trim(0);
}

} // namespace kalvaro
