// What the controller reports of syncs and of rekordbox: log, status item, notifications, update
// offer.

#include "controller/steuerung.h"

#include "assessment/startpruefung.h"
#include "foundation/protokoll.h"
#include "foundation/werte.h"
#include "platform/arbeitsplatz.h"
#include "platform/mitteilungen.h"
#include "platform/statusobjekt.h"
#include "server/inhalt.h"

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString ruhesymbol = u"icloud"_s;

// The symbol of the status item for an outcome.
QString symbol(const Bewertung &b)
{
    if (b.offline) {
        return u"icloud.slash"_s;
    }
    switch (b.art) {
    case Art::Gut:
        return u"checkmark.icloud"_s;
    case Art::Warn:
        return u"exclamationmark.icloud"_s;
    case Art::Krit:
        return u"exclamationmark.icloud.fill"_s;
    case Art::Aus:
        return ruhesymbol;
    }
    Q_UNREACHABLE();
}

} // namespace

void Steuerung::begonnen(Anlass anlass)
{
    setzeStatus(u"gleicht ab …"_s);
    umgebung_.statusobjekt.symbolSetzen(u"arrow.clockwise.icloud"_s);
    protokoll(u"Abgleich ("_s + anlassname(anlass) + u") ..."_s);
}

void Steuerung::fertig(const Bewertung &b, Anlass anlass)
{
    protokoll(u"  -> "_s + artname(b.art) + u": "_s + b.titel + u" | "_s + b.detail);
    melden(b, anlass);
    updateAnbieten(b);
}

void Steuerung::melden(const Bewertung &b, Anlass anlass)
{
    const bool neuKritisch = b.art == Art::Krit && (!letzte_ || letzte_->art != Art::Krit);
    // In the dock or task bar the window shows nothing to anybody.
    const bool imBlick = fensterSichtbar() && !fenster_->isMinimized();
    if (!imBlick && !b.offline && (anlass == Anlass::Nachher || neuKritisch)) {
        mitteilen(b.titel, b.detail);
    }
    letzte_ = b;
    umgebung_.statusobjekt.symbolSetzen(symbol(b));
    setzeStatus(b.offline ? b.titel + u" (offline)"_s : b.titel);
}

void Steuerung::setzeStatus(const QString &zeile)
{
    menue_.kopfSetzen(zeile + u"   ("_s + umgebung_.uhr.jetzt().toString(u"HH:mm"_s) + u')');
    umgebung_.statusobjekt.hinweisSetzen(u"kalvaro – "_s + zeile);
}

void Steuerung::mitteilen(const QString &titel, const QString &text,
                          const std::optional<QString> &ziel)
{
    umgebung_.mitteilungen.mitteilen(titel, text, ziel);
}

// Once: whoever has seen where the window is finds it again.
void Steuerung::ablageMelden()
{
    if (!std::exchange(ablageGemeldet_, true)) {
        protokoll(u"Fenster abgelegt: keine Menüleiste, die das Symbol aufnimmt"_s);
        mitteilen(u"kalvaro läuft weiter"_s,
                  u"Das Fenster ist nur abgelegt, im Hintergrund bleibt alles wie gewohnt. Zum "
                  "Zurückholen kalvaro einfach noch einmal öffnen."_s);
    }
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
        *b.neueVersion + u'|' + umgebung_.uhr.jetzt().toString(u"yyyy-MM-dd"_s);
    Einstellungen &einst = ablauf_.einst;
    if (einst.updateGemeldet == schluessel) {
        return;
    }
    einst.updateGemeldet = schluessel;
    einst.speichern();
    protokoll(u"neue Version "_s + *b.neueVersion + u" gemeldet"_s);
    mitteilen(u"Neue kalvaro-Version "_s + *b.neueVersion,
              u"Hier klicken zum Herunterladen. Der Installer ersetzt die alte Version, deine "
              "Einstellungen bleiben erhalten."_s,
              updateAdresse_);
}

void Steuerung::updateOeffnen(const QString &adresse)
{
    if (const auto url = updateUrl(adresse)) {
        umgebung_.arbeitsplatz.oeffnen(*url);
    }
}

void Steuerung::rekordboxGestartet()
{
    protokoll(u"rekordbox gestartet"_s);
    setzeStatus(u"rekordbox läuft"_s);
    umgebung_.statusobjekt.symbolSetzen(ruhesymbol);
    ausstehendesMelden();
}

// Warns when rekordbox was opened before changes from elsewhere had been taken over.
void Steuerung::ausstehendesMelden()
{
    // An answer that comes after rekordbox has quit again is of no use to anybody.
    laufzeitRekordbox_ = std::make_unique<QObject>();
    ablauf_.zentrale.anfrageLesen<QString>(
        standAnfragen(ablauf_.zentrale.konto().geraet), laufzeitRekordbox_.get(),
        [](const QByteArray &daten, const Abbruch &) {
            const auto stand = inhalt(daten);
            return stand ? std::optional(kurztext(*stand, u"ausstehend")) : std::nullopt;
        },
        [this](const tl::expected<QString, ZentraleFehler> &ausstehend) {
            // The server may name the truth as a boolean, a number or a text.
            if (ausstehend == u"1"_s || ausstehend == u"true"_s) {
                mitteilen(u"Neue Änderungen warten"_s,
                          u"rekordbox wurde geöffnet, bevor die neuesten Änderungen übernommen "
                          "waren. Schließe rekordbox kurz – kalvaro übernimmt sie sofort."_s);
            }
        });
}

void Steuerung::rekordboxBeendet()
{
    protokoll(u"rekordbox beendet"_s);
    // A run that is under way began before rekordbox had saved, and is not enough.
    ablauf_.abgleicher.schulden();
    const bool angekuendigt = fensterSichtbar();
    ablauf_.abgleicher.abgleich(Anlass::Nachher, this, [this, angekuendigt](const Bewertung &b) {
        // Also when it was hidden meanwhile: its counter of seconds would run on for ever.
        if (angekuendigt || fensterSichtbar()) {
            fenster_->ergebnisAnzeigen(b);
        }
    });
}

} // namespace kalvaro
