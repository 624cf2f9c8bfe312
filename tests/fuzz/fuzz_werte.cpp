// The readers of JSON values: a path up to the first line feed, then the JSON.

#include "foundation/werte.h"
#include "fuzz/muss.h"

#include <cmath>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QByteArray eingabe = bytes(daten, anzahl);
    const qsizetype ende = eingabe.indexOf('\n');
    const QString weg = QString::fromUtf8(eingabe.first(qMax(ende, qsizetype{0})));
    const QJsonValue wert = json(eingabe.sliced(ende + 1));

    const QJsonValue gefunden = pfad(wert, weg);
    muss(pfad(gefunden, u"") == gefunden, "the empty path names the value itself");
    const QString als = text(wert, weg);
    muss(!gefunden.isString() || als == gefunden.toString(), "a string is read as it is");
    const auto z = zahl(wert, weg);
    muss(!z || std::isfinite(*z), "a number that is read is finite");
    muss(!gefunden.isDouble() || z == gefunden.toDouble(), "a number is read as it is");
    muss(!wahr(wert, weg) || gefunden.isBool() || gefunden.isDouble(), "only these are true");
    const double alle = summe(wert);
    muss(alle == summe(wert) || std::isnan(alle), "the sum is the same twice");
    return 0;
}
