#pragma once

#include "ui/beschriftung.h"

namespace kalvaro {

// A figure whose digits all take the same width, so that it does not dance when it changes. Shrinks
// to half its size before it is cut with "…".
class Tabellenzahl : public Beschriftung
{
    Q_OBJECT

public:
    explicit Tabellenzahl(const QString &inhalt = {}, QWidget *parent = nullptr);

    // Figures that stand side by side: all of them shrink as far as the widest must. The list must
    // live as long as the figure is painted.
    void setReihe(const QList<Tabellenzahl *> *reihe) { reihe_ = reihe; }

    // The proportion of its size at which the figure fits into its place, from 0.5 to 1.
    [[nodiscard]] double passend() const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QList<Tabellenzahl *> *reihe_ = nullptr;
};

} // namespace kalvaro
