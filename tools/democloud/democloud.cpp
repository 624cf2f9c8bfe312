#include "democloud.h"

#include "beispielwelt.h"
#include "dienst.h"
#include "httpserver.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

std::function<QDateTime()> uhrOderSystemzeit(const std::function<QDateTime()> &uhr)
{
    return uhr ? uhr : [] { return QDateTime::currentDateTime(); };
}

} // namespace

struct Democloud::Innen
{
    Innen(const std::function<QDateTime()> &uhr, DemocloudOptionen optionen)
        : dienst(optionen.welt ? *std::move(optionen.welt) : beispielwelt(uhr()),
                 optionen.schluessel.toUtf8(), uhr)
        , port(optionen.port)
    {
        dienst.setDauer(optionen.dauer);
        dienst.setSzenario(optionen.szenario);
    }

    Dienst dienst;
    std::unique_ptr<Httpserver> server; // while it serves
    int port;
};

Democloud::Democloud(DemocloudOptionen optionen)
    : innen_(std::make_unique<Innen>(uhrOderSystemzeit(optionen.uhr), std::move(optionen)))
{
}

Democloud::~Democloud()
{
    beenden();
}

tl::expected<void, QString> Democloud::starten()
{
    if (innen_->server) {
        return {};
    }
    innen_->dienst.beginnen();
    auto server = std::make_unique<Httpserver>(innen_->dienst);
    const auto port = server->starten(innen_->port);
    if (!port) {
        return tl::unexpected(port.error());
    }
    innen_->port = *port;
    innen_->server = std::move(server);
    return {};
}

void Democloud::beenden()
{
    innen_->dienst.beenden();
    innen_->server.reset();
}

int Democloud::port() const
{
    return innen_->port;
}

QString Democloud::adresse() const
{
    return u"http://127.0.0.1:%1"_s.arg(innen_->port);
}

QList<Anfrage> Democloud::anfragen() const
{
    return innen_->dienst.anfragen();
}

void Democloud::anfragenVergessen()
{
    innen_->dienst.anfragenVergessen();
}

qsizetype Democloud::laufendeAbgleiche() const
{
    return innen_->dienst.laufendeAbgleiche();
}

void Democloud::setDauer(double sekunden)
{
    innen_->dienst.setDauer(sekunden);
}

void Democloud::setSzenario(Szenario szenario)
{
    innen_->dienst.setSzenario(szenario);
}

Welt Democloud::welt() const
{
    return innen_->dienst.welt();
}

void Democloud::aendern(const std::function<void(Welt &)> &aenderung)
{
    innen_->dienst.aendern(aenderung);
}
