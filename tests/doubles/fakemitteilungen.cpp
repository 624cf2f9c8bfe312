#include "doubles/fakemitteilungen.h"

namespace kalvaro {

void FakeMitteilungen::mitteilen(const QString &titel, const QString &inhalt,
                                 const std::optional<QString> &ziel)
{
    alle.append({titel, inhalt, ziel});
}

void FakeMitteilungen::beiKlick(std::function<void(const QString &ziel)> geklickt)
{
    ruf = std::move(geklickt);
}

void FakeMitteilungen::klicken(qsizetype nummer) const
{
    const auto &ziel = alle.at(nummer).ziel;
    if (ziel && ruf) {
        ruf(*ziel);
    }
}

} // namespace kalvaro
