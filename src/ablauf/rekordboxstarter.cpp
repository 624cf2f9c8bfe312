#include "ablauf/rekordboxstarter.h"

#include "ablauf/abgleicher.h"
#include "assessment/startpruefung.h"
#include "foundation/protokoll.h"
#include "platform/arbeitsplatz.h"
#include "rekordbox/rekordbox.h"

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

Rekordboxstarter::Rekordboxstarter(Zentrale &zentrale, Abgleicher &abgleicher,
                                   const Einstellungen &einst, const Rekordbox &rekordbox,
                                   Arbeitsplatz &arbeitsplatz)
    : zentrale_(zentrale)
    , abgleicher_(abgleicher)
    , einst_(einst)
    , rekordbox_(rekordbox)
    , arbeitsplatz_(arbeitsplatz)
{
}

void Rekordboxstarter::installationenLesen()
{
    installationen_ = rekordbox_.installationen();
    Q_EMIT installationenGelesen();
}

std::optional<Installation> Rekordboxstarter::gewaehlt() const
{
    return Rekordbox::gewaehlt(installationen_, einst_);
}

void Rekordboxstarter::starten(Herkunft herkunft)
{
    const bool fuersFenster = herkunft == Herkunft::Fenster;
    if (schritt_ != Startschritt::Ruht) {
        if (!fuersFenster) {
            return;
        }
        if (schritt_ == Startschritt::Startet) {
            Q_EMIT laeuft();
        } else if (!imFenster_) {
            imFenster_ = true;
            Q_EMIT weiter(schritt_, Startschritt::Ruht);
        }
        return;
    }
    if (!fuersFenster) {
        installationenLesen();
    }
    if (!gewaehlt()) {
        return;
    }
    imFenster_ = fuersFenster;
    nach(Startschritt::Fragt);
    rekordbox_.hauptLaeuft(this, [this](bool laeuftSchon) { gefragt(laeuftSchon); });
}

void Rekordboxstarter::gefragt(bool laeuftSchon)
{
    if (laeuftSchon || !gewaehlt()) {
        ohneStart(laeuftSchon);
    } else if (imFenster_ && abgleicher_.laeuftGerade()) {
        warten();
    } else {
        pruefen();
    }
}

// It runs already, or there is none any more.
void Rekordboxstarter::ohneStart(bool laeuftSchon)
{
    const bool zeigen = laeuftSchon && imFenster_;
    if (zeigen) {
        abgleicher_.schulden();
    }
    nach(Startschritt::Ruht);
    if (zeigen) {
        Q_EMIT laeuft();
    }
}

void Rekordboxstarter::pruefen()
{
    nach(Startschritt::Prueft);
    startPruefen(zentrale_, this, [this](const Startpruefung &p) { geprueft(p); });
}

void Rekordboxstarter::geprueft(const Startpruefung &p)
{
    if (!imFenster_) {
        installationenLesen();
    }
    rekordbox_.hauptLaeuft(this, [this, p](bool laeuftSchon) { entscheiden(p, laeuftSchon); });
}

void Rekordboxstarter::entscheiden(const Startpruefung &p, bool laeuftSchon)
{
    if (!imFenster_ && (laeuftSchon || !gewaehlt())) {
        nach(Startschritt::Ruht);
    } else if (p.noetig) {
        abgleichen();
    } else if (abgleicher_.laeuftGerade()) {
        warten();
    } else {
        if (p.hinweis) {
            Q_EMIT hinweis(*p.hinweis);
        }
        if (laeuftSchon) {
            ohneStart(laeuftSchon);
        } else {
            jetztStarten();
        }
    }
}

// The look follows.
void Rekordboxstarter::warten()
{
    insFenster();
    mitAbgleich(Startschritt::Wartet, &Rekordboxstarter::pruefen);
}

void Rekordboxstarter::abgleichen()
{
    abgleicher_.moeglich(this, [this](bool moeglich) {
        if (!imFenster_ && fensterGleichtAb_) {
            Q_EMIT fensterNoetig();
            nach(Startschritt::Ruht);
            return;
        }
        insFenster();
        if (moeglich) {
            mitAbgleich(Startschritt::GleichtAb, &Rekordboxstarter::jetztStarten);
        } else {
            nach(Startschritt::Ruht);
            Q_EMIT belegt();
        }
    });
}

// What the sync comes to decides, whoever asked for it.
void Rekordboxstarter::mitAbgleich(Startschritt schritt, void (Rekordboxstarter::*danach)())
{
    nach(schritt);
    abgleicher_.abgleich(Anlass::Vorstart, this, [this, danach](const Bewertung &b) {
        Q_EMIT abgeglichen(b);
        if (!b.startbar) {
            nach(Startschritt::Ruht);
            return;
        }
        abgleicher_.moeglich(this, [this, danach](bool moeglich) {
            // A run that has begun meanwhile decides in its place.
            if (moeglich && abgleicher_.laeuftGerade()) {
                warten();
            } else if (moeglich && abgleicher_.startbar()) {
                (this->*danach)();
            } else {
                nach(Startschritt::Ruht);
            }
        });
    });
}

// Just before, nothing of it ran.
void Rekordboxstarter::jetztStarten()
{
    const bool fuersFenster = imFenster_;
    const auto i = gewaehlt();
    nach(i ? Startschritt::Startet : Startschritt::Ruht);
    if (schritt_ == Startschritt::Startet) {
        ++starts_;
        arbeitsplatz_.starten(i->url.toLocalFile(), this,
                              [this, fuersFenster](const std::optional<QString> &fehler) {
                                  nach(Startschritt::Ruht);
                                  if (!fehler) {
                                      // It may be gone again before the watch has seen it.
                                      abgleicher_.schulden();
                                  } else if (fuersFenster) {
                                      Q_EMIT gescheitert(*fehler);
                                  }
                              });
        protokoll(u"rekordbox "_s + i->version + u" gestartet"_s);
    }
    if (i && fuersFenster) {
        Q_EMIT laeuft();
    }
}

void Rekordboxstarter::insFenster()
{
    if (!imFenster_) {
        Q_EMIT fensterNoetig();
        imFenster_ = true;
    }
}

void Rekordboxstarter::nach(Startschritt schritt)
{
    const Startschritt vorher = std::exchange(schritt_, schritt);
    const bool ende = schritt == Startschritt::Ruht || schritt == Startschritt::Startet;
    const bool gezeigt = ende ? std::exchange(imFenster_, false) : imFenster_;
    if (gezeigt) {
        Q_EMIT weiter(schritt, vorher);
    }
}

} // namespace kalvaro
