// The command line: arguments parted by zeros.

#include "app/kommandozeile.h"
#include "fuzz/muss.h"

#include <algorithm>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    QStringList argumente;
    const QList<QByteArray> teile = bytes(daten, anzahl).split('\0');
    for (const QByteArray &teil : teile) {
        argumente.append(QString::fromLocal8Bit(teil));
    }
    const Kommandozeile k = Kommandozeile::lesen(argumente);
    muss(!(k.bild && k.bildOhnePfad), "with a path or without");
    muss(k.unbekannt.size() <= argumente.size(), "only what was there is unknown");
    const QString zeilen = bemerkungen(k);
    muss(std::none_of(zeilen.begin(), zeilen.end(), [](QChar z) { return z < u' ' && z != u'\n'; }),
         "remarks control nothing");
    muss(zeilen.count(u'\n') ==
             k.unbekannt.size() + (k.bildOhnePfad ? 1 : 0) + (k.json && !k.pruefen ? 1 : 0),
         "a line for each remark");
    static_cast<void>(k.wunsch());
    return 0;
}
