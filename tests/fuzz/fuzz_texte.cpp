// The sentences that tell what changed.

#include "assessment/aenderungstexte.h"
#include "fuzz/muss.h"

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QJsonValue wert = json(bytes(daten, anzahl));
    const QString aenderungen = menge(wert);
    muss(!aenderungen.startsWith(u' ') && !aenderungen.endsWith(u' '), "no blanks around");
    muss(!richtungen(wert, false).isEmpty(), "a direction is told");
    muss(!richtungen(wert, true).isEmpty(), "a direction is told in the dry run");
    const auto hinweise = andereHinweise(wert);
    muss(!hinweise || !hinweise->isEmpty(), "a remark says something");
    return 0;
}
