// Property lists, XML and binary.

#include "fuzz/muss.h"
#include "platform/plist.h"

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QByteArray inhalt = bytes(daten, anzahl);
    const auto version = plistText(inhalt, u"CFBundleShortVersionString");
    muss(!version || version->size() <= inhalt.size(), "a text is no longer than its file");
    muss(plistText(inhalt, u"CFBundleShortVersionString") == version, "reading is a function");
    return 0;
}
