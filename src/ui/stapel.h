#pragma once

#include <QList>
#include <QWidget>

#include <optional>

namespace kalvaro {

// A view that shows `inhalte` in a row or column with `abstand` between them. It becomes their
// parent. `ausrichtung` places each across the direction; without it they fill the breadth.
[[nodiscard]] QWidget *stapel(const QList<QWidget *> &inhalte, Qt::Orientation richtung,
                              int abstand = 8,
                              std::optional<Qt::Alignment> ausrichtung = std::nullopt);

} // namespace kalvaro
