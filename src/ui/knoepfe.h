#pragma once

#include <QCheckBox>
#include <QPushButton>

#include <functional>

namespace kalvaro {

// A text as a button's title: "&" would mark a shortcut, so it is doubled.
[[nodiscard]] QString knopftext(const QString &titel);

// A button that looks like a link.
class Verweis : public QPushButton
{
    Q_OBJECT

public:
    explicit Verweis(const QString &titel, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// The one large button of the window: filled with the accent when it can be pressed, grey when not.
class Startknopf : public QPushButton
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
class Haken : public QCheckBox
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
