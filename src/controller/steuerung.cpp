// Timers and wiring.

#include "controller/steuerung.h"

#include "foundation/protokoll.h"
#include "platform/anmeldestart.h"
#include "platform/arbeitsplatz.h"
#include "platform/mitteilungen.h"
#include "platform/statusobjekt.h"

#include <QCoreApplication>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr Sekunden wachabstand{3};
constexpr Sekunden nachholabstand{600};
constexpr Sekunden anmeldeverzug{15};
constexpr Sekunden weckverzug{20};
constexpr Sekunden leistengeduld{10}; // a panel that starts anew is back by then

} // namespace

Steuerung::Steuerung(Ablauf &ablauf, bool hintergrund, Fensterruf neuesFenster)
    : ablauf_(ablauf)
    , umgebung_(ablauf.umgebung)
    , beimAnlegen_(std::move(neuesFenster))
{
    menueVerbinden();
    ablaufVerbinden();
    setzeStatus(ablauf_.wache.lief() ? u"rekordbox läuft"_s : u"bereit"_s);
    umgebung_.arbeitsplatz.beiAufwachen([this] { aufgewacht(); });
    umgebung_.mitteilungen.beiKlick([this](const QString &ziel) { updateOeffnen(ziel); });
    takteStellen(hintergrund);
    if (!hintergrund) {
        zeigen(true);
    }
}

Steuerung::~Steuerung()
{
    umgebung_.statusobjekt.beiWechsel({});
    umgebung_.mitteilungen.beiKlick({});
    umgebung_.arbeitsplatz.beiAufwachen({});
}

void Steuerung::menueVerbinden()
{
    using Herkunft = Rekordboxstarter::Herkunft;
    connect(&menue_, &Statusmenue::oeffnen, this, [this] { zeigen(true); });
    connect(&menue_, &Statusmenue::abgleichen, this,
            [this] { ablauf_.abgleicher.abgleich(Anlass::Hand); });
    connect(&menue_, &Statusmenue::rekordbox, this,
            [this] { ablauf_.starter.starten(Herkunft::Menue); });
    connect(&menue_, &Statusmenue::anmeldung, this, [this] {
        umgebung_.anmeldestart.setzen(!umgebung_.anmeldestart.an());
        menue_.anmeldungSetzen(umgebung_.anmeldestart.an());
    });
    connect(&menue_, &Statusmenue::update, this,
            [this] { updateOeffnen(updateAdresse_.value_or(QString())); });
    connect(&menue_, &Statusmenue::beenden, this, &Steuerung::beenden);
    connect(&menue_, &QMenu::aboutToShow, this,
            [this] { menue_.anmeldungSetzen(umgebung_.anmeldestart.an()); });
    umgebung_.statusobjekt.menueSetzen(&menue_);
    umgebung_.statusobjekt.symbolSetzen(u"icloud"_s);
    umgebung_.statusobjekt.hinweisSetzen(u"kalvaro"_s);
    umgebung_.statusobjekt.beiWechsel([this] { leisteGewechselt(); });
}

void Steuerung::ablaufVerbinden()
{
    connect(&ablauf_.abgleicher, &Abgleicher::begonnen, this, &Steuerung::begonnen);
    connect(&ablauf_.abgleicher, &Abgleicher::fertig, this, &Steuerung::fertig);
    connect(&ablauf_.starter, &Rekordboxstarter::hinweis, this,
            [this](const QString &text) { mitteilen(u"rekordbox startet"_s, text); });
    connect(&ablauf_.starter, &Rekordboxstarter::fensterNoetig, this, [this] { zeigen(false); });
    connect(&ablauf_.wache, &Rekordboxwache::gestartet, this, &Steuerung::rekordboxGestartet);
    connect(&ablauf_.wache, &Rekordboxwache::geschlossen, this, [this] {
        laufzeitRekordbox_.reset();
        setzeStatus(u"rekordbox beendet – warte aufs Speichern"_s);
    });
    connect(&ablauf_.wache, &Rekordboxwache::beendet, this, &Steuerung::rekordboxBeendet);
}

void Steuerung::takteStellen(bool hintergrund)
{
    wachtakt_ = umgebung_.uhr.alle(wachabstand, [this] { ablauf_.wache.wachen(); });
    nachholtakt_ = umgebung_.uhr.alle(nachholabstand, [this] { nachholenWennNoetig(); });
    if (hintergrund) {
        anmeldeabgleich_ =
            umgebung_.uhr.nach(anmeldeverzug, [this] { abgleichWennMoeglich(Anlass::Anmeldung); });
    }
}

void Steuerung::abgleichWennMoeglich(Anlass anlass)
{
    ablauf_.abgleichMoeglich(this, [this, anlass](bool moeglich) {
        if (moeglich) {
            ablauf_.abgleicher.abgleich(anlass);
        }
    });
}

void Steuerung::nachholenWennNoetig()
{
    // Asked in any case: an agent that runs by itself is noticed here.
    ablauf_.abgleichMoeglich(this, [this](bool moeglich) {
        if (moeglich && ablauf_.abgleicher.geschuldet()) {
            ablauf_.abgleicher.abgleich(Anlass::Nachholen);
        }
    });
}

void Steuerung::aufgewacht()
{
    const auto platz = weckabgleiche_.insert(weckabgleiche_.end(), nullptr);
    const int vorher = ablauf_.abgleicher.laeufe();
    *platz = umgebung_.uhr.nach(weckverzug, [this, platz, vorher] {
        weckabgleiche_.erase(platz);
        if (ablauf_.abgleicher.laeufe() == vorher) {
            ablauf_.abgleicher
                .schulden(); // a run from before the sleep knows nothing of what came since
        }
        abgleichWennMoeglich(Anlass::Aufgewacht);
    });
}

Hauptfenster &Steuerung::fensterBereit()
{
    if (!fenster_) {
        fenster_ = std::make_unique<Hauptfenster>(ablauf_, Verbleib::Menueleiste);
        connect(fenster_.get(), &Hauptfenster::beendenGewuenscht, this, &Steuerung::schliessen);
        connect(fenster_.get(), &Hauptfenster::abgelegt, this, &Steuerung::ablageMelden);
        if (beimAnlegen_) {
            beimAnlegen_(*fenster_);
        }
    }
    return *fenster_;
}

// A window that hides can be brought back by the item only.
void Steuerung::leisteGewechselt()
{
    if (umgebung_.statusobjekt.erreichbar()) {
        leistenverlust_ = nullptr;
    } else {
        leistenverlust_ = umgebung_.uhr.nach(leistengeduld, [this] {
            if (fenster_) {
                fenster_->auffindbarMachen();
            }
        });
    }
}

void Steuerung::zeigen(bool abgleichen)
{
    fensterBereit().oeffnen(abgleichen);
}

bool Steuerung::fensterSichtbar() const
{
    return fenster_ && fenster_->offen();
}

void Steuerung::beenden()
{
    protokoll(u"beendet"_s);
    schliessen();
}

void Steuerung::schliessen()
{
    if (fenster_) {
        fenster_->endgueltigSchliessen();
    }
    QCoreApplication::quit();
}

} // namespace kalvaro
