#pragma once

#include "foundation/uhr.h"

#include <QWidget>

#include <optional>

namespace kalvaro {

class Beschriftung;
class Verweis;

// The row that counts down to something and lets the user cancel it. Takes no room while it rests.
class Countdown : public QWidget
{
    Q_OBJECT

public:
    explicit Countdown(Uhr &zeit, QWidget *parent = nullptr);

    // Counts `sekunden` down to `art`, which names what happens then. One that runs is replaced.
    void start(const QString &art, qint64 sekunden);

    // Stops it; safe to call when nothing runs.
    void stopp();

    // The same, told to screen readers where one ran: what it would have done does not happen.
    void abbrechen();

    // What the running countdown will do; absent while it rests.
    [[nodiscard]] const std::optional<QString> &countdownArt() const { return countdownArt_; }

Q_SIGNALS:
    // The countdown has come to its end and rests already.
    void abgelaufen(const QString &art);

    // The link is about to go and has the keyboard, which needs another place; `mitTasten` when it
    // was brought here by the keyboard.
    void gibtFokusAb(bool mitTasten);

private:
    void countdownText();
    void uhrTick();

    Uhr &uhr_;
    Beschriftung *const lblCountdown_;
    Verweis *const knCountdown_;

    std::optional<QString> countdownArt_;
    Weckruf takt_; // set exactly while countdownArt_ is
    qint64 rest_ = 0;
};

} // namespace kalvaro
