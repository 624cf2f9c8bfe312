// The settings file: read, written, and read again.

#include "foundation/datenordner.h"
#include "foundation/einstellungen.h"
#include "fuzz/muss.h"

#include <QFile>

using namespace kalvaro;

namespace {

// A lone half of a surrogate pair has no UTF-8, so it may come back as the sign for that.
bool bleibt(const QString &vorher, const QString &nachher)
{
    return vorher == nachher || QString::fromUtf8(vorher.toUtf8()) == nachher;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    static const bool bereit = [] {
        eigenerDatenordner();
        ordnerAnlegen();
        return true;
    }();
    QFile ziel(datei(QStringLiteral("einstellungen.json")));
    muss(bereit && ziel.open(QIODevice::WriteOnly | QIODevice::Truncate), "a file to write to");
    ziel.write(bytes(daten, anzahl));
    ziel.close();

    const Einstellungen gelesen;
    gelesen.speichern();
    const Einstellungen wieder;
    muss(gelesen.autostart == wieder.autostart, "autostart survives");
    muss(bleibt(gelesen.version, wieder.version), "version survives");
    muss(bleibt(gelesen.updateGemeldet, wieder.updateGemeldet), "updateGemeldet survives");
    return 0;
}
