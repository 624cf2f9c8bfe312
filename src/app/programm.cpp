#include "app/programm.h"

#include "app/hauptmenue.h"
#include "controller/steuerung.h"
#include "foundation/deskriptoren.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/arbeitsplatz.h"
#include "ui/hinweisfenster.h"

#include <QApplication>
#include <QMessageBox>
#include <QWindow>

#include <cstdio>
#include <system_error>
#include <thread>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr Sekunden dienstgeduld{10};
constexpr int zumStarten = 24; // descriptors that a start takes at most for a while
const QString nichtEingerichtet = u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s;

void schreiben(std::FILE *ziel, const QString &zeilen)
{
    std::fputs((zeilen + u'\n').toUtf8().constData(), ziel);
    std::fflush(ziel);
}

} // namespace

Programm::Programm(const Umgebung &umgebung, bool bildschirm)
    : umgebung_(umgebung)
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
    if (kommandozeile.dienst && !kommandozeile.bild) {
        geduld_ = umgebung_.uhr.nach(dienstgeduld, [] { QCoreApplication::quit(); });
    } else {
        beginnen(kommandozeile);
    }
}

void Programm::beginnen(const Kommandozeile &kommandozeile)
{
    umgebung_.arbeitsplatz.auftreten(kommandozeile.hintergrund ? Arbeitsplatz::Auftritt::Zubehoer
                                                               : Arbeitsplatz::Auftritt::Regulaer);
    const auto konto = Konto::laden();
    if (!konto) {
        ohneKonto(konto.error());
        return;
    }
    protokoll(u"gestartet (%1, Gerät %2)"_s.arg(VERSION, konto->geraet));
    // Picture mode ends with its window; the controller lives on without one.
    QApplication::setQuitOnLastWindowClosed(kommandozeile.bild.has_value());
    ablauf_ = std::make_unique<Ablauf>(*konto, umgebung_);
    if (kommandozeile.bild) {
        bildStarten(*kommandozeile.bild);
    } else {
        steuerung_ = std::make_unique<Steuerung>(*ablauf_, kommandozeile.hintergrund, menueBauen);
        if (kommandozeile.abgleichen) {
            // Joins the one that a window brings, so it asks after the window did; it may bring
            // none.
            ablauf_->abgleichMoeglich(this, [this](bool) { erfuellen(Wunsch::Abgleichen); });
        }
    }
}

bool Programm::kannStarten()
{
    if (!deskriptorenFrei(zumStarten)) {
        schreiben(stderr, u"kalvaro kann nicht starten: Es sind zu viele Dateien geöffnet."_s);
        return false;
    }
    try {
        std::thread([] {}).join();
    } catch (const std::system_error &) {
        schreiben(stderr, u"kalvaro kann nicht starten: Es laufen zu viele Prozesse."_s);
        return false;
    }
    return true;
}

int Programm::ohneAnzeige(const QString &mangel)
{
    if (const auto konto = Konto::laden(); !konto) {
        schreiben(stderr, nichtEingerichtet + u'\n' + konto.error());
        return 0;
    }
    schreiben(stderr, u"kalvaro kann hier nichts zeigen: "_s + mangel +
                          u" Ohne Anzeige gehen nur „--pruefen“, „--bild PFAD“, „--help“ und "
                          "„--version“."_s);
    return 1;
}

int Programm::nebenEinemAnderen(Belegung platz)
{
    if (platz != Belegung::Stumm) {
        return 0;
    }
    schreiben(stderr, u"kalvaro läuft bereits, antwortet aber nicht."_s);
    return 1;
}

void Programm::erfuellen(Wunsch wunsch)
{
    if (std::exchange(geduld_, nullptr)) {
        if (wunsch == Wunsch::Beenden) {
            QCoreApplication::quit();
        } else {
            beginnen({.hintergrund = wunsch == Wunsch::Hintergrund,
                      .abgleichen = wunsch == Wunsch::Abgleichen});
        }
        return;
    }
    switch (wunsch) {
    case Wunsch::Oeffnen:
        if (steuerung_) {
            steuerung_->zeigen(true);
        } else if (alarm_ && alarm_->isVisible()) {
            alarmZeigen();
        }
        break;
    case Wunsch::Abgleichen:
        if (steuerung_) {
            ablauf_->abgleicher.abgleich(Anlass::Hand);
        }
        break;
    case Wunsch::Beenden:
        if (steuerung_) {
            steuerung_->beenden();
        } else {
            QCoreApplication::quit();
        }
        break;
    case Wunsch::Hintergrund:
        break; // it does
    }
}

void Programm::ohneKonto(const QString &grund)
{
    schreiben(stderr, nichtEingerichtet + u'\n' + grund);
    if (!mitBildschirm_) {
        QCoreApplication::quit();
        return;
    }
    alarm_ = hinweisfenster(nichtEingerichtet, grund);
    connect(alarm_, &QMessageBox::finished, this, &QCoreApplication::quit);
    alarm_->open();
    alarmZeigen();
}

void Programm::alarmZeigen()
{
    alarm_->showNormal();
    alarm_->raise();
    umgebung_.arbeitsplatz.nachVorn(*alarm_->windowHandle());
}

void Programm::bildStarten(const QString &pfad)
{
    bildFenster_ = std::make_unique<Hauptfenster>(*ablauf_, Verbleib::Allein, pfad);
    menueBauen(*bildFenster_);
    // Whoever asked for the picture learns the verdict as text as well.
    connect(bildFenster_.get(), &Hauptfenster::angezeigt, this,
            [](const QString &titel, const QString &detail) {
                schreiben(stdout, titel + u'\n' + detail);
            });
    bildFenster_->starten();
}

} // namespace kalvaro
