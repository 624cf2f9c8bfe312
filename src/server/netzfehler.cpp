#include "server/netzfehler.h"

#include "server/transport.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString satz(Netzfehlerart art)
{
    switch (art) {
    case Netzfehlerart::Adresse:
        return u"ungültige Adresse"_s;
    case Netzfehlerart::Fragment:
        return u"Die Adresse darf kein „#“ enthalten."_s;
    case Netzfehlerart::Schema:
        return u"Die Adresse beginnt weder mit „http://“ noch mit „https://“."_s;
    case Netzfehlerart::Abgelehnt:
        return u"Die Verbindung wurde abgelehnt."_s;
    case Netzfehlerart::Unterbrochen:
        return u"Die Verbindung wurde unterbrochen."_s;
    case Netzfehlerart::ServerUnbekannt:
        return u"Der Server wurde nicht gefunden."_s;
    case Netzfehlerart::NetzUnerreichbar:
        return u"Das Netz ist nicht erreichbar."_s;
    case Netzfehlerart::KeineVerbindung:
        return u"Es kam keine Verbindung zustande."_s;
    case Netzfehlerart::KeineMittel:
        return u"Dieser Rechner lässt gerade keine weitere Verbindung zu."_s;
    case Netzfehlerart::Unsicher:
        return u"Es kam keine sichere Verbindung zustande."_s;
    case Netzfehlerart::Aussteller:
        return u"Dem Aussteller des Zertifikats der Cloud traut dieser Rechner nicht."_s;
    case Netzfehlerart::Abgelaufen:
        return u"Das Zertifikat der Cloud ist am %1 abgelaufen."_s;
    case Netzfehlerart::NochNichtGueltig:
        return u"Das Zertifikat der Cloud ist noch nicht gültig, erst ab dem %1."_s;
    case Netzfehlerart::AndererName:
        return u"Das Zertifikat der Cloud gilt für einen anderen Namen als „%1“."_s;
    case Netzfehlerart::Widerrufen:
        return u"Das Zertifikat der Cloud wurde widerrufen."_s;
    case Netzfehlerart::Schwach:
        return u"Das Zertifikat der Cloud ist zu schwach."_s;
    case Netzfehlerart::ProxyUnerreichbar:
        return u"Der Proxy-Server ist nicht erreichbar."_s;
    case Netzfehlerart::ProxyUnbekannt:
        return u"Der Proxy-Server wurde nicht gefunden."_s;
    case Netzfehlerart::ProxyAnmeldung:
        return u"Der Proxy-Server verlangt eine Anmeldung."_s;
    case Netzfehlerart::ProxyVerweigert:
        return u"Der Proxy-Server lässt die Verbindung nicht zu (%1)."_s;
    case Netzfehlerart::Schluessel:
        return u"Der Schlüssel enthält unzulässige Zeichen."_s;
    case Netzfehlerart::Unverstaendlich:
        return u"Der Server antwortet nicht verständlich."_s;
    case Netzfehlerart::ZuGross:
        return u"Die Antwort der Cloud ist zu groß."_s;
    case Netzfehlerart::ZuVieleSpruenge:
        return u"Der Server leitet zu oft weiter."_s;
    }
    return {};
}

// Where the cause lies with somebody, who that is.
QString rat(Netzfehlerart art)
{
    switch (art) {
    case Netzfehlerart::Aussteller:
        return u"Melde dich in fremden Netzen zuerst im Browser an; frage sonst den Betreiber der "
               "Cloud."_s;
    case Netzfehlerart::Abgelaufen:
        return u"Prüfe die Uhr dieses Rechners; geht sie richtig, muss der Betreiber es erneuern."_s;
    case Netzfehlerart::NochNichtGueltig:
        return u"Prüfe Datum und Uhrzeit dieses Rechners."_s;
    case Netzfehlerart::AndererName:
        return u"Prüfe die Adresse; melde dich in fremden Netzen zuerst im Browser an."_s;
    case Netzfehlerart::Widerrufen:
    case Netzfehlerart::Schwach:
        return u"Der Betreiber der Cloud muss es ersetzen."_s;
    default:
        return {};
    }
}

} // namespace

Netzfehler netzfehler(Netzfehlerart art, const QString &naeheres)
{
    const QString text = satz(art);
    return {
        .text = text.contains(u"%1"_s) ? text.arg(naeheres) : text, .rat = rat(art), .art = art};
}

} // namespace kalvaro
