#pragma once

#include "ui/farbe.h"
#include "ui/unterlage.h"

#include <QVariantAnimation>
#include <QWidget>

namespace kalvaro {

// A rounded card. Its soft shadow falls on the Grund that it lies on, which draws it. Where the
// palette gives cards nearly the window's colour they have an edge.
class Karte : public QWidget, public Unterlage
{
    Q_OBJECT

public:
    explicit Karte(QWidget *parent = nullptr);

    // The colour laid over the card's own; changes over 150 ms unless less motion is wanted.
    void setFuellung(Farbton ton);
    [[nodiscard]] Farbton fuellung() const { return fuellung_; }

    // Its own with the fill over it.
    [[nodiscard]] QColor grundfarbe() const override;

    // Puts `inhalt` into the card, `rand` from its sides, `oben` from top and bottom.
    void einsetzen(QWidget *inhalt, int rand = 18, int oben = 16);

    // Draws the shadow of a card that occupies `platz`.
    static void schattenMalen(QPainter &maler, const QRectF &platz);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Farbton fuellung_ = Farbe::durchsichtig;
    QVariantAnimation wechsel_; // of the colour on screen, while it changes
};

// The background of a window's content, in the window's colour, with the shadows of its cards.
class Grund : public QWidget
{
    Q_OBJECT

public:
    explicit Grund(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// A hairline between or above contents. All of them are equally wide, whatever the screen's scale.
class Haarlinie : public QWidget
{
    Q_OBJECT

public:
    explicit Haarlinie(Qt::Orientation richtung, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Qt::Orientation richtung_;
};

} // namespace kalvaro
