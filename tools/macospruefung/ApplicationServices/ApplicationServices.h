// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

// "Quartz Display Services"; null outside of a session with a window server.
CFDictionaryRef CGSessionCopyCurrentDictionary(void);
}
