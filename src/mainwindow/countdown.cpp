#include "mainwindow/countdown.h"

#include "ui/beschriftung.h"
#include "ui/knoepfe.h"

#include <QHBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

Countdown::Countdown(Uhr &zeit, QWidget *parent)
    : QWidget(parent)
    , uhr(zeit)
    , lblCountdown(beschriftung({}, 12.5))
    , knCountdown(verweis(u"Abbrechen"_s, this, [this] { stopp(); }))
{
    setObjectName(u"countdown"_s);
    lblCountdown->setObjectName(u"lblCountdown"_s);
    knCountdown->setObjectName(u"knCountdown"_s);
    auto *const zeile = new QHBoxLayout(this);
    zeile->setContentsMargins(0, 0, 0, 0);
    zeile->setSpacing(6);
    zeile->addStretch();
    zeile->addWidget(lblCountdown);
    zeile->addWidget(knCountdown);
    zeile->addStretch();
    knCountdown->hide();
    hide();
}

void Countdown::start(const QString &art, qint64 sekunden)
{
    countdownArt_ = art;
    rest = sekunden;
    countdownText();
    takt = uhr.alle(Sekunden(1), [this] { uhrTick(); });
    show();
}

void Countdown::countdownText()
{
    // Told once; the numbers that follow stay silent.
    const QString inhalt = u"rekordbox startet in %1 s  ·"_s.arg(rest);
    if (lblCountdown->text().isEmpty()) {
        lblCountdown->setText(inhalt);
    } else {
        lblCountdown->setTextLautlos(inhalt);
    }
    knCountdown->show();
}

void Countdown::uhrTick()
{
    --rest;
    if (rest >= 1) {
        countdownText();
        return;
    }
    const QString art = countdownArt_.value_or(QString());
    stopp();
    Q_EMIT abgelaufen(art);
}

void Countdown::stopp()
{
    takt.reset();
    countdownArt_.reset();
    lblCountdown->setText({});
    knCountdown->hide();
    hide();
}

} // namespace kalvaro
