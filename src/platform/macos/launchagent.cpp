#include "platform/macos/launchagent.h"

#include "foundation/konstanten.h"

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

LaunchAgent::LaunchAgent(QString programm, const QString &heim)
    : Startdatei(heim + u"/Library/LaunchAgents/"_s + KENNUNG + u".plist"_s)
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

} // namespace kalvaro
