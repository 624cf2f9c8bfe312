#include "platform/macos/launchagent.h"

#include "foundation/konstanten.h"
#include "platform/macos/agentdatei.h"

#include <QFileInfo>

#include <memory>
#include <plist/plist.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

plist_t knoten(const QString &text)
{
    return plist_new_string(text.toUtf8().constData());
}

} // namespace

QString agentpfad(const QString &heim)
{
    return heim + u"/Library/LaunchAgents/"_s + KENNUNG + u".plist"_s;
}

LaunchAgent::LaunchAgent(QString programm, const QString &heim)
    : Startdatei(agentpfad(heim))
    , programm_(programm.isEmpty() ? u"/Applications/kalvaro.app/Contents/MacOS/kalvaro"_s
                                   : std::move(programm))
{
}

QByteArray LaunchAgent::inhalt() const
{
    const std::unique_ptr<void, void (*)(plist_t)> agent(plist_new_dict(), plist_free);
    plist_dict_set_item(agent.get(), "Label", knoten(KENNUNG));
    const plist_t argumente = plist_new_array();
    plist_array_append_item(argumente, knoten(programm_));
    plist_array_append_item(argumente, knoten(u"--hintergrund"_s));
    plist_dict_set_item(agent.get(), "ProgramArguments", argumente);
    plist_dict_set_item(agent.get(), "RunAtLoad", plist_new_bool(1));
    plist_dict_set_item(agent.get(), "ProcessType", knoten(u"Interactive"_s));
    plist_dict_set_item(agent.get(), "LimitLoadToSessionType", knoten(u"Aqua"_s));

    char *xml = nullptr;
    uint32_t laenge = 0;
    plist_to_xml(agent.get(), &xml, &laenge);
    QByteArray bytes(xml, static_cast<qsizetype>(laenge));
    PLIST_FREI(xml);
    return bytes;
}

// A program that was opened where it was downloaded to runs from a place that is gone after it
// ("App Translocation"); so does one that has been moved since.
bool LaunchAgent::ueberholt(const QByteArray &vorhanden) const
{
    const Agentdatei agent = agentLesen(vorhanden);
    return agent.kennung == KENNUNG && !agent.programm.isEmpty() &&
           !QFileInfo::exists(agent.programm) && QFileInfo::exists(programm_);
}

} // namespace kalvaro
