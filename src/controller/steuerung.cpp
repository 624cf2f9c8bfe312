#include "controller/steuerung.h"

#include "assessment/bewerten.h"
#include "foundation/protokoll.h"
#include "platform/arbeitsplatz.h"
#include "platform/mitteilungen.h"
#include "platform/statusobjekt.h"
#include "rekordbox/rekordbox.h"

#include <QCoreApplication>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr Sekunden wachabstand{3};
constexpr Sekunden nachholabstand{600};
constexpr Sekunden anmeldeverzug{15};
constexpr Sekunden weckverzug{20};

// The symbol of the status item for an outcome, "grau" (offline) or "laden".
QString symbol(const QString &art)
{
    if (art == u"gut"_s) {
        return u"checkmark.icloud"_s;
    }
    if (art == u"warn"_s) {
        return u"exclamationmark.icloud"_s;
    }
    if (art == u"krit"_s) {
        return u"exclamationmark.icloud.fill"_s;
    }
    if (art == u"grau"_s) {
        return u"icloud.slash"_s;
    }
    if (art == u"laden"_s) {
        return u"arrow.clockwise.icloud"_s;
    }
    return u"icloud"_s;
}

} // namespace

Steuerung::Steuerung(const Konto &konto, const Adapter &geraete, bool hintergrund,
                     Fensterruf neuesFenster)
    : adapter_(geraete)
    , beimAnlegen_(std::move(neuesFenster))
    , zentrale_(konto, geraete.transport)
    , wache_(geraete.uhr, geraete.prozesse, geraete.rekordbox)
{
    menueVerbinden();
    adapter_.statusobjekt.menueSetzen(&menue_);
    adapter_.statusobjekt.symbolSetzen(symbol({}));
    adapter_.statusobjekt.hinweisSetzen(u"kalvaro"_s);
    wacheVerbinden();
    setzeStatus(wache_.lief() ? u"rekordbox läuft"_s : u"bereit"_s);
    wachtakt_ = adapter_.uhr.alle(wachabstand, [this] { wache_.wachen(); });
    nachholtakt_ = adapter_.uhr.alle(nachholabstand, [this] { nachholenWennNoetig(); });
    adapter_.mitteilungen.beiKlick([this](const QString &ziel) { updateOeffnen(ziel); });

    if (hintergrund) {
        anmeldeabgleich_ = adapter_.uhr.nach(anmeldeverzug, [this] {
            if (!adapter_.rekordbox.laeuft()) {
                abgleich(u"anmeldung"_s, {});
            }
        });
    } else {
        zeigen(true);
    }
}

Steuerung::~Steuerung()
{
    adapter_.mitteilungen.beiKlick({});
}

void Steuerung::abgleich(const QString &anlass, std::function<void(const Bewertung &)> fertig)
{
    if (fertig) {
        wartende_.push_back(std::move(fertig));
    }
    if (laeuftGerade_) {
        return;
    }
    laeuftGerade_ = true;
    setzeStatus(u"gleicht ab …"_s);
    adapter_.statusobjekt.symbolSetzen(symbol(u"laden"_s));
    protokoll(u"Abgleich ("_s + anlass + u") ..."_s);
    bewerten(zentrale_, anlass, this,
             [this, anlass](const Bewertung &b) { abgeschlossen(b, anlass); });
}

void Steuerung::abgeschlossen(const Bewertung &b, const QString &anlass)
{
    protokoll(u"  -> "_s + b.art + u": "_s + b.titel + u" | "_s + b.detail);
    laeuftGerade_ = false;
    melden(b, anlass);
    updateAnbieten(b);
    // What these calls queue belongs to a later run.
    const auto gerufene = std::exchange(wartende_, {});
    for (const auto &fertig : gerufene) {
        fertig(b);
    }
}

void Steuerung::melden(const Bewertung &b, const QString &anlass)
{
    const bool neuKritisch = b.art == u"krit"_s && (!letzte_ || letzte_->art != u"krit"_s);
    // In the dock or task bar the window shows nothing to anybody.
    const bool imBlick = fensterSichtbar() && !fenster_->isMinimized();
    if (!imBlick && !b.offline && (anlass == u"nachher"_s || neuKritisch)) {
        mitteilen(b.titel, b.detail, std::nullopt);
    }
    letzte_ = b;
    adapter_.statusobjekt.symbolSetzen(symbol(b.offline ? u"grau"_s : b.art));
    setzeStatus(b.offline ? b.titel + u" (offline)"_s : b.titel);
}

void Steuerung::setzeStatus(const QString &zeile)
{
    menue_.kopfSetzen(zeile + u"   ("_s + adapter_.uhr.jetzt().toString(u"HH:mm"_s) + u')');
    adapter_.statusobjekt.hinweisSetzen(u"kalvaro – "_s + zeile);
}

void Steuerung::mitteilen(const QString &titel, const QString &inhalt,
                          const std::optional<QString> &ziel)
{
    adapter_.mitteilungen.mitteilen(titel, inhalt, ziel);
}

void Steuerung::updateAnbieten(const Bewertung &b)
{
    if (!b.neueVersion || !b.updateAdresse) {
        return;
    }
    updateAdresse_ = b.updateAdresse;
    menue_.updateZeigen(*b.neueVersion);
    // With the date: the version is announced again on each later day, once a day.
    const QString schluessel =
        *b.neueVersion + u'|' + adapter_.uhr.jetzt().toString(u"yyyy-MM-dd"_s);
    if (einst_.updateGemeldet == schluessel) {
        return;
    }
    einst_.updateGemeldet = schluessel;
    einst_.speichern();
    protokoll(u"neue Version "_s + *b.neueVersion + u" gemeldet"_s);
    mitteilen(u"Neue kalvaro-Version "_s + *b.neueVersion,
              u"Hier klicken zum Herunterladen. Der Installer ersetzt die alte Version, deine "
              "Einstellungen bleiben erhalten."_s,
              updateAdresse_);
}

void Steuerung::updateOeffnen(const QString &adresse)
{
    if (const auto url = updateUrl(adresse)) {
        adapter_.arbeitsplatz.oeffnen(*url);
    }
}

Hauptfenster &Steuerung::fensterBereit()
{
    if (!fenster_) {
        const Umgebung umgebung{zentrale_,
                                einst_,
                                adapter_.uhr,
                                adapter_.rekordbox,
                                adapter_.arbeitsplatz,
                                adapter_.anmeldestart};
        fenster_ = std::make_unique<Hauptfenster>(umgebung, std::nullopt, this);
        if (beimAnlegen_) {
            beimAnlegen_(*fenster_);
        }
    }
    return *fenster_;
}

void Steuerung::zeigen(bool abgleichen)
{
    fensterBereit().oeffnen(abgleichen);
}

bool Steuerung::fensterSichtbar() const
{
    return fenster_ && fenster_->isVisible();
}

void Steuerung::nachholenWennNoetig()
{
    const bool offenGeblieben =
        letzte_ && (letzte_->offline || letzte_->titel == u"Cloud ist beschäftigt"_s);
    if (offenGeblieben && !adapter_.rekordbox.laeuft()) {
        abgleich(u"nachholen"_s, {});
    }
}

void Steuerung::aufgewacht()
{
    const auto platz = weckabgleiche_.insert(weckabgleiche_.end(), nullptr);
    *platz = adapter_.uhr.nach(weckverzug, [this, platz] {
        weckabgleiche_.erase(platz);
        if (!adapter_.rekordbox.laeuft()) {
            abgleich(u"aufgewacht"_s, {});
        }
    });
}

void Steuerung::beenden()
{
    if (fenster_) {
        fenster_->endgueltigSchliessen();
    }
    QCoreApplication::quit();
}

} // namespace kalvaro
