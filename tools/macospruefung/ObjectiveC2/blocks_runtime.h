// For the check on other systems alone (cmake/macospruefung.cmake). GNUstep's headers ask for this
// name, which comes with another runtime than the one here.
#pragma once

#include <Block.h>
