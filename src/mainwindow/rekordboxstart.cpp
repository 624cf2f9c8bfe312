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
    countdown->stopp();
}

void Hauptfenster::autoGeaendert()
{
    umgebung.einst.autostart = cbAuto->isChecked();
    umgebung.einst.speichern();
    if (!umgebung.einst.autostart && countdown->countdownArt() == u"start"_s) {
        countdownStopp();
    }
}

void Hauptfenster::rekordboxStarten()
{
    countdownStopp();
    if (beschaeftigt_ || !gewaehlt()) {
        return;
    }
    if (umgebung.rekordbox.hauptLaeuft()) {
        rekordboxJetztStarten();
        return;
    }
    beschaeftigt_ = true;
    knStart->setEnabled(false);
    lnkAbgleich->setEnabled(false);
    zeige(u"laden"_s, u"Letzter Blick in die Cloud …"_s,
          u"kalvaro prüft, ob seit dem Abgleich etwas dazukam"_s);
    startPruefen(umgebung.zentrale, this, [this](const Startpruefung &p) {
        beschaeftigt_ = false;
        lnkAbgleich->setEnabled(true);
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
    if (letzte) {
        anzeigen(*letzte);
    }
    if (hinweis && steuerung) {
        steuerung->mitteilen(u"rekordbox startet"_s, *hinweis, std::nullopt);
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
    if (letzte && letzte->startbar && !umgebung.rekordbox.laeuft()) {
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
    if (!umgebung.rekordbox.hauptLaeuft()) {
        umgebung.arbeitsplatz.starten(
            i->url.toLocalFile(), this, [this](const std::optional<QString> &fehler) {
                if (fehler) {
                    hinweisfenster(u"rekordbox ließ sich nicht starten"_s, *fehler, this)->open();
                }
            });
        protokoll(u"rekordbox "_s + i->version + u" gestartet"_s);
    }
    rekordboxLaeuftAnzeigen();
    // The new process may not be counted yet.
    titelSetzen(*knStart, u"rekordbox läuft"_s);
    knStart->setEnabled(false);
    if (steuerung) {
        verstecken();
    } else {
        showMinimized();
    }
}

} // namespace kalvaro
