// The account file, whatever stands in it.

#include "foundation/datenordner.h"
#include "foundation/konto.h"
#include "fuzz/muss.h"

#include <QFile>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    static const bool bereit = [] {
        eigenerDatenordner();
        ordnerAnlegen();
        return true;
    }();
    QFile kontodatei(Konto::kontodatei());
    muss(bereit && kontodatei.open(QIODevice::WriteOnly | QIODevice::Truncate),
         "a file to write to");
    kontodatei.write(bytes(daten, anzahl));
    kontodatei.close();

    const auto konto = Konto::laden();
    if (konto) {
        muss(!konto->geraet.isEmpty() && !konto->name.isEmpty() && !konto->server.isEmpty(),
             "an account is complete");
    } else {
        muss(konto.error().contains(u"konto.json"), "the error names the file");
    }
    return 0;
}
