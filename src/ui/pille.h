#pragma once

#include "ui/beschriftung.h"
#include "ui/unterlage.h"

namespace kalvaro {

// A small rounded badge. Hidden while its text is empty, as it is at first.
class Pille : public QWidget, public Unterlage
{
    Q_OBJECT

public:
    explicit Pille(QWidget *parent = nullptr);

    void setzen(const QString &inhalt, Farbton schrift, Farbton grund);

    [[nodiscard]] Beschriftung *label() const { return label_; }
    [[nodiscard]] Farbton fuellung() const { return fuellung_; }
    [[nodiscard]] QColor grundfarbe() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Beschriftung *const label_;
    Farbton fuellung_ = Farbe::durchsichtig;
};

} // namespace kalvaro
