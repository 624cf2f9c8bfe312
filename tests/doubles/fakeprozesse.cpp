#include "doubles/fakeprozesse.h"

namespace kalvaro {

void FakeProzesse::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    gefragt.append(name);
    offen_.emplace_back(new Einmalruf<qsizetype>(besitzer, std::move(fertig)), laufend.value(name));
    if (!zoegert) {
        offen_.back().first->antworten(offen_.back().second);
        offen_.pop_back();
    }
}

void FakeProzesse::antworten()
{
    for (const auto &[ruf, zahl] : std::exchange(offen_, {})) {
        if (ruf) {
            ruf->antworten(zahl);
        }
    }
}

} // namespace kalvaro
