#include "gesetze.h"

#include "mainwindow/countdown.h"
#include "mainwindow/statuskarte.h"
#include "ui/beschriftung.h"
#include "ui/knoepfe.h"
#include "welt.h"

#include <QDialog>

#include <algorithm>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The catch-up comes every 600 s and counts processes first; what it owes may be known as late.
constexpr auto nachholfrist = 600s + 2 * Simulationsprozesse::spaeteste + 1s;

// A sync has 480 s, and a probe of each server before it 4 s.
constexpr int laengstesLaden = 500;

const QString laufsymbol = u"arrow.clockwise.icloud"_s;

// The number in a text such as "… in 5 s …".
int zahlIn(QStringView text)
{
    int zahl = 0;
    for (const QChar zeichen : text) {
        zahl = zeichen.isDigit() ? 10 * zahl + zeichen.digitValue() : zahl;
    }
    return zahl;
}

} // namespace

Gesetze::Gesetze(const Welt &welt)
    : welt_(welt)
{
}

void Gesetze::ablaufBeobachten()
{
    connect(&welt_.ablauf->abgleicher, &Abgleicher::begonnen, this, &Gesetze::begonnen);
    connect(&welt_.ablauf->abgleicher, &Abgleicher::fertig, this, &Gesetze::fertig);
}

void Gesetze::fensterBeobachten(Hauptfenster &fenster)
{
    fenster_ = &fenster;
    karte_ = fenster.findChild<Statuskarte *>();
    detail_ = fenster.findChild<Beschriftung *>(u"lblDetail"_s);
    countdowntext_ = fenster.findChild<Beschriftung *>(u"lblCountdown"_s);
    abgleichlink_ = fenster.findChild<Verweis *>(u"lnkAbgleich"_s);
    connect(fenster.findChild<Countdown *>(), &Countdown::abgelaufen, this, &Gesetze::abgelaufen);
    connect(&fenster, &Hauptfenster::angezeigt, this,
            [this](const QString &, const QString &detail) { gezeigt(detail); });
}

Gesetze::Zeit Gesetze::jetzt() const
{
    return welt_.uhr.laufzeit();
}

bool Gesetze::rekordboxRuht() const
{
    const Simulationsprozesse &prozesse = welt_.prozesse;
    return prozesse.haupt == 0 && prozesse.agent == 0 && !welt_.platz.startUnterwegs();
}

// An agent that has come since the processes were counted is not known yet. rekordbox itself shows
// in the list of running bundles, and a start is our own.
bool Gesetze::kannAlsRuhendGelten() const
{
    return rekordboxRuht() || (welt_.prozesse.haupt == 0 && !welt_.platz.startUnterwegs() &&
                               jetzt() - laeuftSeit_ <= Simulationsprozesse::spaeteste);
}

void Gesetze::verlangen(bool gilt, const QString &gesetz)
{
    if (!gilt && !verstoss_) {
        verstoss_ = gesetz;
    }
}

void Gesetze::startErbeten()
{
    verlangen(welt_.netz.abgleicheUnterwegs() == 0 && !welt_.ablauf->abgleicher.laeuftGerade(),
              u"rekordbox starts while a sync runs"_s);
    verlangen(!welt_.platz.startUnterwegs(), u"rekordbox starts while it is being started"_s);
    verlangen(welt_.prozesse.haupt == 0, u"rekordbox starts while it runs"_s);
    startErbetenUm_ = jetzt();
    abgleichBeimStart_ = false;
    ++starts_;
}

// Nothing has run, so nothing is to be transferred after it; and a sync that has begun meanwhile
// has found everything.
void Gesetze::startGescheitert()
{
    if (nachEnde_ && (nachEnde_ >= startErbetenUm_ || abgleichBeimStart_)) {
        nachEnde_.reset();
    }
}

void Gesetze::rekordboxGeaendert()
{
    ruhtSeit_ = jetzt();
    if (std::exchange(ruhte_, rekordboxRuht()) && !ruhte_) {
        laeuftSeit_ = jetzt();
    }
}

void Gesetze::begonnen(Anlass anlass)
{
    const bool vonAlleine = anlass != Anlass::Hand && anlass != Anlass::Nachher;
    verlangen(!vonAlleine || kannAlsRuhendGelten(),
              u"a sync begins while rekordbox or its agent runs"_s);
    nochmal_.reset();
    if (rekordboxRuht()) {
        nachEnde_.reset();
    }
    abgleichBeimStart_ =
        abgleichBeimStart_ || (welt_.prozesse.haupt == 0 && welt_.prozesse.agent == 0);
}

void Gesetze::fertig(const Bewertung &b)
{
    letzterAbgleich_ = jetzt();
    if (b.offline || b.detail.contains(u"kalvaro versucht es gleich wieder")) {
        versprechen(nochmal_);
    }
    if (b.detail.contains(u"folgt, sobald rekordbox beendet ist")) {
        versprechen(nachEnde_);
    }
}

void Gesetze::versprechen(std::optional<Zeit> &was)
{
    was = jetzt();
    ++gegeben_;
}

void Gesetze::gezeigt(const QString &detail)
{
    if (detail.contains(u"überträgt kalvaro deine Änderungen automatisch")) {
        versprechen(nachEnde_);
    }
}

void Gesetze::abgelaufen()
{
    ++countdowns_;
    const Rekordboxstarter &starter = welt_.ablauf->starter;
    verlangen(starter.schritt() != Startschritt::Ruht || welt_.prozesse.haupt > 0 ||
                  !starter.gewaehlt(),
              u"a countdown has come to its end, and nothing follows"_s);
}

void Gesetze::pruefen()
{
    verlangen(welt_.netz.meisteAbgleiche() <= 1, u"two syncs run at once"_s);
    verlangen(welt_.doppelt == 0, u"a callback is called twice"_s);
    versprechenPruefen(nachEnde_, u"the promised sync after rekordbox"_s);
    versprechenPruefen(nochmal_, u"the promised next try of a sync"_s);
    const bool laeuft = welt_.ablauf->abgleicher.laeuftGerade();
    verlangen(laeuft || welt_.statusobjekt.symbol() != laufsymbol,
              u"the status item shows a sync that does not run"_s);
    if (fenster_) {
        anzeigePruefen();
        countdownPruefen();
    }
}

void Gesetze::versprechenPruefen(const std::optional<Zeit> &seit, const QString &was)
{
    if (seit && rekordboxRuht() && !welt_.ablauf->abgleicher.laeuftGerade()) {
        const Zeit beginn = std::max({*seit, ruhtSeit_, letzterAbgleich_});
        verlangen(jetzt() - beginn <= nachholfrist, was + u" does not come"_s);
    }
}

void Gesetze::anzeigePruefen()
{
    const Ablauf &ablauf = *welt_.ablauf;
    const bool tut = ablauf.abgleicher.laeuftGerade() || ablauf.starter.imFenster() ||
                     welt_.prozesse.offene() > 0;
    if (!karte_->art()) {
        verlangen(tut, u"the window shows that something is under way, but nothing is"_s);
        const QString detail = detail_->text();
        verlangen(!detail.endsWith(u" s)") || zahlIn(detail) <= laengstesLaden,
                  u"the loading counter runs on"_s);
    }
    verlangen(tut || !abgleichlink_->beschaeftigt(), u"the window lets nobody sync"_s);
}

void Gesetze::countdownPruefen()
{
    const QString text = countdowntext_->text();
    const int rest = zahlIn(text);
    // One that counts from further up is another one.
    if (text.isEmpty() || rest > countdownRest_) {
        countdownEnde_.reset();
    }
    countdownRest_ = rest;
    if (text.isEmpty()) {
        return;
    }
    verlangen(fenster_->isVisible() && welt_.einstellungen() == nullptr &&
                  welt_.ablauf->einst.autostart,
              u"a countdown behind the settings, in a hidden window or without auto-start"_s);
    if (!countdownEnde_) {
        countdownEnde_ = jetzt() + std::chrono::seconds(rest + 1);
    }
    verlangen(jetzt() <= *countdownEnde_, u"a countdown does not end"_s);
}

void Gesetze::ruhePruefen(bool nimmtAn)
{
    const Ablauf &ablauf = *welt_.ablauf;
    verlangen(welt_.uhr.offen() == 2, u"timers are left over at rest"_s);
    verlangen(welt_.netz.haengend() == 0, u"a request hangs at rest"_s);
    verlangen(welt_.prozesse.offene() == 0, u"a count is under way at rest"_s);
    verlangen(welt_.beantwortet == welt_.erbeten, u"a callback is never called"_s);
    verlangen(ablauf.starter.schritt() == Startschritt::Ruht && !ablauf.abgleicher.laeuftGerade(),
              u"a start or a sync is under way at rest"_s);
    verlangen(ablauf.abgleicher.children().isEmpty() && ablauf.starter.children().isEmpty(),
              u"something is left over at rest"_s);
    verlangen(!versprochen(), u"a promise is open at rest"_s);
    verlangen(nimmtAn, u"at rest no sync can be asked for"_s);
}

} // namespace kalvaro
