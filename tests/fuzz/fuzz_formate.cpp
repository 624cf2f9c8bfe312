// Figures and times as text: eight bytes that are a number, eight that are a moment, then a time
// stamp.

#include "foundation/formate.h"
#include "foundation/klartext.h"
#include "fuzz/muss.h"

#include <algorithm>
#include <cstring>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    const QByteArray eingabe = bytes(daten, anzahl);
    double wert = 0;
    qint64 moment = 0;
    std::memcpy(&wert, eingabe.constData(),
                static_cast<std::size_t>(qMin<qsizetype>(eingabe.size(), 8)));
    const QByteArray weiter = eingabe.mid(8);
    std::memcpy(&moment, weiter.constData(),
                static_cast<std::size_t>(qMin<qsizetype>(weiter.size(), 8)));
    const QString stempel = QString::fromUtf8(weiter.mid(8));

    muss(!fZahl(wert).isEmpty(), "a number has a text");
    muss(!fGB(wert).isEmpty(), "a size has a text");
    constexpr qint64 jahrtausende = 300'000'000'000'000; // milliseconds
    const QDateTime jetzt = QDateTime::fromMSecsSinceEpoch(moment % jahrtausende);
    muss(!fZeit(jetzt.addSecs(-86'400), jetzt).isEmpty(), "a time has a text");
    const QString zeit = fZeit(stempel, jetzt);
    muss(stempel.isEmpty() ? zeit == u"–" : !zeit.isEmpty(), "a time stamp has a text");

    constexpr qsizetype laengstens = 20;
    const QString klar = klartext(stempel, laengstens);
    muss(klar.size() <= laengstens + 1, "plain text is cut");
    muss(std::none_of(klar.begin(), klar.end(), [](QChar z) { return z < u' '; }),
         "plain text controls nothing");
    return 0;
}
