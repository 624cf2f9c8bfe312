#include "platform/macos/oeffnungsfehler.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Of FoundationErrors.h (NSCocoaErrorDomain) and errno(2).
QString dateisatz(qint64 nummer, bool cocoa)
{
    constexpr qint64 fehlt = 4;          // NSFileNoSuchFileError
    constexpr qint64 zuLesenFehlt = 260; // NSFileReadNoSuchFileError
    constexpr qint64 keinRecht = 257;    // NSFileReadNoPermissionError
    constexpr qint64 enoent = 2;
    constexpr qint64 eacces = 13;
    constexpr qint64 eperm = 1;
    if (cocoa ? nummer == fehlt || nummer == zuLesenFehlt : nummer == enoent) {
        return u"„%1“ wurde nicht gefunden."_s;
    }
    if (cocoa ? nummer == keinRecht : nummer == eacces || nummer == eperm) {
        return u"„%1“ darf nicht ausgeführt werden."_s;
    }
    return {};
}

// Of LSInfo.h, "Launch Services", and MacErrors.h (NSOSStatusErrorDomain).
QString startsatz(qint64 nummer)
{
    switch (nummer) {
    case -43:    // fnfErr
    case -10814: // kLSApplicationNotFoundErr
        return u"„%1“ wurde nicht gefunden."_s;
    case -10660: // kLSAppInTrashErr
        return u"„%1“ liegt im Papierkorb."_s;
    case -10661: // kLSExecutableIncorrectFormat
    case -10665: // kLSNoRosettaEnvironmentErr
        return u"„%1“ ist kein Programm, das auf diesem Mac läuft."_s;
    case -10664: // kLSIncompatibleApplicationVersionErr
    case -10825: // kLSIncompatibleSystemVersionErr
        return u"„%1“ läuft nicht mit dieser Version von macOS."_s;
    case -10811: // kLSNotAnApplicationErr
        return u"„%1“ ist kein Programm."_s;
    case -10826: // kLSNoLaunchPermissionErr
        return u"„%1“ darf nicht ausgeführt werden."_s;
    case -10827: // kLSNoExecutableErr
        return u"In „%1“ fehlt das Programm."_s;
    case -10829: // kLSMultipleSessionsNotSupportedErr
        return u"„%1“ läuft schon bei einem anderen Benutzer."_s;
    case -128: // userCanceledErr
        return u"Das Öffnen von „%1“ wurde abgebrochen."_s;
    default:
        return {};
    }
}

} // namespace

QString oeffnungsfehlertext(const Oeffnungsfehler &fehler, const QString &ort)
{
    QString satz;
    if (fehler.bereich == u"NSCocoaErrorDomain" || fehler.bereich == u"NSPOSIXErrorDomain") {
        satz = dateisatz(fehler.nummer, fehler.bereich == u"NSCocoaErrorDomain");
    } else if (fehler.bereich == u"NSOSStatusErrorDomain") {
        satz = startsatz(fehler.nummer);
    }
    return satz.isEmpty() ? u"„%1“ ließ sich nicht öffnen (%2 %3)."_s.arg(
                                ort, fehler.bereich, QString::number(fehler.nummer))
                          : satz.arg(ort);
}

} // namespace kalvaro
