#pragma once

#include <QObject>

class QAbstractButton;
class QWidget;

namespace kalvaro {

// What Return and Enter do in one window, the same on every desktop: on a button or link they press
// it; anywhere else, check boxes and fields included, they press the default button. Nothing
// happens while the window itself has the keyboard, which is where the focus rests when what had it
// is gone. A key that is held presses once, and Escape cancels once.
//
// Where dialogues are laid out as on a Mac, Return always belongs to the default button.
class Eingabe final : public QObject
{
    Q_OBJECT

public:
    // Belongs to `fenster`, and holds for it and for what in it takes the keyboard by now.
    Eingabe(QWidget &fenster, QAbstractButton &vorgabe);

protected:
    bool eventFilter(QObject *objekt, QEvent *event) override;

private:
    [[nodiscard]] QAbstractButton *gemeint(QObject *ort) const;

    QWidget &fenster_;
    QAbstractButton &vorgabe_;
};

} // namespace kalvaro
