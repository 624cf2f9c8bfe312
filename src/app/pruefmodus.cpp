#include "app/pruefmodus.h"

#include "app/programmordner.h"
#include "app/sprache.h"
#include "foundation/konstanten.h"
#include "platform/plattform.h"
#include "pruefung/pruefung.h"
#include "rekordbox/rekordbox.h"
#include "server/netztransport.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <cstdio>
#include <optional>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QByteArray ausgabe(const QList<Befund> &befunde, bool json)
{
    return json ? alsJson(befunde, {{u"kalvaro"_s, VERSION},
                                    {u"qt"_s, QString::fromLatin1(qVersion())},
                                    {u"system"_s, QSysInfo::prettyProductName()}})
                : alsText(befunde).toUtf8();
}

} // namespace

int pruefmodus(int &argc, char **argv, bool json)
{
    std::optional<Utf8Rahmen> utf8(std::in_place);
    QCoreApplication anwendung(argc, argv);
    utf8.reset();
    deutschEinrichten(anwendung);
    Systemuhr uhr;
    Netztransport transport(uhr);
    const Rechnerauskunft rechner;
    const Rekordbox rekordbox(rechner.prozesse(), programmordner());
    Pruefung pruefung(
        {uhr, transport, rekordbox, rechner.schreibtisch(), programmordner(), namenSuchen});
    pruefung.beginnen([json](const QList<Befund> &befunde) {
        const bool gesagt =
            std::fputs(ausgabe(befunde, json).constData(), stdout) >= 0 && std::fflush(stdout) == 0;
        Rechnerauskunft::enden(gesagt && allesGut(befunde) ? 0 : 1);
    });
    return QCoreApplication::exec();
}

} // namespace kalvaro
