// What the controller does about rekordbox and on behalf of its menu.

#include "controller/steuerung.h"

#include "assessment/startpruefung.h"
#include "foundation/protokoll.h"
#include "foundation/werte.h"
#include "platform/anmeldestart.h"
#include "platform/arbeitsplatz.h"
#include "platform/statusobjekt.h"
#include "rekordbox/rekordbox.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

void Steuerung::menueVerbinden()
{
    connect(&menue_, &QMenu::aboutToShow, this,
            [this] { menue_.anmeldungSetzen(adapter_.anmeldestart.an()); });
    connect(&menue_, &Statusmenue::oeffnen, this, [this] { zeigen(true); });
    connect(&menue_, &Statusmenue::abgleichen, this, [this] { abgleich(u"hand"_s, {}); });
    connect(&menue_, &Statusmenue::rekordbox, this, &Steuerung::menueRekordbox);
    connect(&menue_, &Statusmenue::anmeldung, this, [this] {
        adapter_.anmeldestart.setzen(!adapter_.anmeldestart.an());
        menue_.anmeldungSetzen(adapter_.anmeldestart.an());
    });
    connect(&menue_, &Statusmenue::update, this, [this] {
        if (updateAdresse_) {
            updateOeffnen(*updateAdresse_);
        }
    });
    connect(&menue_, &Statusmenue::beenden, this, &Steuerung::menueBeenden);
}

void Steuerung::wacheVerbinden()
{
    connect(&wache_, &Rekordboxwache::gestartet, this, &Steuerung::rekordboxGestartet);
    connect(&wache_, &Rekordboxwache::geschlossen, this,
            [this] { setzeStatus(u"rekordbox beendet – warte aufs Speichern"_s); });
    connect(&wache_, &Rekordboxwache::beendet, this, &Steuerung::rekordboxBeendet);
}

void Steuerung::rekordboxGestartet()
{
    protokoll(u"rekordbox gestartet"_s);
    setzeStatus(u"rekordbox läuft"_s);
    adapter_.statusobjekt.symbolSetzen(u"icloud"_s);
    if (fensterSichtbar()) {
        fenster_->rekordboxLaeuftAnzeigen();
    }
    zentrale_.anfrage(
        standAnfragen(zentrale_.konto().geraet), this, [this](const Zentrale::Antwort &stand) {
            // The server may name the truth as a boolean, a number or a text.
            const QString ausstehend = stand ? text(*stand, u"ausstehend") : QString();
            if (ausstehend == u"1"_s || ausstehend == u"true"_s) {
                mitteilen(u"Neue Änderungen warten"_s,
                          u"rekordbox wurde geöffnet, bevor die neuesten Änderungen übernommen "
                          "waren. Schließe rekordbox kurz – kalvaro übernimmt sie sofort."_s,
                          std::nullopt);
            }
        });
}

void Steuerung::rekordboxBeendet()
{
    protokoll(u"rekordbox beendet"_s);
    const bool angekuendigt = fensterSichtbar();
    if (angekuendigt) {
        fenster_->ladenAnzeigen(u"Änderungen werden übertragen …"_s);
    }
    abgleich(u"nachher"_s, [this, angekuendigt](const Bewertung &b) {
        // Also when it was hidden meanwhile: its counter of seconds would run on for ever.
        if (angekuendigt || fensterSichtbar()) {
            fenster_->ergebnisAnzeigen(b);
        }
    });
}

void Steuerung::menueRekordbox()
{
    const auto i = Rekordbox::gewaehlt(adapter_.rekordbox.installationen(), einst_);
    if (!i || adapter_.rekordbox.hauptLaeuft() || startPruefungLaeuft_) {
        return;
    }
    startPruefungLaeuft_ = true;
    startPruefen(zentrale_, this, [this](const Startpruefung &p) {
        startPruefungLaeuft_ = false;
        startpruefungFertig(p.noetig, p.hinweis);
    });
}

void Steuerung::startpruefungFertig(bool noetig, const std::optional<QString> &hinweis)
{
    if (adapter_.rekordbox.hauptLaeuft()) {
        return;
    }
    const auto i = Rekordbox::gewaehlt(adapter_.rekordbox.installationen(), einst_);
    if (!i) {
        return;
    }
    if (noetig) {
        zeigen(false);
        fenster_->startenNachAbgleich();
        return;
    }
    if (hinweis) {
        mitteilen(u"rekordbox startet"_s, *hinweis, std::nullopt);
    }
    adapter_.arbeitsplatz.starten(i->url.toLocalFile(), this, [](const auto &) {});
    protokoll(u"rekordbox "_s + i->version + u" gestartet"_s);
}

void Steuerung::menueBeenden()
{
    protokoll(u"beendet"_s);
    beenden();
}

} // namespace kalvaro
