// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

// "Quartz Display Services"; null outside of a session with a window server.
CFDictionaryRef CGSessionCopyCurrentDictionary(void);
}
