#include "app/kommandozeile.h"

#include "foundation/konstanten.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

Kommandozeile Kommandozeile::lesen(const QStringList &argumente)
{
    Kommandozeile k;
    k.hintergrund = argumente.contains(u"--hintergrund"_s);
    const qsizetype bild = argumente.indexOf(u"--bild"_s);
    if (bild >= 0 && bild + 1 < argumente.size()) {
        k.bild = argumente[bild + 1];
    }
    k.hilfe = argumente.contains(u"--help"_s);
    k.version = argumente.contains(u"--version"_s);
    return k;
}

QString hilfetext()
{
    return u"kalvaro "_s + VERSION +
           u" – hält die rekordbox-Bibliothek dieses Macs mit der Cloud im Gleichstand\n"
           "\n"
           "Aufruf: kalvaro [OPTIONEN]\n"
           "\n"
           "  --hintergrund   startet ohne Fenster, nur mit dem Symbol in der Menüleiste\n"
           "  --bild PFAD     gleicht einmal ab, schreibt ein PNG-Bild des Fensters nach PFAD\n"
           "                  und endet\n"
           "  --help          zeigt diese Hilfe\n"
           "  --version       zeigt die Version\n"_s;
}

} // namespace kalvaro
