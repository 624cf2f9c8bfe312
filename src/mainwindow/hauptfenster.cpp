#include "mainwindow/hauptfenster.h"

#include "assessment/bewerten.h"
#include "foundation/einstellungen.h"
#include "foundation/speicherplatz.h"
#include "mainwindow/bild.h"
#include "mainwindow/countdown.h"
#include "mainwindow/statuskarte.h"
#include "mainwindow/updatekarte.h"
#include "mainwindow/zahlenkarte.h"
#include "platform/arbeitsplatz.h"
#include "rekordbox/rekordbox.h"
#include "settingswindow/einstellungenfenster.h"
#include "ui/knoepfe.h"

#include <QCloseEvent>
#include <QGuiApplication>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 countdownSekunden = 5;
constexpr Sekunden bildverzug{0.4};

} // namespace

Hauptfenster::Hauptfenster(const Umgebung &welt, std::optional<QString> bild, Treiber *treiber)
    : umgebung_(welt)
    , bildPfad_(std::move(bild))
    , steuerung_(treiber)
{
    aufbauen();
}

void Hauptfenster::oeffnen(bool mitAbgleich)
{
    umgebung_.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Regulaer);
    installationen_ = umgebung_.rekordbox.installationen();
    nachVorn();
    startKnopfAktualisieren();
    if (umgebung_.rekordbox.laeuft()) {
        rekordboxLaeuftAnzeigen();
    } else if (mitAbgleich) {
        abgleichen(u"vorstart"_s, true, {});
    }
}

void Hauptfenster::nachVorn()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    if (QGuiApplication::platformName() != u"offscreen"_s) {
        raise();
        activateWindow();
    }
}

void Hauptfenster::starten()
{
    nachVorn();
    installationen_ = umgebung_.rekordbox.installationen();
    startKnopfAktualisieren();
    abgleichen(u"hand"_s, false, [this] {
        if (!bildPfad_) {
            return;
        }
        bildVerzug_ = umgebung_.uhr.nach(bildverzug, [this] {
            bildSpeichern(ganz_, *bildPfad_);
            QCoreApplication::quit();
        });
    });
}

void Hauptfenster::abgleichen(const QString &anlass, bool autostartErlaubt,
                              std::function<void()> fertig)
{
    const auto rufen = [fertig = std::move(fertig)] {
        if (fertig) {
            fertig();
        }
    };
    if (beschaeftigt_) {
        rufen();
        return;
    }
    beschaeftigt_ = true;
    countdownStopp();
    lnkAbgleich_->setEnabled(false);
    if (umgebung_.rekordbox.laeuft()) {
        rekordboxLaeuftAnzeigen();
        beschaeftigt_ = false;
        lnkAbgleich_->setEnabled(true);
        rufen();
        return;
    }
    ladenAnzeigen(anlass == u"nachher"_s ? u"Änderungen werden übertragen …"_s
                                         : u"Bibliothek wird abgeglichen …"_s);
    const QPointer<Hauptfenster> ich = this;
    const auto abschluss = [ich, autostartErlaubt, rufen](const Bewertung &b) {
        if (ich) {
            ich->abgeschlossen(b, autostartErlaubt);
            rufen();
        }
    };
    const auto selbst = [this, anlass, abschluss] {
        bewerten(umgebung_.zentrale, anlass, this, abschluss);
    };
    if (steuerung_) {
        // A driver that goes takes the answer with it; then the window asks itself.
        treiberWeg_ = connect(steuerung_, &QObject::destroyed, this, selbst);
        steuerung_->abgleich(anlass, abschluss);
    } else {
        selbst();
    }
}

void Hauptfenster::abgeschlossen(const Bewertung &b, bool autostartErlaubt)
{
    disconnect(treiberWeg_);
    ergebnisAnzeigen(b);
    beschaeftigt_ = false;
    lnkAbgleich_->setEnabled(true);
    // Nothing counts down in a window that the user has put away meanwhile.
    if (autostartErlaubt && umgebung_.einst.autostart && b.startbar &&
        !umgebung_.rekordbox.laeuft() && gewaehlt() && isVisible()) {
        countdown_->start(u"start"_s, countdownSekunden);
    }
}

void Hauptfenster::zeige(const QString &art, const QString &titel, const QString &detail)
{
    karteStatus_->zeige(art, titel, detail);
}

void Hauptfenster::ladenAnzeigen(const QString &titel)
{
    zeige(u"laden"_s, titel, u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
}

void Hauptfenster::anzeigen(const Bewertung &b)
{
    letzte_ = b;
    if (b.neueVersion && b.updateAdresse) {
        karteUpdate_->zeige(*b.neueVersion, *b.updateAdresse);
    }
    zeige(b.art, b.titel, b.detail);
    karteStatus_->betriebZeigen(b.betrieb);
    karteZahlen_->zeige(b.antwort, freiAufMac(), umgebung_.uhr.jetzt());
    Q_EMIT angezeigt(b);
}

void Hauptfenster::ergebnisAnzeigen(const Bewertung &b)
{
    anzeigen(b);
    startKnopfAktualisieren();
}

void Hauptfenster::rekordboxLaeuftAnzeigen()
{
    countdownStopp();
    zeige(u"aus"_s, u"rekordbox läuft"_s,
          u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch."_s);
    startKnopfAktualisieren();
}

void Hauptfenster::startKnopfAktualisieren()
{
    const auto i = gewaehlt();
    const bool laeuft = i && umgebung_.rekordbox.hauptLaeuft();
    const QString titel = !i       ? u"rekordbox nicht gefunden"_s
                          : laeuft ? u"rekordbox läuft"_s
                                   : u"rekordbox "_s + i->version + u" starten"_s;
    titelSetzen(*knStart_, titel);
    knStart_->setEnabled(i && !laeuft);
}

void Hauptfenster::verstecken()
{
    countdownStopp();
    hide();
    umgebung_.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Zubehoer);
}

std::optional<Installation> Hauptfenster::gewaehlt() const
{
    return Rekordbox::gewaehlt(installationen_, umgebung_.einst);
}

void Hauptfenster::einstellungenOeffnen()
{
    countdownStopp();
    if (einstellungen_) {
        einstellungen_->raise();
        return;
    }
    einstellungen_ =
        new EinstellungenFenster({umgebung_.zentrale, umgebung_.einst, umgebung_.anmeldestart,
                                  installationen_, letzte_ ? letzte_->betrieb : QString()},
                                 this);
    einstellungen_->setAttribute(Qt::WA_DeleteOnClose);
    connect(einstellungen_, &QDialog::finished, this, [this](int ergebnis) {
        if (ergebnis == QDialog::Accepted) {
            cbAuto_->setChecked(umgebung_.einst.autostart);
            startKnopfAktualisieren();
        }
        einstellungen_.clear();
    });
    einstellungen_->open();
    einstellungen_->laden();
}

void Hauptfenster::closeEvent(QCloseEvent *event)
{
    // Never refused: a refused close would hold up the end of the session.
    event->accept();
    if (!steuerung_) {
        QCoreApplication::quit();
    } else if (!endgueltig_) {
        verstecken();
    }
}

} // namespace kalvaro
