#include "app/kommandozeile.h"
#include "app/programm.h"
#include "app/sprache.h"
#include "foundation/datenordner.h"
#include "foundation/konstanten.h"
#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/dbusmitteilungen.h"
#include "platform/linux/endefrist.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxprozesse.h"
#include "platform/linux/logindwache.h"
#include "platform/linux/signale.h"
#include "platform/linux/traystatusobjekt.h"
#include "platform/linux/xdganmeldestart.h"
#include "platform/merkprozesse.h"
#include "rekordbox/rekordbox.h"
#include "server/netztransport.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int laengstesEnde = 700; // milliseconds

// Without a display the program can still draw its picture and say what is wrong.
void anzeigeWaehlen()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

QString programmordner()
{
    const QString eigener = qEnvironmentVariable("KALVARO_APPLICATIONS");
    return eigener.isEmpty() ? u"/Applications"_s : QDir(eigener).absolutePath();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList argumente;
    for (int i = 1; i < argc; ++i) {
        argumente.append(QString::fromLocal8Bit(argv[i]));
    }
    const auto kommandozeile = Kommandozeile::lesen(argumente);
    if (kommandozeile.hilfe || kommandozeile.version) {
        const QString ausgabe = kommandozeile.hilfe ? hilfetext() : u"kalvaro "_s + VERSION + u'\n';
        std::fputs(ausgabe.toUtf8().constData(), stdout);
        return 0;
    }

    const Aktivierung aktivierung = Aktivierung::ausUmgebung();
    sitzungsbusFestlegen();
    anzeigeWaehlen();
    ordnerAnlegen();
    QApplication anwendung(argc, argv);
    QApplication::setApplicationName(u"kalvaro"_s);
    QApplication::setApplicationVersion(VERSION);
    QApplication::setDesktopFileName(KENNUNG);
    deutschEinrichten(anwendung);

    // A picture is always drawn by a process of its own.
    DBusEinzelinstanz instanz(aktivierung);
    if (!kommandozeile.bild && !instanz.belegen(kommandozeile.hintergrund)) {
        return 0;
    }
    erscheinungEinrichten(anwendung);

    Systemuhr uhr;
    Netztransport transport(uhr);
    const LinuxProzesse prozesstafel;
    const Merkprozesse prozesse(prozesstafel);
    const Rekordbox rekordbox(prozesse, programmordner());
    LinuxArbeitsplatz arbeitsplatz;
    XdgAnmeldestart anmeldestart;
    DBusMitteilungen mitteilungen;
    TrayStatusobjekt statusobjekt(uhr);

    Programm programm({uhr, transport, prozesse, rekordbox, arbeitsplatz, anmeldestart,
                       mitteilungen, statusobjekt});
    const Logindwache aufwachen(uhr, [&] { programm.aufgewacht(); });
    const Signale signale([] { QApplication::quit(); });
    QObject::connect(&anwendung, &QApplication::aboutToQuit, &anwendung,
                     [] { endeErzwingen(laengstesEnde); });
    instanz.beiOeffnen([&] { programm.wiederOeffnen(); });
    QMetaObject::invokeMethod(
        &programm, [&] { programm.starten(kommandozeile); }, Qt::QueuedConnection);
    QApplication::exec();
    return 0;
}
