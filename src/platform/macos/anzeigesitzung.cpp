#include "platform/macos/anzeigesitzung.h"

#include <ApplicationServices/ApplicationServices.h>

namespace kalvaro {

bool anzeigesitzungDa()
{
    const CFDictionaryRef sitzung = ::CGSessionCopyCurrentDictionary();
    if (sitzung == nullptr) {
        return false;
    }
    ::CFRelease(sitzung);
    return true;
}

} // namespace kalvaro
