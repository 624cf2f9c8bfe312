// The order of three version texts, parted by line feeds.

#include "foundation/versionen.h"
#include "fuzz/muss.h"

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QList<QByteArray> teile = bytes(daten, anzahl).split('\n');
    const QString a = QString::fromUtf8(teile.value(0));
    const QString b = QString::fromUtf8(teile.value(1));
    const QString c = QString::fromUtf8(teile.value(2));

    muss(std::is_eq(versionenVergleichen(a, a)), "a version is equal to itself");
    muss(versionenVergleichen(a, b) == (0 <=> versionenVergleichen(b, a)), "both ways agree");
    if (std::is_lteq(versionenVergleichen(a, b)) && std::is_lteq(versionenVergleichen(b, c))) {
        muss(std::is_lteq(versionenVergleichen(a, c)), "the order is one");
    }
    return 0;
}
