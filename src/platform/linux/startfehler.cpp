#include "platform/linux/startfehler.h"

#include <cerrno>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString satz(int fehler)
{
    switch (fehler) {
    case ENOENT:
    case ENOTDIR:
        return u"„%1“ wurde nicht gefunden."_s;
    case EACCES:
    case EPERM:
        return u"„%1“ darf nicht ausgeführt werden."_s;
    case ENOEXEC:
    case EINVAL:
    case ELIBBAD:
        return u"„%1“ ist kein Programm, das auf diesem Rechner läuft."_s;
    case ELOOP:
        return u"Die Verweise auf „%1“ führen im Kreis."_s;
    case ENAMETOOLONG:
        return u"Der Name „%1“ ist zu lang."_s;
    case ETXTBSY:
        return u"„%1“ wird gerade geändert."_s;
    case E2BIG:
        return u"Die Umgebung ist zu groß für „%1“."_s;
    case EIO:
        return u"„%1“ ließ sich nicht vom Datenträger lesen."_s;
    case ENOMEM:
        return u"Der Speicher reicht nicht für „%1“."_s;
    case EAGAIN:
        return u"Es laufen zu viele Programme, um „%1“ zu starten."_s;
    case EMFILE:
    case ENFILE:
        return u"Es sind zu viele Dateien offen, um „%1“ zu starten."_s;
    default:
        return u"„%1“ ließ sich nicht ausführen (Fehler %2)."_s;
    }
}

} // namespace

QString startfehlertext(int fehler, const QString &datei)
{
    const QString text = satz(fehler);
    return text.contains(u"%2") ? text.arg(datei, QString::number(fehler)) : text.arg(datei);
}

} // namespace kalvaro
