// The main window's way of starting rekordbox: countdown, last look at the server, launch.

#include "mainwindow/hauptfenster.h"

#include "assessment/startpruefung.h"
#include "foundation/einstellungen.h"
#include "foundation/protokoll.h"
#include "mainwindow/countdown.h"
#include "platform/arbeitsplatz.h"
#include "rekordbox/rekordbox.h"
#include "ui/hinweisfenster.h"
#include "ui/knoepfe.h"

#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

void Hauptfenster::countdownStopp()
{
    countdown_->stopp();
}

void Hauptfenster::autoGeaendert()
{
    umgebung_.einst.autostart = cbAuto_->isChecked();
    umgebung_.einst.speichern();
    if (!umgebung_.einst.autostart && countdown_->countdownArt() == u"start"_s) {
        countdownStopp();
    }
}

void Hauptfenster::rekordboxStarten()
{
    countdownStopp();
    if (beschaeftigt_ || !gewaehlt()) {
        return;
    }
    if (umgebung_.rekordbox.hauptLaeuft()) {
        rekordboxJetztStarten();
        return;
    }
    beschaeftigt_ = true;
    knStart_->setEnabled(false);
    lnkAbgleich_->setEnabled(false);
    zeige(u"laden"_s, u"Letzter Blick in die Cloud …"_s,
          u"kalvaro prüft, ob seit dem Abgleich etwas dazukam"_s);
    startPruefen(umgebung_.zentrale, this, [this](const Startpruefung &p) {
        beschaeftigt_ = false;
        lnkAbgleich_->setEnabled(true);
        startKnopfAktualisieren();
        startpruefungFertig(p.noetig, p.hinweis);
    });
}

void Hauptfenster::startpruefungFertig(bool noetig, const std::optional<QString> &hinweis)
{
    if (noetig) {
        abgleichen(u"vorstart"_s, false, [this] { startenWennErlaubt(); });
        return;
    }
    if (letzte_) {
        anzeigen(*letzte_);
    }
    if (hinweis && steuerung_) {
        steuerung_->mitteilen(u"rekordbox startet"_s, *hinweis, std::nullopt);
    }
    rekordboxJetztStarten();
}

void Hauptfenster::startenNachAbgleich()
{
    if (!beschaeftigt_) {
        abgleichen(u"vorstart"_s, false, [this] { startenWennErlaubt(); });
    }
}

// After a sync before a start.
void Hauptfenster::startenWennErlaubt()
{
    if (letzte_ && letzte_->startbar && !umgebung_.rekordbox.laeuft()) {
        rekordboxJetztStarten();
    }
}

void Hauptfenster::rekordboxJetztStarten()
{
    countdownStopp();
    const auto i = gewaehlt();
    if (!i) {
        return;
    }
    if (!umgebung_.rekordbox.hauptLaeuft()) {
        umgebung_.arbeitsplatz.starten(
            i->url.toLocalFile(), this, [this](const std::optional<QString> &fehler) {
                if (fehler) {
                    hinweisfenster(u"rekordbox ließ sich nicht starten"_s, *fehler, this)->open();
                }
            });
        protokoll(u"rekordbox "_s + i->version + u" gestartet"_s);
    }
    rekordboxLaeuftAnzeigen();
    // The new process may not be counted yet.
    titelSetzen(*knStart_, u"rekordbox läuft"_s);
    knStart_->setEnabled(false);
    if (steuerung_) {
        verstecken();
    } else {
        showMinimized();
    }
}

} // namespace kalvaro
