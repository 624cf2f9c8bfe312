#pragma once

#include "ui/beschriftung.h"

#include <QCheckBox>
#include <QPushButton>

#include <QFocusEvent>
#include <QMouseEvent>

#include <functional>

namespace kalvaro {

// A button that shows its focus only to those who move it with the keyboard. What it has to cut of
// its title stands in its tool tip.
template<typename Knopf>
class Tastaturknopf : public Knopf
{
public:
    using Knopf::Knopf;

    [[nodiscard]] bool fokusSichtbar() const { return mitTasten_ && this->hasFocus(); }

    // Whether the focus came, or last came, by the keyboard.
    [[nodiscard]] bool mitTastenErreicht() const { return mitTasten_; }

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

    // Also one that has had the focus already.
    void mousePressEvent(QMouseEvent *event) override
    {
        mitTasten_ = false;
        this->update();
        Knopf::mousePressEvent(event);
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip && hinweis_.isEmpty()) {
            const bool gekuerzt = this->width() < this->sizeHint().width();
            this->setToolTip(gekuerzt ? alsHinweis(this->accessibleName()) : QString());
        }
        return Knopf::event(event);
    }

    // What the tool tip says in place of a title that is cut; empty for that.
    void hinweisSetzen(const QString &hinweis)
    {
        hinweis_ = hinweis;
        this->setToolTip(hinweis);
    }

private:
    bool mitTasten_ = false;
    QString hinweis_;
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

    // What it does is under way: `warum` says so, empty ends it. Meanwhile pressing it does
    // nothing, and it looks and reads as disabled, yet it keeps the keyboard.
    void setBeschaeftigt(const QString &warum);
    [[nodiscard]] bool beschaeftigt() const { return beschaeftigt_; }

    // On either side of the text, for the focus ring. Whoever lines the text up with something else
    // leaves that much less.
    static constexpr int ringplatz = 3;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool hitButton(const QPoint &ort) const override;

private:
    [[nodiscard]] bool wirkt() const { return isEnabled() && !beschaeftigt_; }

    bool beschaeftigt_ = false;
};

// The one large button of the window: filled with the accent when pressing it does something, grey
// when not.
class Startknopf : public Tastaturknopf<QPushButton>
{
    Q_OBJECT

public:
    explicit Startknopf(const QString &titel, QWidget *parent = nullptr);

    // It can be pressed, but for now to no effect: `warum` says why, in its tool tip. Empty ends
    // it.
    void setWirkungslos(const QString &warum);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool wirkungslos_ = false;
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

// A link with `titel` that calls `aktion` while `ziel` lives and it is not busy; without `ziel` it
// does nothing.
[[nodiscard]] Verweis *verweis(const QString &titel, QObject *ziel = nullptr,
                               std::function<void()> aktion = {});

} // namespace kalvaro
