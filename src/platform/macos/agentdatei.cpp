#include "platform/macos/agentdatei.h"

#include "platform/plist.h"

#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString text(plist_t knoten)
{
    if (knoten == nullptr || plist_get_node_type(knoten) != PLIST_STRING) {
        return {};
    }
    char *wert = nullptr;
    plist_get_string_val(knoten, &wert);
    const std::unique_ptr<char, void (*)(void *)> halter(wert, std::free);
    return QString::fromUtf8(wert);
}

bool wahr(plist_t knoten)
{
    uint8_t wert = 0;
    if (knoten != nullptr && plist_get_node_type(knoten) == PLIST_BOOLEAN) {
        plist_get_bool_val(knoten, &wert);
    }
    return wert != 0;
}

} // namespace

// Our own reader comes first: it refuses what the library would take for too long or fall over.
Agentdatei agentLesen(const QByteArray &bytes)
{
    if (bytes.startsWith("bplist") || !plistText(bytes, u"Label")) {
        return {};
    }
    plist_t wurzel = nullptr;
    plist_from_xml(bytes.constData(), static_cast<uint32_t>(bytes.size()), &wurzel);
    const std::unique_ptr<void, void (*)(plist_t)> halter(wurzel, plist_free);
    if (wurzel == nullptr || plist_get_node_type(wurzel) != PLIST_DICT) {
        return {};
    }
    Agentdatei agent{.kennung = text(plist_dict_get_item(wurzel, "Label")),
                     .abgeschaltet = wahr(plist_dict_get_item(wurzel, "Disabled"))};
    const plist_t argumente = plist_dict_get_item(wurzel, "ProgramArguments");
    if (argumente != nullptr && plist_get_node_type(argumente) == PLIST_ARRAY &&
        plist_array_get_size(argumente) > 0) {
        agent.programm = text(plist_array_get_item(argumente, 0));
    }
    return agent;
}

} // namespace kalvaro
