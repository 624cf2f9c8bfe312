#include "doubles/kindprogramm.h"

namespace kalvaro {

void anTestBinden(QProcess & /*programm*/)
{
}

} // namespace kalvaro
