#include "verlauf.h"

#include <algorithm>
#include <random>

namespace kalvaro {

namespace {

// Each event as often as it weighs.
std::vector<int> lostopf()
{
    std::vector<int> lose;
    const auto &alle = alleEreignisse();
    for (size_t i = beginne; i < alle.size(); ++i) {
        lose.insert(lose.end(), static_cast<size_t>(alle[i].gewicht), static_cast<int>(i));
    }
    return lose;
}

} // namespace

Verlauf verlauf(quint64 nummer, int laenge)
{
    static const std::vector<int> lose = lostopf();
    // Not a distribution of the standard library: those differ from one to the next.
    std::mt19937_64 zufall(nummer);
    Verlauf ergebnis{static_cast<int>(zufall() % beginne)};
    ergebnis.reserve(static_cast<size_t>(laenge) + 1);
    for (int i = 0; i < laenge; ++i) {
        ergebnis.push_back(lose[zufall() % lose.size()]);
    }
    return ergebnis;
}

QStringList alsZeilen(const Verlauf &verlauf)
{
    QStringList zeilen;
    for (const int ereignis : verlauf) {
        zeilen.append(alleEreignisse().at(static_cast<size_t>(ereignis)).zeile);
    }
    return zeilen;
}

std::optional<Verlauf> ausZeilen(const QString &zeilen)
{
    Verlauf ergebnis;
    const auto &alle = alleEreignisse();
    for (const QString &roh : zeilen.split(u'\n')) {
        const QString zeile = roh.left(roh.indexOf(u'#')).trimmed();
        if (zeile.isEmpty()) {
            continue;
        }
        const auto treffer = std::find_if(alle.begin(), alle.end(),
                                          [&](const Ereignis &e) { return e.zeile == zeile; });
        if (treffer == alle.end()) {
            return std::nullopt;
        }
        ergebnis.push_back(static_cast<int>(treffer - alle.begin()));
    }
    return ergebnis;
}

} // namespace kalvaro
