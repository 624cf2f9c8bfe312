#include "app/kommandozeile.h"

#include "foundation/klartext.h"
#include "foundation/konstanten.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengstesArgument = 200; // characters that are shown of one

const QStringList eigene{u"--hintergrund"_s, u"--bild"_s,    u"--abgleichen"_s, u"--beenden"_s,
                         u"--dienst"_s,      u"--pruefen"_s, u"--json"_s,       u"-h"_s,
                         u"--help"_s,        u"-v"_s,        u"--version"_s};

// What QApplication takes for itself ("Qt 6, QGuiApplication and QApplication, supported command
// line options"; the last of each, its plug-ins for X11).
const QStringList fremdeMitWert{u"platform"_s,
                                u"platformpluginpath"_s,
                                u"platformtheme"_s,
                                u"plugin"_s,
                                u"qwindowgeometry"_s,
                                u"qwindowicon"_s,
                                u"qwindowtitle"_s,
                                u"session"_s,
                                u"style"_s,
                                u"stylesheet"_s,
                                u"display"_s,
                                u"geometry"_s,
                                u"icon"_s,
                                u"title"_s,
                                u"name"_s};
const QStringList fremdeOhneWert{u"reverse"_s, u"widgetcount"_s, u"nograb"_s, u"dograb"_s,
                                 u"sync"_s};
const QStringList fremdeMitGleich{u"style"_s, u"stylesheet"_s, u"session"_s};

// The name of one of the toolkit's options, which begin with one dash or two; empty for another
// argument.
QString fremdername(const QString &argument)
{
    if (!argument.startsWith(u'-')) {
        return {};
    }
    return argument.sliced(argument.startsWith(u"--") ? 2 : 1);
}

bool fremdMitGleich(const QString &name)
{
    const qsizetype gleich = name.indexOf(u'=');
    return gleich > 0 && fremdeMitGleich.contains(name.first(gleich));
}

// The arguments that stand by themselves: neither ours, nor the toolkit's, nor the value of one.
void ordnen(Kommandozeile &k, const QStringList &argumente)
{
    for (qsizetype i = 0; i < argumente.size(); ++i) {
        const QString name = fremdername(argumente[i]);
        if (argumente[i] == u"--bild") {
            ++i;
        } else if (fremdeMitWert.contains(name)) {
            ++i;
            if (name == u"platform") {
                k.plattform = argumente.value(i);
            }
        } else if (!eigene.contains(argumente[i]) && !fremdeOhneWert.contains(name) &&
                   !fremdMitGleich(name)) {
            k.unbekannt.append(argumente[i]);
        }
    }
}

} // namespace

Kommandozeile Kommandozeile::lesen(const QStringList &argumente)
{
    Kommandozeile k;
    k.hintergrund = argumente.contains(u"--hintergrund"_s);
    const qsizetype bild = argumente.indexOf(u"--bild"_s);
    if (bild >= 0 && bild + 1 < argumente.size()) {
        k.bild = argumente[bild + 1];
    }
    k.bildOhnePfad = bild >= 0 && !k.bild;
    k.abgleichen = argumente.contains(u"--abgleichen"_s);
    k.beenden = argumente.contains(u"--beenden"_s);
    k.dienst = argumente.contains(u"--dienst"_s);
    k.pruefen = argumente.contains(u"--pruefen"_s);
    k.json = argumente.contains(u"--json"_s);
    k.hilfe = argumente.contains(u"-h"_s) || argumente.contains(u"--help"_s);
    k.version = argumente.contains(u"-v"_s) || argumente.contains(u"--version"_s);
    ordnen(k, argumente);
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
    if (hintergrund) {
        return Wunsch::Hintergrund;
    }
    return dienst ? std::nullopt : std::optional(Wunsch::Oeffnen);
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
           "  --abgleichen    gleicht jetzt ab: in dem kalvaro, das läuft; sonst startet es eines\n"
           "  --beenden       beendet das kalvaro, das läuft\n"
           "  --pruefen       prüft Konto, Cloud, rekordbox und Schreibtisch, gleicht nicht ab,\n"
           "                  schreibt nichts und endet: mit 0, wenn alles gut ist, sonst mit 1\n"
           "  --json          mit --pruefen: ein JSON-Objekt mit „gut“, „kalvaro“, „qt“, „system“\n"
           "                  und „befunde“, je mit „bereich“, „name“, „gut“, „text“, „schritt“\n"
           "  -h, --help      zeigt diese Hilfe\n"
           "  -v, --version   zeigt die Version\n"_s;
}

QString bemerkungen(const Kommandozeile &kommandozeile)
{
    QString zeilen;
    for (const QString &argument : kommandozeile.unbekannt) {
        zeilen += u"kalvaro: Das Argument „"_s + klartext(argument, laengstesArgument) +
                  u"“ ist unbekannt und wird ignoriert; „kalvaro --help“ zeigt alle.\n"_s;
    }
    if (kommandozeile.bildOhnePfad) {
        zeilen +=
            u"kalvaro: „--bild“ braucht einen Pfad und wird ignoriert; „kalvaro --help“ zeigt "
            "alle.\n"_s;
    }
    if (kommandozeile.json && !kommandozeile.pruefen) {
        zeilen += u"kalvaro: „--json“ gilt nur mit „--pruefen“ und wird ignoriert; "
                  "„kalvaro --help“ zeigt alle.\n"_s;
    }
    return zeilen;
}

} // namespace kalvaro
