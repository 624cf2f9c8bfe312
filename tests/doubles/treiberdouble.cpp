#include "doubles/treiberdouble.h"

namespace kalvaro {

void Treiberdouble::abgleich(const QString &anlass, std::function<void(const Bewertung &)> fertig)
{
    anlaesse.append(anlass);
    wartende.append(std::move(fertig));
}

void Treiberdouble::mitteilen(const QString &titel, const QString &inhalt,
                              const std::optional<QString> &ziel)
{
    mitteilungen.append({titel, inhalt, ziel});
}

void Treiberdouble::beantworten(const Bewertung &b)
{
    if (wartende.isEmpty()) {
        qFatal("No sync waits for an answer");
    }
    const auto fertig = wartende.takeFirst();
    fertig(b);
}

} // namespace kalvaro
