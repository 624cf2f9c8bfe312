#include "app/kommandozeile.h"
#include "app/programm.h"
#include "app/sprache.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxprozesse.h"
#include "rekordbox/rekordbox.h"
#include "server/netztransport.h"
#include "ui/erscheinung.h"

#include <QApplication>

#include <cstdio>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

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
    return eigener.isEmpty() ? u"/Applications"_s : eigener;
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

    anzeigeWaehlen();
    ordnerAnlegen();
    QApplication anwendung(argc, argv);
    QApplication::setApplicationName(u"kalvaro"_s);
    QApplication::setApplicationVersion(VERSION);
    QApplication::setDesktopFileName(KENNUNG);
    deutschEinrichten(anwendung);
    erscheinungEinrichten(anwendung);

    Systemuhr uhr;
    Netztransport transport(uhr);
    const LinuxProzesse prozesse;
    const Rekordbox rekordbox(prozesse, programmordner());
    LinuxArbeitsplatz arbeitsplatz;

    Programm programm({uhr, transport, rekordbox, arbeitsplatz});
    QMetaObject::invokeMethod(
        &programm, [&] { programm.starten(kommandozeile); }, Qt::QueuedConnection);
    QApplication::exec();
    return 0;
}
