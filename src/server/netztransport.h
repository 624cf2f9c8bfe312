#pragma once

#include "server/transport.h"

namespace kalvaro {

// HTTP/1.1 over QtNetwork.
//
// - Redirects are followed, ten at most, only to the same host and port or from http to https on
//   the same host; any other redirect is an answer with its own status. So the account key never
//   reaches another service.
// - Only http and https reach the network.
// - A request reaches the server once, also when the server hangs up without an answer.
// - gzip and deflate are decoded; an answer cut short, damaged or of more than 64 MiB ends the
//   exchange as a failure, as does a header line that would bring others with it.
// - The system's proxy is respected, except for loopback addresses.
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
