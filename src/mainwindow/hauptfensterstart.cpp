// How the main window starts rekordbox, and how it shows a start and a rekordbox that runs.

#include "mainwindow/hauptfenster.h"

#include "ablauf/ablauf.h"
#include "mainwindow/countdown.h"
#include "mainwindow/statuskarte.h"
#include "rekordbox/rekordbox.h"
#include "ui/hinweisfenster.h"
#include "ui/knoepfe.h"

#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

void Hauptfenster::startVerfolgen()
{
    const Rekordboxstarter *const starter = &ablauf_.starter;
    connect(starter, &Rekordboxstarter::installationenGelesen, this,
            &Hauptfenster::startKnopfAktualisieren);
    connect(starter, &Rekordboxstarter::weiter, this, &Hauptfenster::startZeigen);
    connect(starter, &Rekordboxstarter::abgeglichen, this, &Hauptfenster::ergebnisAnzeigen);
    connect(starter, &Rekordboxstarter::belegt, this, &Hauptfenster::rekordboxLaeuftAnzeigen);
    connect(starter, &Rekordboxstarter::laeuft, this, &Hauptfenster::gestartet);
    connect(starter, &Rekordboxstarter::gescheitert, this, [this](const QString &grund) {
        // Desktops hide the dialogues of a minimised window with it. One that was put away stays
        // so.
        if (offen() && isMinimized()) {
            showNormal();
        }
        startfehler_ = hinweisfenster(u"rekordbox ließ sich nicht starten"_s, grund,
                                      abgelegt_ ? nullptr : this);
        connect(startfehler_, &QDialog::finished, this, [this] { startfehler_.clear(); });
        startfehler_->open();
    });
}

void Hauptfenster::rekordboxStarten()
{
    countdownErledigen();
    if (!beschaeftigt()) {
        ablauf_.starter.starten(Rekordboxstarter::Herkunft::Fenster);
    }
}

void Hauptfenster::startZeigen(Startschritt schritt, Startschritt vorher)
{
    countdownErledigen();
    beschaeftigtZeigen();
    startKnopfAktualisieren();
    switch (schritt) {
    case Startschritt::Fragt:
        break;
    case Startschritt::Wartet:
    case Startschritt::GleichtAb:
        ladenAnzeigen(u"Bibliothek wird abgeglichen …"_s);
        break;
    case Startschritt::Prueft:
        startKnopfSperren(true);
        karteStatus_->laden(u"Letzter Blick in die Cloud …"_s,
                            u"kalvaro prüft, ob seit dem Abgleich etwas dazukam"_s);
        break;
    case Startschritt::Startet:
    case Startschritt::Ruht:
        if (vorher == Startschritt::Prueft && letzte_) {
            anzeigen(*letzte_);
        }
    }
}

void Hauptfenster::gestartet()
{
    rekordboxLaeuftAnzeigen();
    // The new process may not be counted yet.
    knopffrage_.reset();
    titelSetzen(*knStart_, u"rekordbox läuft"_s);
    startKnopfSperren(true);
    switch (verbleib_) {
    case Verbleib::Menueleiste:
        verstecken();
        break;
    case Verbleib::Allein:
        showMinimized();
    }
}

void Hauptfenster::rekordboxLaeuftAnzeigen()
{
    const QString titel = u"rekordbox läuft"_s;
    const QString detail = u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch."_s;
    countdownErledigen();
    karteStatus_->zeige(Art::Aus, titel, detail);
    karteStatus_->vorlesen();
    startKnopfAktualisieren();
    Q_EMIT angezeigt(titel, detail);
}

// The button stays as it is until the answer has come; only the latest question counts.
void Hauptfenster::startKnopfAktualisieren()
{
    knopffrage_ = std::make_unique<QObject>();
    if (ablauf_.starter.gewaehlt()) {
        ablauf_.umgebung.rekordbox.hauptLaeuft(knopffrage_.get(),
                                               [this](bool laeuft) { startKnopfZeigen(laeuft); });
    } else {
        startKnopfZeigen(false);
    }
}

void Hauptfenster::startKnopfZeigen(bool laeuft)
{
    const Rekordboxstarter &starter = ablauf_.starter;
    const auto i = starter.gewaehlt();
    const QString titel = !i       ? u"rekordbox nicht gefunden"_s
                          : laeuft ? u"rekordbox läuft"_s
                                   : u"rekordbox "_s + i->version + u" starten"_s;
    const bool prueft = starter.imFenster() && starter.schritt() == Startschritt::Prueft;
    titelSetzen(*knStart_, titel);
    startKnopfSperren(!i || laeuft || prueft);
}

// The toolkit would pass the keyboard on to the next control, where another Return or Space does
// something else. It rests in the window instead, until the button is back.
void Hauptfenster::startKnopfSperren(bool sperren)
{
    if (sperren != knStart_->isEnabled()) {
        return;
    }
    if (sperren && focusWidget() == knStart_) {
        setFocus();
    }
    knStart_->setEnabled(!sperren);
    if (!sperren && focusWidget() == this) {
        fokusZumStartknopf();
    }
}

void Hauptfenster::fokusZumStartknopf()
{
    if (knStart_->isEnabled()) {
        knStart_->setFocus(Qt::ActiveWindowFocusReason); // its ring as it was
    }
}

void Hauptfenster::autoGeaendert()
{
    ablauf_.einst.autostart = cbAuto_->isChecked();
    ablauf_.einst.speichern();
    if (!ablauf_.einst.autostart) {
        countdownStoppen();
    }
}

} // namespace kalvaro
