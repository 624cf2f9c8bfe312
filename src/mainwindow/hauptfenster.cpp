#include "mainwindow/hauptfenster.h"

#include "assessment/bewerten.h"
#include "foundation/einstellungen.h"
#include "foundation/formate.h"
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
    : umgebung(welt)
    , bildPfad(std::move(bild))
    , steuerung(treiber)
{
    aufbauen();
}

void Hauptfenster::oeffnen(bool mitAbgleich)
{
    umgebung.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Regulaer);
    installationen = umgebung.rekordbox.installationen();
    nachVorn();
    startKnopfAktualisieren();
    if (umgebung.rekordbox.laeuft()) {
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
    installationen = umgebung.rekordbox.installationen();
    startKnopfAktualisieren();
    abgleichen(u"hand"_s, false, [this] {
        if (!bildPfad) {
            return;
        }
        bildVerzug = umgebung.uhr.nach(bildverzug, [this] {
            bildSpeichern(ganz, *bildPfad);
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
    lnkAbgleich->setEnabled(false);
    if (umgebung.rekordbox.laeuft()) {
        rekordboxLaeuftAnzeigen();
        beschaeftigt_ = false;
        lnkAbgleich->setEnabled(true);
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
        bewerten(umgebung.zentrale, anlass, this, abschluss);
    };
    if (steuerung) {
        // A driver that goes takes the answer with it; then the window asks itself.
        treiberWeg = connect(steuerung, &QObject::destroyed, this, selbst);
        steuerung->abgleich(anlass, abschluss);
    } else {
        selbst();
    }
}

void Hauptfenster::abgeschlossen(const Bewertung &b, bool autostartErlaubt)
{
    disconnect(treiberWeg);
    ergebnisAnzeigen(b);
    beschaeftigt_ = false;
    lnkAbgleich->setEnabled(true);
    // Nothing counts down in a window that the user has put away meanwhile.
    if (autostartErlaubt && umgebung.einst.autostart && b.startbar &&
        !umgebung.rekordbox.laeuft() && gewaehlt() && isVisible()) {
        countdown->start(u"start"_s, countdownSekunden);
    }
}

void Hauptfenster::zeige(const QString &art, const QString &titel, const QString &detail)
{
    karteStatus->zeige(art, titel, detail);
}

void Hauptfenster::ladenAnzeigen(const QString &titel)
{
    zeige(u"laden"_s, titel, u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
}

void Hauptfenster::anzeigen(const Bewertung &b)
{
    letzte = b;
    if (b.neueVersion && b.updateAdresse) {
        karteUpdate->zeige(*b.neueVersion, *b.updateAdresse);
    }
    zeige(b.art, b.titel, b.detail);
    karteStatus->betriebZeigen(b.betrieb);
    karteZahlen->zeige(b.antwort, freiAufMac(), umgebung.uhr.jetzt());
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
    const bool laeuft = i && umgebung.rekordbox.hauptLaeuft();
    const QString titel = !i       ? u"rekordbox nicht gefunden"_s
                          : laeuft ? u"rekordbox läuft"_s
                                   : u"rekordbox "_s + i->version + u" starten"_s;
    titelSetzen(*knStart, titel);
    knStart->setEnabled(i && !laeuft);
}

void Hauptfenster::verstecken()
{
    countdownStopp();
    hide();
    umgebung.arbeitsplatz.auftreten(Arbeitsplatz::Auftritt::Zubehoer);
}

std::optional<Installation> Hauptfenster::gewaehlt() const
{
    return Rekordbox::gewaehlt(installationen, umgebung.einst);
}

void Hauptfenster::einstellungenOeffnen()
{
    countdownStopp();
    if (einstellungen) {
        einstellungen->raise();
        return;
    }
    einstellungen =
        new EinstellungenFenster({umgebung.zentrale, umgebung.einst, umgebung.anmeldestart,
                                  installationen, letzte ? letzte->betrieb : QString()},
                                 this);
    einstellungen->setAttribute(Qt::WA_DeleteOnClose);
    connect(einstellungen, &QDialog::finished, this, [this](int ergebnis) {
        if (ergebnis == QDialog::Accepted) {
            cbAuto->setChecked(umgebung.einst.autostart);
            startKnopfAktualisieren();
        }
        einstellungen.clear();
    });
    einstellungen->open();
    einstellungen->laden();
}

void Hauptfenster::closeEvent(QCloseEvent *event)
{
    // Never refused: a refused close would hold up the end of the session.
    event->accept();
    if (!steuerung) {
        QCoreApplication::quit();
    } else if (!endgueltig) {
        verstecken();
    }
}

} // namespace kalvaro
