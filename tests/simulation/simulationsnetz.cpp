#include "simulationsnetz.h"

#include "foundation/einmalruf.h"

#include <QStringList>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using Ergebnis = Transport::Ergebnis;

constexpr std::array<const char *, ausgaenge> namen{
    "aktuell",    "abgeglichen", "verschoben",       "rekordbox_offen", "laeuft_schon",
    "angehalten", "fehler",      "nicht_erreichbar", "schatten",        "aktuell mit Update",
    "kein JSON",  "Status 500",  "abgerissen",       "zu spät"};

constexpr QByteArrayView playlisten =
    R"({"playlisten":[{"id":"1","uuid":"u1","name":"Techno","ordner":true,"titel":0,"eltern":"root",)"
    R"("seq":1},{"id":"2","uuid":"u2","name":"Warm-up","ordner":false,"titel":9,"eltern":"1",)"
    R"("seq":1}],"lokal":[]})";

QByteArray abgleichJson(Ausgang ausgang)
{
    if (ausgang == Ausgang::MitUpdate) {
        return R"({"ergebnis":{"zustand":"aktuell"},"app":{"version":"9.0","url":"https://x.example/9"}})";
    }
    return QByteArrayLiteral("{\"ergebnis\":{\"zustand\":\"") + ausgangsname(ausgang) + "\"}}";
}

// Whether the state that belongs to an outcome says that changes wait.
bool ausstehend(Ausgang ausgang)
{
    return ausgang == Ausgang::Verschoben || ausgang == Ausgang::RekordboxOffen ||
           ausgang == Ausgang::Angehalten || ausgang == Ausgang::Fehler;
}

QByteArray standJson(Ausgang ausgang)
{
    if (ausgang == Ausgang::LaeuftSchon) {
        return R"({"ausstehend":false,"andere":[{"name":"Studio","laeuft":true}]})";
    }
    if (ausgang == Ausgang::Schatten) {
        return R"({"ausstehend":false,"andere":[{"name":"Studio","rekordbox_offen":true}]})";
    }
    return ausstehend(ausgang) ? R"({"ausstehend":true})" : R"({"ausstehend":false})";
}

Ergebnis ergebnis(const QString &weg, Ausgang ausgang)
{
    switch (ausgang) {
    case Ausgang::Abgerissen:
        return tl::unexpected(Netzfehler{false, u"Die Verbindung ist abgerissen."_s});
    case Ausgang::ZuSpaet:
        return tl::unexpected(Netzfehler{true, {}});
    case Ausgang::Status500:
        return Netzantwort{500, {}};
    case Ausgang::KeinJson:
        return Netzantwort{200, "kein JSON"};
    default:
        break;
    }
    if (weg == u"/api/abgleich") {
        return Netzantwort{200, abgleichJson(ausgang)};
    }
    if (weg == u"/api/stand") {
        return Netzantwort{200, standJson(ausgang)};
    }
    return Netzantwort{200, weg == u"/api/playlisten" ? playlisten.toByteArray() : "{}"};
}

} // namespace

const char *ausgangsname(Ausgang ausgang)
{
    return namen.at(static_cast<size_t>(ausgang));
}

// A request that a server has; goes with its owner.
class Simulationsnetz::Austausch final : public Einmalruf<Ergebnis>
{
public:
    Austausch(Simulationsnetz *netz, QString weg, QObject *besitzer, Rueckruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , netz_(netz)
        , weg_(std::move(weg))
        , abgleich_(weg_ == u"/api/abgleich")
    {
        netz_->haengende_.push_back(this);
        netz_->abgleiche_ += abgleich_;
        netz_->meisteAbgleiche_ = std::max(netz_->meisteAbgleiche_, netz_->abgleiche_);
    }

    ~Austausch() override { abmelden(); }

    void befristen(Sekunden limit)
    {
        frist_ = netz_->uhr_.nach(limit, [this] { beenden(Ausgang::ZuSpaet); });
    }

    void beenden(Ausgang ausgang)
    {
        abmelden();
        frist_.reset();
        antworten(ergebnis(weg_, ausgang));
    }

private:
    void abmelden()
    {
        if (std::erase(netz_->haengende_, this) > 0) {
            netz_->abgleiche_ -= abgleich_;
        }
    }

    Simulationsnetz *const netz_;
    const QString weg_;
    const bool abgleich_;
    Weckruf frist_;
};

Simulationsnetz::Simulationsnetz(Uhr &uhr)
    : uhr_(uhr)
{
}

Simulationsnetz::~Simulationsnetz() = default;

QStringList Simulationsnetz::adressen()
{
    return {u"http://server1"_s, u"http://server2"_s, u"http://server3"_s};
}

void Simulationsnetz::server(int welcher, Server zustand)
{
    server_.at(static_cast<size_t>(welcher)) = zustand;
}

void Simulationsnetz::senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig)
{
    const QString weg = anfrage.url.path();
    auto *const austausch = new Austausch(this, weg, besitzer, std::move(fertig));
    const QString name = anfrage.url.host();
    const auto zustand = server_.at(static_cast<size_t>(name.back().digitValue() - 1));
    if (zustand == Server::Tot) {
        austausch->beenden(Ausgang::Abgerissen);
    } else if (zustand == Server::Lebt && weg == u"/api/status") {
        austausch->beenden(Ausgang::Aktuell);
    } else if (zustand == Server::Lebt && laune_) {
        austausch->beenden(*laune_);
    } else {
        austausch->befristen(anfrage.limit);
    }
}

void Simulationsnetz::antworten(Ausgang ausgang, size_t welche)
{
    if (!haengende_.empty()) {
        haengende_.at(welche % haengende_.size())->beenden(ausgang);
    }
}

} // namespace kalvaro
