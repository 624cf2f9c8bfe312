#pragma once

#include "ui/farbe.h"

#include <QIcon>
#include <QWidget>

namespace kalvaro {

// The drawing named `name` as a mask in `farbe`, `groesse` logical pixels square, sharp at the
// device pixel ratio `faktor`; null when there is no such drawing.
[[nodiscard]] QPixmap symbolbild(const QString &name, int groesse, const QColor &farbe,
                                 double faktor);

// The program's own icon.
[[nodiscard]] QIcon programmsymbol();

// Shows a drawing in a tint that follows the appearance; nothing while the name is empty.
class Zeichen : public QWidget
{
    Q_OBJECT

public:
    explicit Zeichen(int groesse, QWidget *parent = nullptr);

    // `beschreibung` is for screen readers.
    void setzen(const QString &name, Farbton ton, const QString &beschreibung);

    [[nodiscard]] const QString &name() const { return name_; }
    [[nodiscard]] QColor toenung() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int groesse_;
    QString name_;
    Farbton ton_ = Farbe::schrift;
};

} // namespace kalvaro
