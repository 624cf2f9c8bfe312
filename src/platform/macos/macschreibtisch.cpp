#include "platform/macos/macschreibtisch.h"

#include "foundation/gewoehnlichedatei.h"
#include "platform/macos/agentdatei.h"
#include "platform/macos/launchagent.h"

#include <QFileInfo>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

MacSchreibtisch::MacSchreibtisch(std::function<bool()> sitzung, QString heim)
    : sitzung_(std::move(sitzung))
    , heim_(std::move(heim))
{
}

bool MacSchreibtisch::sitzungsbus() const
{
    return sitzung_();
}

Schreibtischauskunft::Mitteilungsdienst MacSchreibtisch::mitteilungsdienst() const
{
    using Zustand = Mitteilungsdienst::Zustand;
    if (!sitzung_()) {
        return {.zustand = Zustand::Keiner};
    }
    return {.zustand = Zustand::Laeuft, .name = u"Mitteilungszentrale"_s};
}

Schreibtischauskunft::Leiste MacSchreibtisch::leiste() const
{
    return sitzung_() ? Leiste::StatusNotifier : Leiste::Keine;
}

Schreibtischauskunft::Anmeldeeintrag MacSchreibtisch::anmeldeeintrag() const
{
    constexpr qint64 groesster = 1 << 16; // bytes; far more than any agent has
    Anmeldeeintrag lage{.datei = agentpfad(heim_)};
    lage.da = QFileInfo::exists(lage.datei);
    const auto inhalt = gewoehnlichLesen(lage.datei, groesster);
    if (!inhalt) {
        return lage;
    }
    const Agentdatei agent = agentLesen(*inhalt);
    lage.abgeschaltet = agent.abgeschaltet ? u"Disabled"_s : QString();
    lage.programm = agent.programm;
    const QFileInfo programm(agent.programm);
    lage.ausfuehrbar = programm.isAbsolute() && programm.isFile() && programm.isExecutable();
    return lage;
}

} // namespace kalvaro
