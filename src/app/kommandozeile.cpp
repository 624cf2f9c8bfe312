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
    k.abgleichen = argumente.contains(u"--abgleichen"_s);
    k.beenden = argumente.contains(u"--beenden"_s);
    k.dienst = argumente.contains(u"--dienst"_s);
    k.hilfe = argumente.contains(u"--help"_s);
    k.version = argumente.contains(u"--version"_s);
    return k;
}

std::optional<Wunsch> Kommandozeile::wunsch() const
{
    if (beenden) {
        return Wunsch::Beenden;
    }
    if (abgleichen) {
        return Wunsch::Abgleichen;
    }
    return hintergrund || dienst ? std::nullopt : std::optional(Wunsch::Oeffnen);
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
           "  --abgleichen    gleicht sofort ab: das kalvaro, das schon läuft, oder nach dem "
           "Start\n"
           "  --beenden       beendet das kalvaro, das läuft\n"
           "  --help          zeigt diese Hilfe\n"
           "  --version       zeigt die Version\n"_s;
}

} // namespace kalvaro
