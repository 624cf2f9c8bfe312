#pragma once

#include "doubles/mitteilung.h"
#include "mainwindow/treiber.h"

#include <QList>
#include <QStringList>

namespace kalvaro {

// A driver that remembers what it was asked for and answers when the test says so.
class Treiberdouble final : public Treiber
{
    Q_OBJECT

public:
    using Mitteilung = kalvaro::Mitteilung;

    void abgleich(const QString &anlass, std::function<void(const Bewertung &)> fertig) override;
    void mitteilen(const QString &titel, const QString &inhalt,
                   const std::optional<QString> &ziel) override;
    void beenden() override { ++beendet; }

    // Answers the oldest sync that still waits.
    void beantworten(const Bewertung &b);

    [[nodiscard]] qsizetype haengend() const { return wartende.size(); }

    QStringList anlaesse; // of the syncs, in order
    QList<Mitteilung> mitteilungen;
    int beendet = 0; // how often the end of the program was asked for

private:
    QList<std::function<void(const Bewertung &)>> wartende;
};

} // namespace kalvaro
