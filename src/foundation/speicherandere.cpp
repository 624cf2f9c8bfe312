// With other C libraries.

#include "foundation/speicher.h"

namespace kalvaro {

void speicherZurueckgeben()
{
}

} // namespace kalvaro
