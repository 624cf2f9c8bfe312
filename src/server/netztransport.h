#pragma once

#include "server/transport.h"

namespace kalvaro {

// HTTP/1.1 over libcurl.
//
// - Redirects are followed, ten at most, within the same service only (see sprungziel()); any other
//   one is an answer with its own status. So the account key never reaches another service.
// - Only http and https reach the network. A name and password in the address are sent as Basic
//   authentication, a query stays, a zone (RFC 6874) names the interface; a fragment is refused.
// - A request reaches the server once, also when the server hangs up without an answer. Interim
//   answers are read over.
// - gzip and deflate are decoded, one of them at most; an answer cut short, damaged or of more than
//   64 MiB ends the exchange as a failure, as do header lines of more than 8 KiB each or 256 KiB
//   together, and a header line of ours that would bring others with it.
// - The system's proxy is respected (see systemproxy()).
class Netztransport final : public Transport
{
public:
    // `uhr` must outlive every exchange; an exchange may outlive this object.
    explicit Netztransport(Uhr &uhr);

    void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) override;

private:
    Uhr &uhr_;
};

} // namespace kalvaro
