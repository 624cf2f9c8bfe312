#pragma once

#include <QList>
#include <QWidget>

#include <functional>
#include <memory>

namespace kalvaro {

// What may happen to a control.
enum class Zustand { Ruhe, Ueberfahren, Gedrueckt, Fokus, Gesperrt };

// A window for one control, with a second place for the keyboard beside it.
class Buehne final : public QWidget
{
public:
    // Takes `teil`. Without a size it gets what it asks for; a height of 0 is that which it asks
    // for at the width.
    explicit Buehne(QWidget *teil, QSize platz = {});

    void versetzen(Zustand zustand);

    // Leads the keyboard to the control by the tabulator key.
    void mitTasten();

    [[nodiscard]] QImage bild();

private:
    QWidget *const teil_;
    QWidget *const daneben_;
};

// Has the pointer above `ort` of `widget`.
void zeigen(QWidget &widget, const QPoint &ort);

// Several pictures on one sheet, each with its name above it. What looks alike stands side by side,
// where a PNG finds it again.
class Bogen
{
public:
    void dazu(const QString &name, const QImage &bild);
    void neueReihe();
    [[nodiscard]] QImage bild() const;

private:
    struct Feld
    {
        QString name;
        QImage bild;

        [[nodiscard]] QSize groesse() const; // with its name
    };

    QList<QList<Feld>> reihen_{{}};
    int breite_ = 0; // of the row that is being filled
};

// A control for a sheet that shows each of them in each state, a row for each.
struct Muster
{
    std::function<QWidget *()> machen;
    QSize platz = {};
};
[[nodiscard]] QImage zustandsbogen(const QList<Muster> &muster, const QList<Zustand> &zustaende);

// Leads the keyboard through all places of a shown window, and shows each with its surroundings.
[[nodiscard]] QImage tastenrunde(QWidget &fenster);

} // namespace kalvaro
