// Content codings: a byte that chooses them, then the body.

#include "fuzz/muss.h"
#include "server/entpacken.h"

#include <array>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    constexpr qsizetype grenze = 1 << 16;
    constexpr std::array kodierungen{
        "gzip", "deflate", "gzip, deflate", "deflate, x-gzip", "gzip, gzip", "identity", "br"};
    if (anzahl == 0) {
        return 0;
    }
    const QByteArray inhalt = bytes(daten + 1, anzahl - 1);
    const auto klar = entpacken(inhalt, kodierungen[*daten % kodierungen.size()], grenze);
    muss(!klar || klar->size() <= grenze || klar->size() <= inhalt.size(), "the bound holds");
    // A body decoded once more gives the same.
    const auto wieder = entpacken(inhalt, kodierungen[*daten % kodierungen.size()], grenze);
    muss(klar == wieder, "decoding is a function");
    return 0;
}
