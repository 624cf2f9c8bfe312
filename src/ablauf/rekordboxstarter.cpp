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
    if (rekordbox_.hauptLaeuft()) {
        if (fuersFenster) {
            abgleicher_.schulden();
            Q_EMIT laeuft();
        }
        return;
    }
    imFenster_ = fuersFenster;
    if (fuersFenster && abgleicher_.laeuftGerade()) {
        warten();
    } else {
        pruefen();
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
        if (!gewaehlt() || rekordbox_.hauptLaeuft()) {
            nach(Startschritt::Ruht);
            return;
        }
    }
    if (p.noetig) {
        abgleichen();
    } else if (abgleicher_.laeuftGerade()) {
        warten();
    } else {
        if (p.hinweis) {
            Q_EMIT hinweis(*p.hinweis);
        }
        jetztStarten();
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
    if (!imFenster_ && fensterGleichtAb_) {
        Q_EMIT fensterNoetig();
        nach(Startschritt::Ruht);
        return;
    }
    insFenster();
    if (!abgleicher_.moeglich()) {
        nach(Startschritt::Ruht);
        Q_EMIT belegt();
        return;
    }
    mitAbgleich(Startschritt::GleichtAb, &Rekordboxstarter::jetztStarten);
}

// What the sync comes to decides, whoever asked for it.
void Rekordboxstarter::mitAbgleich(Startschritt schritt, void (Rekordboxstarter::*danach)())
{
    nach(schritt);
    abgleicher_.abgleich(Anlass::Vorstart, this, [this, danach](const Bewertung &b) {
        Q_EMIT abgeglichen(b);
        if (b.startbar && abgleicher_.moeglich()) {
            (this->*danach)();
        } else {
            nach(Startschritt::Ruht);
        }
    });
}

void Rekordboxstarter::jetztStarten()
{
    const bool fuersFenster = imFenster_;
    const auto i = gewaehlt();
    const bool laeuftSchon = i && rekordbox_.hauptLaeuft();
    if (laeuftSchon) {
        abgleicher_.schulden();
    }
    nach(i && !laeuftSchon ? Startschritt::Startet : Startschritt::Ruht);
    if (schritt_ == Startschritt::Startet) {
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
