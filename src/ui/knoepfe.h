#pragma once

#include "ui/beschriftung.h"

#include <QCheckBox>
#include <QPushButton>

#include <QFocusEvent>

#include <functional>

namespace kalvaro {

// A button that shows its focus only to those who move it with the keyboard. What it has to cut of
// its title stands in its tool tip.
template<typename Knopf>
class Tastaturknopf : public Knopf
{
public:
    using Knopf::Knopf;

protected:
    void focusInEvent(QFocusEvent *event) override
    {
        switch (event->reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            mitTasten_ = true;
            break;
        case Qt::MouseFocusReason:
        case Qt::OtherFocusReason:
            mitTasten_ = false;
            break;
        default:
            break; // the window came back: as it was
        }
        Knopf::focusInEvent(event);
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip) {
            const bool gekuerzt = this->width() < this->sizeHint().width();
            this->setToolTip(gekuerzt ? alsHinweis(this->accessibleName()) : QString());
        }
        return Knopf::event(event);
    }

    [[nodiscard]] bool fokusSichtbar() const { return mitTasten_ && this->hasFocus(); }

private:
    bool mitTasten_ = false;
};

// A text as a button's title: "&" would mark a shortcut, so it is doubled.
[[nodiscard]] QString knopftext(const QString &titel);

// Gives a button its title and, literally, its accessible name.
void titelSetzen(QAbstractButton &knopf, const QString &titel);

// A button that looks like a link.
class Verweis : public Tastaturknopf<QPushButton>
{
    Q_OBJECT

public:
    explicit Verweis(const QString &titel, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

// The one large button of the window: filled with the accent when it can be pressed, grey when not.
class Startknopf : public Tastaturknopf<QPushButton>
{
    Q_OBJECT

public:
    explicit Startknopf(const QString &titel, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// A check box whose text may have a second, quieter line; the box stands beside the first.
class Haken : public Tastaturknopf<QCheckBox>
{
    Q_OBJECT

public:
    explicit Haken(const QString &titel, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &ort) const override;
};

// A link with `titel` that calls `aktion` while `ziel` lives; without `ziel` it does nothing.
[[nodiscard]] Verweis *verweis(const QString &titel, QObject *ziel = nullptr,
                               std::function<void()> aktion = {});

} // namespace kalvaro
