#pragma once

#include "foundation/uhr.h"
#include "server/transport.h"

#include <array>
#include <vector>

namespace kalvaro {

// What the servers answer. To a question for the state, for the playlists or for a choice of them
// an outcome means what comes nearest.
enum class Ausgang {
    Aktuell,
    Abgeglichen,
    Verschoben,
    RekordboxOffen,
    LaeuftSchon,
    Angehalten,
    Fehler,
    NichtErreichbar,
    Schatten,
    MitUpdate,
    KeinJson,
    Status500,
    Abgerissen,
    ZuSpaet,
};
inline constexpr int ausgaenge = 14;
[[nodiscard]] const char *ausgangsname(Ausgang ausgang);

// Three servers over which the account fails over. What reaches one that lives hangs until it is
// answered or its limit has passed, or is answered at once while there is a mood.
class Simulationsnetz final : public Transport
{
public:
    enum class Server { Lebt, Tot, Stumm };

    explicit Simulationsnetz(Uhr &uhr);
    ~Simulationsnetz() override;

    void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) override;

    [[nodiscard]] static QStringList adressen();
    void server(int welcher, Server zustand);
    void laune(std::optional<Ausgang> ausgang) { laune_ = ausgang; }

    // Answers the hanging request `welche` (modulo their number), if there is any.
    void antworten(Ausgang ausgang, size_t welche);

    [[nodiscard]] size_t haengend() const { return haengende_.size(); }

    // Requests for a sync that have reached a server and have no answer yet.
    [[nodiscard]] int abgleicheUnterwegs() const { return abgleiche_; }
    [[nodiscard]] int meisteAbgleiche() const { return meisteAbgleiche_; }

private:
    class Austausch;

    Uhr &uhr_;
    std::array<Server, 3> server_{};
    std::optional<Ausgang> laune_;
    std::vector<Austausch *> haengende_; // in order of request
    int abgleiche_ = 0;
    int meisteAbgleiche_ = 0;
};

} // namespace kalvaro
