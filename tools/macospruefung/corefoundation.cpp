#include "attrappen.h"

#include <ApplicationServices/ApplicationServices.h>
#include <CoreFoundation/CoreFoundation.h>

#include <QFile>

namespace {

// Whatever was created, it counts as one that lives until it is released.
struct Ding
{
    long long zahl = 0;
};

template<typename Art>
Art erschaffen(long long zahl = 0)
{
    ++kalvaro::attrappen::system().lebende;
    return reinterpret_cast<Art>(new Ding{zahl});
}

} // namespace

namespace kalvaro::attrappen {

// For a whole program the environment says whether there is a session.
Systemlage &system()
{
    static Systemlage lage{.sitzung = !qEnvironmentVariableIsSet("KALVARO_OHNE_SITZUNG")};
    return lage;
}

} // namespace kalvaro::attrappen

using kalvaro::attrappen::system;

const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey =
    reinterpret_cast<CFStringRef>("NSURLVolumeAvailableCapacityForImportantUsageKey");

void CFRelease(CFTypeRef cf)
{
    --system().lebende;
    delete static_cast<const Ding *>(cf);
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8 *buffer,
                                                 CFIndex bufLen, Boolean isDirectory)
{
    system().ort = QFile::decodeName(
        QByteArray(reinterpret_cast<const char *>(buffer), static_cast<qsizetype>(bufLen)));
    return isDirectory ? erschaffen<CFURLRef>() : nullptr;
}

Boolean CFURLCopyResourcePropertyForKey(CFURLRef, CFStringRef key, void *propertyValueTypeRefPtr,
                                        CFErrorRef *)
{
    if (!system().frei || key != kCFURLVolumeAvailableCapacityForImportantUsageKey) {
        return false;
    }
    *static_cast<CFNumberRef *>(propertyValueTypeRefPtr) = erschaffen<CFNumberRef>(*system().frei);
    return true;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void *valuePtr)
{
    if (theType != kCFNumberSInt64Type) {
        return false;
    }
    *static_cast<SInt64 *>(valuePtr) = reinterpret_cast<const Ding *>(number)->zahl;
    return true;
}

CFDictionaryRef CGSessionCopyCurrentDictionary()
{
    return system().sitzung ? erschaffen<CFDictionaryRef>() : nullptr;
}
