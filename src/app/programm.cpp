#include "app/programm.h"

#include "app/hauptmenue.h"
#include "controller/steuerung.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/arbeitsplatz.h"
#include "ui/hinweisfenster.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

void schreiben(std::FILE *ziel, const QString &zeilen)
{
    std::fputs((zeilen + u'\n').toUtf8().constData(), ziel);
    std::fflush(ziel);
}

} // namespace

Programm::Programm(const Adapter &geraete, bool bildschirm)
    : adapter_(geraete)
    , mitBildschirm_(bildschirm)
{
}

Programm::~Programm() = default;

bool Programm::hatBildschirm()
{
    const QString plattform = QGuiApplication::platformName();
    return plattform != u"offscreen"_s && plattform != u"minimal"_s;
}

void Programm::starten(const Kommandozeile &kommandozeile)
{
    adapter_.arbeitsplatz.auftreten(kommandozeile.hintergrund ? Arbeitsplatz::Auftritt::Zubehoer
                                                              : Arbeitsplatz::Auftritt::Regulaer);
    const auto konto = Konto::laden();
    if (!konto) {
        ohneKonto(konto.error());
        return;
    }
    protokoll(u"gestartet (%1, Gerät %2)"_s.arg(VERSION, konto->geraet));
    // Picture mode ends with its window; the controller lives on without one.
    QApplication::setQuitOnLastWindowClosed(kommandozeile.bild.has_value());
    if (kommandozeile.bild) {
        bildStarten(*konto, *kommandozeile.bild);
    } else {
        steuerung_ =
            std::make_unique<Steuerung>(*konto, adapter_, kommandozeile.hintergrund, menueBauen);
    }
}

void Programm::wiederOeffnen()
{
    if (steuerung_) {
        steuerung_->zeigen(true);
    }
}

void Programm::aufgewacht()
{
    if (steuerung_) {
        steuerung_->aufgewacht();
    }
}

void Programm::ohneKonto(const QString &grund)
{
    const QString meldung = u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s;
    schreiben(stderr, meldung + u'\n' + grund);
    if (!mitBildschirm_) {
        QCoreApplication::quit();
        return;
    }
    QMessageBox *const alarm = hinweisfenster(meldung, grund);
    connect(alarm, &QMessageBox::finished, this, &QCoreApplication::quit);
    alarm->open();
    alarm->raise();
    alarm->activateWindow();
}

void Programm::bildStarten(const Konto &konto, const QString &pfad)
{
    bildZentrale_ = std::make_unique<Zentrale>(konto, adapter_.transport);
    bildEinstellungen_ = std::make_unique<Einstellungen>();
    const Umgebung umgebung{*bildZentrale_,     *bildEinstellungen_,   adapter_.uhr,
                            adapter_.rekordbox, adapter_.arbeitsplatz, adapter_.anmeldestart};
    bildFenster_ = std::make_unique<Hauptfenster>(umgebung, pfad, nullptr);
    menueBauen(*bildFenster_);
    // Whoever asked for the picture learns the verdict as text as well.
    connect(bildFenster_.get(), &Hauptfenster::angezeigt, this,
            [](const Bewertung &b) { schreiben(stdout, b.titel + u'\n' + b.detail); });
    bildFenster_->starten();
}

} // namespace kalvaro
