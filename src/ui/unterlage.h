#pragma once

#include <QColor>

class QWidget;

namespace kalvaro {

// A widget with a colour of its own behind what it holds.
class Unterlage
{
public:
    virtual ~Unterlage() = default;
    Unterlage(const Unterlage &) = delete;
    Unterlage &operator=(const Unterlage &) = delete;

    // The opaque colour that it comes to show.
    [[nodiscard]] virtual QColor grundfarbe() const = 0;

protected:
    Unterlage() = default;
};

// The opaque colour that `widget` stands on: that of the nearest Unterlage around it, else the
// window's.
[[nodiscard]] QColor untergrund(const QWidget &widget);

} // namespace kalvaro
