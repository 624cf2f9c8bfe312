#pragma once

#include <QStringList>

#include <optional>
#include <vector>

namespace kalvaro {

class Welt;

// One thing that can happen in a simulated world, and the line that stands for it.
struct Ereignis
{
    QString zeile;
    int gewicht; // how often it is drawn, compared with the others
    void (Welt::*tat)(int wert);
    int wert;
};

// All that can happen. The first ones say how a world begins; as any but the first event of a
// history they do nothing.
[[nodiscard]] const std::vector<Ereignis> &alleEreignisse();
inline constexpr int beginne = 8;

// A history: events by their places in alleEreignisse().
using Verlauf = std::vector<int>;

// The history number `nummer`, always the same one: how it begins, and `laenge` events.
[[nodiscard]] Verlauf verlauf(quint64 nummer, int laenge);

// One line for each event, and back. What follows a '#' is a remark, empty lines do not count;
// nothing when a line names no event.
[[nodiscard]] QStringList alsZeilen(const Verlauf &verlauf);
[[nodiscard]] std::optional<Verlauf> ausZeilen(const QString &zeilen);

} // namespace kalvaro
