// What the main window shows: syncs and what they come to, its sheet, its coming and going.

#include "mainwindow/hauptfenster.h"

#include "ablauf/ablauf.h"
#include "foundation/speicherplatz.h"
#include "mainwindow/bild.h"
#include "mainwindow/countdown.h"
#include "mainwindow/statuskarte.h"
#include "mainwindow/updatekarte.h"
#include "mainwindow/zahlenkarte.h"
#include "platform/arbeitsplatz.h"
#include "platform/statusobjekt.h"
#include "settingswindow/einstellungenfenster.h"
#include "ui/knoepfe.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMessageBox>
#include <QWindow>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 countdownSekunden = 5;
constexpr Sekunden bildverzug{0.4};
constexpr Sekunden rueckkehrverzug{0.3};

} // namespace

Hauptfenster::Hauptfenster(Ablauf &ablauf, Verbleib verbleib, std::optional<QString> bild)
    : ablauf_(ablauf)
    , verbleib_(verbleib)
    , bildPfad_(std::move(bild))
{
    aufbauen();
    startVerfolgen();
    connect(&ablauf_.wache, &Rekordboxwache::gestartet, this, [this] {
        if (offen()) {
            rekordboxLaeuftAnzeigen();
        }
    });
    connect(&ablauf_.wache, &Rekordboxwache::beendet, this, [this] {
        if (offen()) {
            ladenAnzeigen(u"Änderungen werden übertragen …"_s);
        }
    });
}

void Hauptfenster::oeffnen(bool mitAbgleich)
{
    ablauf_.umgebung.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Regulaer);
    ablauf_.starter.installationenLesen();
    nachVorn();
    if (mitAbgleich && !beschaeftigt()) {
        abgleichen(Anlass::Vorstart, !verdeckt());
        return;
    }
    ablauf_.abgleichMoeglich(this, [this](bool moeglich) {
        if (!moeglich) {
            rekordboxLaeuftAnzeigen();
        }
    });
}

void Hauptfenster::nachVorn()
{
    const bool warWeg = !offen();
    // Under Wayland no program undoes minimising; shown anew, the window is there in any case.
    if (std::exchange(abgelegt_, false) && !isActiveWindow()) {
        hide();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    if (!mitte_) {
        groesseAnpassen();
        inDieMitte();
    }
    show();
    QWidget *vorn = this;
    if (einstellungen_) {
        einstellungen_->show();
        vorn = einstellungen_;
    }
    if (startfehler_) {
        // Desktops put a dialogue above the window that it belongs to when the dialogue comes.
        startfehler_->setVisible(!warWeg);
        startfehler_->show();
        vorn = startfehler_;
    }
    if (warWeg && focusWidget() == this) {
        fokusZumStartknopf();
    }
    if (QGuiApplication::platformName() != u"offscreen"_s) {
        vorn->raise();
        ablauf_.umgebung.arbeitsplatz.nachVorn(*vorn->windowHandle());
    }
}

void Hauptfenster::starten()
{
    nachVorn();
    ablauf_.starter.installationenLesen();
    if (bildPfad_) {
        connect(this, &Hauptfenster::angezeigt, this, [this] {
            bildVerzug_ = ablauf_.umgebung.uhr.nach(bildverzug, [this] {
                bildSpeichern(ganz_, *bildPfad_);
                QCoreApplication::quit();
            });
        });
    }
    abgleichen(Anlass::Hand, false);
}

// One that runs already is not joined. `autostartErlaubt`: an outcome that allows it may start the
// countdown.
void Hauptfenster::abgleichen(Anlass anlass, bool autostartErlaubt)
{
    if (beschaeftigt()) {
        return;
    }
    countdownStoppen();
    gleichtAbSetzen(true);
    ablauf_.abgleichMoeglich(this, [this, anlass, autostartErlaubt](bool moeglich) {
        if (moeglich) {
            abgleichBeginnen(anlass, autostartErlaubt);
        } else {
            gleichtAbSetzen(false);
            rekordboxLaeuftAnzeigen();
        }
    });
}

void Hauptfenster::abgleichBeginnen(Anlass anlass, bool autostartErlaubt)
{
    ladenAnzeigen(u"Bibliothek wird abgeglichen …"_s);
    ablauf_.abgleicher.abgleich(anlass, this, [this, autostartErlaubt](const Bewertung &b) {
        abgeschlossen(b, autostartErlaubt);
    });
}

void Hauptfenster::abgeschlossen(const Bewertung &b, bool autostartErlaubt)
{
    ergebnisAnzeigen(b);
    gleichtAbSetzen(false);
    // Nothing counts down in a window that the user has put away meanwhile.
    const bool imBlick = offen() && !verdeckt();
    if (autostartErlaubt && ablauf_.einst.autostart && b.startbar && imBlick && !beschaeftigt() &&
        ablauf_.starter.gewaehlt()) {
        countdownStarten();
    }
}

// Whatever would stop a countdown also withdraws the question whether there may be one.
void Hauptfenster::countdownStarten()
{
    countdownfrage_ = std::make_unique<QObject>();
    ablauf_.abgleichMoeglich(countdownfrage_.get(), [this](bool moeglich) {
        if (moeglich && ablauf_.starter.gewaehlt()) {
            countdown_->start(u"start"_s, countdownSekunden);
            vorzeigen({knStart_, countdown_});
        }
    });
}

void Hauptfenster::countdownStoppen()
{
    countdownfrage_.reset();
    countdown_->abbrechen();
}

// What it was for comes about: nothing was cancelled.
void Hauptfenster::countdownErledigen()
{
    countdownfrage_.reset();
    countdown_->stopp();
}

void Hauptfenster::gleichtAbSetzen(bool gleichtAb)
{
    gleichtAb_ = gleichtAb;
    ablauf_.starter.fensterGleichtAb(gleichtAb);
    beschaeftigtZeigen();
}

bool Hauptfenster::beschaeftigt() const
{
    return gleichtAb_ || ablauf_.starter.imFenster();
}

// Nothing counts down behind what keeps the user from cancelling it.
bool Hauptfenster::verdeckt() const
{
    return einstellungen_ || startfehler_;
}

// Both keep the keyboard: a focus that moves on by itself brings the next key where nobody meant
// it.
void Hauptfenster::beschaeftigtZeigen()
{
    const bool startet = ablauf_.starter.imFenster();
    lnkAbgleich_->setBeschaeftigt(beschaeftigt() ? u"Beschäftigt: kalvaro wartet auf die Cloud."_s
                                                 : QString());
    knStart_->setWirkungslos(
        !beschaeftigt() ? QString()
        : startet ? u"Der Start läuft schon: rekordbox kommt, sobald die Cloud geantwortet hat."_s
                  : u"Erst nach dem Abgleich: Solange er läuft, startet dieser Knopf nichts."_s);
}

void Hauptfenster::ladenAnzeigen(const QString &titel)
{
    karteStatus_->laden(titel, u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
}

void Hauptfenster::anzeigen(const Bewertung &b)
{
    letzte_ = b;
    if (b.neueVersion && b.updateAdresse) {
        if (karteUpdate_->isHidden() && !countdown_->countdownArt()) {
            vorzeigen({karteUpdate_});
        }
        karteUpdate_->zeige(*b.neueVersion, *b.updateAdresse);
    }
    karteStatus_->zeige(b.art, b.titel, b.detail);
    karteStatus_->betriebZeigen(b.betrieb);
    karteZahlen_->zeige(b.antwort, freiAufMac(), ablauf_.umgebung.uhr.jetzt());
    Q_EMIT angezeigt(b.titel, b.detail);
}

void Hauptfenster::ergebnisAnzeigen(const Bewertung &b)
{
    anzeigen(b);
    karteStatus_->vorlesen();
    startKnopfAktualisieren();
}

void Hauptfenster::verstecken()
{
    countdownStoppen();
    if (einstellungen_) {
        einstellungen_->hide();
    }
    if (ablauf_.umgebung.statusobjekt.erreichbar()) {
        abgelegt_ = false;
        hide();
        ablauf_.umgebung.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Zubehoer);
    } else {
        ablegen();
    }
}

void Hauptfenster::ablegen()
{
    if (!std::exchange(abgelegt_, true)) {
        showMinimized();
        Q_EMIT abgelegt();
    }
}

void Hauptfenster::auffindbarMachen()
{
    if (!isVisible() && !endgueltig_) {
        ablegen();
    }
}

// One that was put away and is brought back by the desktop opens as it does for kalvaro itself. A
// desktop that just puts it away may activate it for a moment, and one may tell nothing of
// minimising (Wayland): what counts is what holds a little later.
void Hauptfenster::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    const bool zurueck = event->type() == QEvent::WindowStateChange && !isMinimized();
    if (zurueck) {
        groesseAnpassen();
    }
    const bool zeichen = event->type() == QEvent::ActivationChange || zurueck;
    if (abgelegt_ && zeichen && isActiveWindow()) {
        rueckkehr_ = ablauf_.umgebung.uhr.nach(rueckkehrverzug, [this] {
            if (abgelegt_ && isActiveWindow() && !isMinimized()) {
                oeffnen(true);
            }
        });
    }
}

void Hauptfenster::einstellungenOeffnen()
{
    countdownStoppen();
    if (einstellungen_) {
        einstellungen_->raise();
        return;
    }
    einstellungen_ = new EinstellungenFenster(
        {ablauf_.zentrale, ablauf_.einst, ablauf_.umgebung.anmeldestart,
         ablauf_.starter.installationen(), letzte_ ? letzte_->betrieb : QString()},
        this);
    einstellungen_->setAttribute(Qt::WA_DeleteOnClose);
    connect(einstellungen_, &QDialog::finished, this, [this](int ergebnis) {
        if (ergebnis == QDialog::Accepted) {
            cbAuto_->setChecked(ablauf_.einst.autostart);
            if (!ablauf_.einst.autostart) {
                countdownStoppen();
            }
            startKnopfAktualisieren();
        }
        einstellungen_.clear();
    });
    einstellungen_->open();
    einstellungen_->laden();
}

void Hauptfenster::closeEvent(QCloseEvent *event)
{
    // Refused only to the user, and only where the window minimises instead: a refused close would
    // hold up the end of the program and of the session.
    event->accept();
    switch (verbleib_) {
    case Verbleib::Allein:
        QCoreApplication::quit();
        break;
    case Verbleib::Menueleiste:
        if (!endgueltig_ && (event->spontaneous() || ablauf_.umgebung.statusobjekt.erreichbar())) {
            verstecken();
            event->setAccepted(!abgelegt_);
        }
    }
}

} // namespace kalvaro
