// With other C libraries.

#include "foundation/speicher.h"

namespace kalvaro {

void speicherTeilen()
{
}

void speicherZurueckgeben()
{
}

} // namespace kalvaro
