#pragma once

#include "ui/beschriftung.h"

namespace kalvaro {

// A small rounded badge. Hidden while its text is empty, as it is at first.
class Pille : public QWidget
{
    Q_OBJECT

public:
    explicit Pille(QWidget *parent = nullptr);

    void setzen(const QString &inhalt, Farbton schrift, Farbton grund);

    // The opaque colour behind the badge, on which its text must stay readable.
    void setUnterlage(const QColor &unterlage);

    [[nodiscard]] Beschriftung *label() const { return label_; }
    [[nodiscard]] Farbton fuellung() const { return fuellung_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void grundErneuern();

    Beschriftung *const label_;
    Farbton fuellung_ = Farbe::durchsichtig;
    QColor unterlage_;
};

} // namespace kalvaro
