#include "app/programm.h"

#include "foundation/einstellungen.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "mainwindow/hauptfenster.h"
#include "server/zentrale.h"
#include "ui/hinweisfenster.h"

#include <QGuiApplication>
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

// Whether anybody can see and close a window.
bool hatBildschirm()
{
    const QString plattform = QGuiApplication::platformName();
    return plattform != u"offscreen"_s && plattform != u"minimal"_s;
}

} // namespace

Programm::Programm(const Adapter &geraete)
    : adapter(geraete)
{
}

Programm::~Programm() = default;

void Programm::starten(const Kommandozeile &kommandozeile)
{
    const auto konto = Konto::laden();
    if (!konto) {
        ohneKonto(konto.error());
        return;
    }
    protokoll(u"gestartet (%1, Gerät %2)"_s.arg(VERSION, konto->geraet));
    fensterStarten(*konto, kommandozeile.bild);
}

void Programm::ohneKonto(const QString &grund)
{
    const QString meldung = u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s;
    schreiben(stderr, meldung + u'\n' + grund);
    if (!hatBildschirm()) {
        QCoreApplication::quit();
        return;
    }
    QMessageBox *const alarm = hinweisfenster(meldung, grund);
    connect(alarm, &QMessageBox::finished, this, &QCoreApplication::quit);
    alarm->open();
    alarm->raise();
    alarm->activateWindow();
}

void Programm::fensterStarten(const Konto &konto, const std::optional<QString> &bild)
{
    zentrale = std::make_unique<Zentrale>(konto, adapter.transport);
    einstellungen = std::make_unique<Einstellungen>();
    const Umgebung umgebung{*zentrale, *einstellungen, adapter.uhr, adapter.rekordbox,
                            adapter.arbeitsplatz};
    bildFenster = std::make_unique<Hauptfenster>(umgebung, bild, nullptr);
    if (bild) {
        // Whoever asked for the picture learns the verdict as text as well.
        connect(bildFenster.get(), &Hauptfenster::angezeigt, this,
                [](const Bewertung &b) { schreiben(stdout, b.titel + u'\n' + b.detail); });
    }
    bildFenster->starten();
}

} // namespace kalvaro
