#include "foundation/speicherplatz.h"

#include <QDir>
#include <QFile>

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace kalvaro {

namespace {

template<typename Art>
using Halter = std::unique_ptr<std::remove_pointer_t<Art>, void (*)(CFTypeRef)>;

} // namespace

// What the system would make room for by clearing away what it can have again counts as free, too.
std::optional<double> freiAufMac()
{
    const QByteArray heim = QFile::encodeName(QDir::homePath());
    const Halter<CFURLRef> ort(
        ::CFURLCreateFromFileSystemRepresentation(
            nullptr, reinterpret_cast<const UInt8 *>(heim.constData()), heim.size(), true),
        ::CFRelease);
    CFNumberRef zahl = nullptr;
    if (!ort ||
        !::CFURLCopyResourcePropertyForKey(ort.get(),
                                           kCFURLVolumeAvailableCapacityForImportantUsageKey,
                                           static_cast<void *>(&zahl), nullptr) ||
        zahl == nullptr) {
        return std::nullopt;
    }
    const Halter<CFNumberRef> halter(zahl, ::CFRelease);
    SInt64 bytes = 0;
    if (!::CFNumberGetValue(zahl, kCFNumberSInt64Type, &bytes)) {
        return std::nullopt;
    }
    return static_cast<double>(bytes);
}

} // namespace kalvaro
