#pragma once

#include <QString>

namespace kalvaro {

struct Netzfehler;

// Why an exchange failed, as far as it makes a difference to the user.
enum class Netzfehlerart {
    // The way to the server.
    Adresse,  // is none that a request can be sent to
    Fragment, // the address has a part that would never be sent
    Schema,
    Abgelehnt,
    Unterbrochen,
    ServerUnbekannt,
    NetzUnerreichbar,
    KeineVerbindung, // for another reason
    KeineMittel,     // this computer has no descriptors or no memory left
    // TLS
    Unsicher, // the handshake failed
    Aussteller,
    Abgelaufen,
    NochNichtGueltig,
    AndererName,
    Widerrufen,
    Schwach,
    // Proxy
    ProxyUnerreichbar,
    ProxyUnbekannt,
    ProxyAnmeldung,
    ProxyVerweigert,
    // HTTP
    Schluessel, // would bring header lines of its own
    Unverstaendlich,
    ZuGross,
    ZuVieleSpruenge,
};

// The failure with its German sentences, ours and the same under every language. `naeheres` is what
// the sentence names: the date as "dd.MM.yyyy" of a certificate out of its time, the host of one
// for another name, the status of a proxy that refuses.
[[nodiscard]] Netzfehler netzfehler(Netzfehlerart art, const QString &naeheres = {});

} // namespace kalvaro
