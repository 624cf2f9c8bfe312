// What can happen in a simulated world.

#include "settingswindow/playlistenmodell.h"
#include "ui/knoepfe.h"
#include "verlauf.h"
#include "welt.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const std::array<const char *, 4> menuezeilen{"kalvaro öffnen", "Jetzt abgleichen",
                                              "rekordbox starten", "Beim Anmelden starten"};

const std::array<const char *, 4> fensterknoepfe{"knStart", "knCountdown", "lnkAbgleich", "cbAuto"};

// The user gets at the window: nothing is in front of it.
bool bedienbar(const Hauptfenster *fenster)
{
    return fenster != nullptr && fenster->isVisible() && !fenster->isMinimized() &&
           fenster->findChild<QDialog *>(QString(), Qt::FindDirectChildrenOnly) == nullptr;
}

} // namespace

void Welt::sekunden(int wieviele)
{
    uhr.vor(Sekunden(wieviele));
}

void Welt::antworten(int ausgang)
{
    netz.antworten(static_cast<Ausgang>(ausgang), 0);
}

void Welt::spaetesteAntworten(int ausgang)
{
    netz.antworten(static_cast<Ausgang>(ausgang), std::max<size_t>(netz.haengend(), 1) - 1);
}

void Welt::laune(int ausgang)
{
    netz.laune(ausgang < 0 ? std::nullopt : std::optional(static_cast<Ausgang>(ausgang)));
}

void Welt::rekordboxSetzen(int haupt, int agent, bool offen)
{
    prozesse.haupt = haupt;
    prozesse.agent = agent;
    prozesse.offen = offen;
    gesetze.rekordboxGeaendert();
}

// Whether kalvaro has asked for it or the user opens it.
void Welt::rekordboxKommt(int)
{
    if (prozesse.haupt == 0) {
        rekordboxSetzen(1, 1, true);
    }
    if (platz.startUnterwegs()) {
        platz.starten(std::nullopt);
    }
}

void Welt::startScheitert(int)
{
    if (platz.startUnterwegs()) {
        gesetze.startGescheitert();
        platz.starten(u"Das Programm fehlt."_s);
        gesetze.rekordboxGeaendert();
    }
}

void Welt::rekordboxGeht(int agenten)
{
    if (prozesse.haupt > 0) {
        rekordboxSetzen(0, agenten, false);
    }
}

void Welt::agentGeht(int)
{
    if (prozesse.haupt == 0 && prozesse.agent > 0) {
        rekordboxSetzen(0, 0, false);
    }
}

void Welt::agentKommt(int)
{
    if (prozesse.haupt == 0 && prozesse.agent == 0) {
        rekordboxSetzen(0, 1, false);
    }
}

void Welt::menue(int zeile)
{
    const QString text = QString::fromUtf8(menuezeilen.at(static_cast<size_t>(zeile)));
    const auto zeilen = statusobjekt.menue->actions();
    for (QAction *const aktion : zeilen) {
        if (aktion->text() == text) {
            aktion->trigger();
            return;
        }
    }
    qFatal("The menu has no row %s", qPrintable(text));
}

QAbstractButton *Welt::knopf(const QString &name) const
{
    return steuerung->fenster()->findChild<QAbstractButton *>(name);
}

void Welt::knopf(int welcher)
{
    if (bedienbar(steuerung->fenster())) {
        const QString name = QLatin1StringView(fensterknoepfe.at(static_cast<size_t>(welcher)));
        if (QAbstractButton *const einer = knopf(name); einer->isVisible()) {
            einer->click();
        }
    }
}

void Welt::fensterSchliessen(int)
{
    if (steuerung->fensterSichtbar()) {
        steuerung->fenster()->close();
    }
}

void Welt::fensterAblegen(int)
{
    if (steuerung->fensterSichtbar()) {
        steuerung->fenster()->showMinimized();
    }
}

QDialog *Welt::einstellungen() const
{
    const Hauptfenster *const fenster = steuerung->fenster();
    return fenster != nullptr
               ? fenster->findChild<QDialog *>(u"einstellungen"_s, Qt::FindDirectChildrenOnly)
               : nullptr;
}

void Welt::einstellungenOeffnen(int)
{
    if (bedienbar(steuerung->fenster())) {
        knopf(u"lnkEinstellungen"_s)->click();
    }
}

void Welt::blatt(int was)
{
    const QDialog *const blatt = einstellungen();
    if (blatt == nullptr || !blatt->isVisible()) {
        return;
    }
    const auto klicken = [blatt](const QString &name) {
        blatt->findChild<QAbstractButton *>(name)->click();
    };
    switch (static_cast<Blatt>(was)) {
    case Blatt::Autostart:
        klicken(u"cbAuto"_s);
        break;
    case Blatt::Playliste: {
        auto *const modell = blatt->findChild<PlaylistenModell *>();
        const QModelIndex erste = modell->index(0, 0);
        const bool an = erste.data(Qt::CheckStateRole) == Qt::Checked;
        modell->setData(erste, an ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        break;
    }
    case Blatt::Sichern:
        klicken(u"knSichern"_s);
        break;
    case Blatt::Abbrechen:
        klicken(u"knAbbrechen"_s);
    }
}

void Welt::hinweisSchliessen(int)
{
    if (const Hauptfenster *const fenster = steuerung->fenster()) {
        const auto offene =
            fenster->findChildren<QMessageBox *>(QString(), Qt::FindDirectChildrenOnly);
        for (QMessageBox *const hinweis : offene) {
            hinweis->accept();
        }
    }
}

void Welt::zweiterStart(int)
{
    steuerung->zeigen(true);
}

void Welt::aufwachen(int)
{
    platz.geweckt();
}

void Welt::uhrStellen(int stunden)
{
    uhr.verstellen(std::chrono::hours(stunden));
}

void Welt::abgleichErbitten(int)
{
    ++erbeten;
    ablauf->abgleicher.abgleich(Anlass::Hand, steuerung.get(),
                                [this, schon = std::make_shared<bool>(false)](const Bewertung &) {
                                    ++beantwortet;
                                    doppelt += std::exchange(*schon, true) ? 1 : 0;
                                });
}

} // namespace kalvaro
