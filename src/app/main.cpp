#include "app/farbfolge.h"
#include "app/kommandozeile.h"
#include "app/programm.h"
#include "app/programmordner.h"
#include "app/pruefmodus.h"
#include "app/sprache.h"
#include "foundation/datenordner.h"
#include "foundation/konstanten.h"
#include "foundation/speicher.h"
#include "platform/einzelinstanz.h"
#include "platform/merkprozesse.h"
#include "platform/plattform.h"
#include "rekordbox/rekordbox.h"
#include "server/netztransport.h"

#include <QApplication>

#include <cstdio>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    speicherTeilen();
    QStringList argumente;
    for (int i = 1; i < argc; ++i) {
        argumente.append(QString::fromLocal8Bit(argv[i]));
    }
    const auto kommandozeile = Kommandozeile::lesen(argumente);
    std::fputs(bemerkungen(kommandozeile).toUtf8().constData(), stderr);
    if (kommandozeile.hilfe || kommandozeile.version) {
        const QString ausgabe = kommandozeile.hilfe ? hilfetext() : u"kalvaro "_s + VERSION + u'\n';
        std::fputs(ausgabe.toUtf8().constData(), stdout);
        return 0;
    }
    if (!Programm::kannStarten()) {
        return 1;
    }
    if (kommandozeile.pruefen) {
        return pruefmodus(argc, argv, kommandozeile.json);
    }

    // A picture is to look the same wherever it is drawn.
    const bool folgsam = !kommandozeile.bild;
    const Startlage startlage(kommandozeile.plattform,
                              folgsam ? Startlage::Farben::Desktop : Startlage::Farben::Eigene);
    ordnerAnlegen();
    if (startlage.anzeigemangel() && !kommandozeile.bild) {
        return Programm::ohneAnzeige(*startlage.anzeigemangel());
    }
    std::optional<Utf8Rahmen> utf8(std::in_place);
    QApplication anwendung(argc, argv);
    utf8.reset();
    QApplication::setApplicationName(u"kalvaro"_s);
    QApplication::setDesktopFileName(KENNUNG);
    deutschEinrichten(anwendung);

    // A picture is always drawn by a process of its own.
    Systemuhr uhr;
    Plattform plattform(startlage, uhr);
    if (!kommandozeile.bild) {
        const Belegung platz = plattform.einzelinstanz().belegen(kommandozeile.wunsch());
        if (platz != Belegung::Erste) {
            return Programm::nebenEinemAnderen(platz);
        }
    }
    if (kommandozeile.beenden) {
        return 0; // nobody else runs
    }
    const Farbfolge farbfolge(anwendung, folgsam ? &plattform.farbschema() : nullptr);

    Netztransport transport(uhr);
    const Plattform::Anschluesse system = plattform.anschluesse();
    const Merkprozesse prozesse(system.prozesse);
    const Rekordbox rekordbox(prozesse, programmordner());
    Programm programm({uhr, transport, prozesse, rekordbox, system.arbeitsplatz,
                       system.anmeldestart, system.mitteilungen, system.statusobjekt});
    plattform.beiEnde([] { QApplication::quit(); });
    plattform.einzelinstanz().beiWunsch([&](Wunsch wunsch) { programm.erfuellen(wunsch); });
    QMetaObject::invokeMethod(
        &programm, [&] { programm.starten(kommandozeile); }, Qt::QueuedConnection);
    return QApplication::exec();
}
