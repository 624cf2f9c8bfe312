// What an answer of the server means.

#include "assessment/bewerten.h"
#include "assessment/startpruefung.h"
#include "fuzz/muss.h"

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QJsonValue antwort = json(bytes(daten, anzahl));
    const Bewertung b = antwortBewerten(antwort);
    muss(!b.titel.isEmpty(), "a verdict has a headline");
    muss(!b.offline, "an answer is not offline");
    muss(b.neueVersion.has_value() == b.updateAdresse.has_value(), "both of the offer or neither");
    if (b.updateAdresse) {
        muss(b.updateAdresse->startsWith(u"https://"), "an update has a secure address");
        const auto url = updateUrl(*b.updateAdresse);
        muss(!url || url->isValid(), "an address is valid or none");
    }
    muss(b.startbar || b.art != Art::Gut, "what is good lets rekordbox start");
    const Startpruefung p = standPruefen(antwort);
    muss(!p.hinweis || !p.hinweis->isEmpty(), "a remark says something");
    return 0;
}
