#pragma once

#include "ui/beschriftung.h"

namespace kalvaro {

// A figure whose digits all take the same width, so that it does not dance when it changes. Shrinks
// rather than being cut.
class Tabellenzahl : public Beschriftung
{
    Q_OBJECT

public:
    explicit Tabellenzahl(const QString &inhalt = {}, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace kalvaro
