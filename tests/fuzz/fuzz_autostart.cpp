// The entry of the start at login.

#include "fuzz/muss.h"
#include "platform/linux/autostarteintrag.h"

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QByteArray inhalt = bytes(daten, anzahl);
    const Autostarteintrag eintrag = autostarteintragLesen(inhalt);
    const QString programm = eintrag.programm();
    muss(programm.isEmpty() || eintrag.kommando.contains(programm),
         "the program is one of its words");
    muss(programm.size() <= inhalt.size(), "a program is no longer than its file");
    return 0;
}
