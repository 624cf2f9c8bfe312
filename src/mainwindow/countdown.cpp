#include "mainwindow/countdown.h"

#include "ui/ansage.h"
#include "ui/beschriftung.h"
#include "ui/knoepfe.h"

#include <QHBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

Countdown::Countdown(Uhr &zeit, QWidget *parent)
    : QWidget(parent)
    , uhr_(zeit)
    , lblCountdown_(beschriftung({}, 12.5))
    , knCountdown_(verweis(u"Abbrechen"_s, this, [this] { abbrechen(); }))
{
    setObjectName(u"countdown"_s);
    lblCountdown_->setObjectName(u"lblCountdown"_s);
    knCountdown_->setObjectName(u"knCountdown"_s);
    auto *const zeile = new QHBoxLayout(this);
    zeile->setContentsMargins(0, 0, 0, 0);
    zeile->setSpacing(6 - Verweis::ringplatz);
    zeile->addSpacing(Verweis::ringplatz); // margins would not be mirrored
    zeile->addStretch();
    zeile->addWidget(lblCountdown_);
    zeile->addWidget(knCountdown_);
    zeile->addStretch();
    knCountdown_->hide();
    hide();
}

void Countdown::start(const QString &art, qint64 sekunden)
{
    countdownArt_ = art;
    rest_ = sekunden;
    countdownText();
    takt_ = uhr_.alle(Sekunden(1), [this] { uhrTick(); });
    show();
    ansagen(*this, u"rekordbox startet in %1 s"_s.arg(rest_));
}

void Countdown::countdownText()
{
    // Told once; the numbers that follow stay silent.
    const QString inhalt = u"rekordbox startet in %1 s  ·"_s.arg(rest_);
    if (lblCountdown_->text().isEmpty()) {
        lblCountdown_->textSetzen(inhalt);
    } else {
        lblCountdown_->textLautlosSetzen(inhalt);
    }
    knCountdown_->show();
}

void Countdown::uhrTick()
{
    --rest_;
    if (rest_ >= 1) {
        countdownText();
        return;
    }
    const QString art = countdownArt_.value_or(QString());
    stopp();
    Q_EMIT abgelaufen(art);
}

void Countdown::abbrechen()
{
    if (countdownArt_) {
        ansagen(*this, u"Start von rekordbox abgebrochen"_s);
    }
    stopp();
}

void Countdown::stopp()
{
    takt_.reset();
    countdownArt_.reset();
    lblCountdown_->textSetzen({});
    if (window()->focusWidget() == knCountdown_) {
        Q_EMIT gibtFokusAb(knCountdown_->mitTastenErreicht());
    }
    knCountdown_->hide();
    hide();
}

} // namespace kalvaro
