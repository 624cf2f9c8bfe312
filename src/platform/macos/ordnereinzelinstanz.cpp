#include "platform/macos/ordnereinzelinstanz.h"

#include "foundation/protokoll.h"
#include "platform/macos/endesignale.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

constexpr auto frist = 3s; // for another one to take what this one wants

// Between our own starts.
QByteArray wort(std::optional<Wunsch> wunsch)
{
    if (!wunsch) {
        return "nichts";
    }
    switch (*wunsch) {
    case Wunsch::Oeffnen:
        break;
    case Wunsch::Abgleichen:
        return "abgleichen";
    case Wunsch::Beenden:
        return "beenden";
    case Wunsch::Hintergrund:
        return "hintergrund";
    }
    return "oeffnen";
}

// A start of another version may say what this one does not know; it wants the window then.
std::optional<Wunsch> wunschDes(const QByteArray &gesagt)
{
    for (const Wunsch wunsch : {Wunsch::Abgleichen, Wunsch::Beenden, Wunsch::Hintergrund}) {
        if (gesagt == wort(wunsch)) {
            return wunsch;
        }
    }
    return gesagt == wort({}) ? std::nullopt : std::optional(Wunsch::Oeffnen);
}

} // namespace

OrdnerEinzelinstanz::OrdnerEinzelinstanz(QString ordner)
    : ordner_(std::move(ordner))
{
}

OrdnerEinzelinstanz::~OrdnerEinzelinstanz() = default;

Belegung OrdnerEinzelinstanz::belegen(std::optional<Wunsch> wunsch)
{
    constexpr auto kurz = 5; // milliseconds; a holder may just be opening its socket or ending
    sperre_ = std::make_unique<Ordnersperre>(
        ordner_, [this](const QByteArray &gesagt) { return bitten(wunschDes(gesagt)); });
    const QDeadlineTimer bis(frist);
    do {
        switch (sperre_->nehmen()) {
        case Ordnersperre::Stand::Gehalten:
            return ersteWerden();
        case Ordnersperre::Stand::Unmoeglich:
            protokoll(u"Keine Sperre in %1 möglich"_s.arg(ordner_));
            return ersteWerden();
        case Ordnersperre::Stand::Vergeben:
            break;
        }
        if (sperre_->fragen(wort(wunsch), bis) == Ordnersperre::Antwort::Angenommen) {
            return Belegung::Uebergeben;
        }
        QThread::msleep(kurz);
    } while (!bis.hasExpired());
    return Belegung::Stumm;
}

Belegung OrdnerEinzelinstanz::ersteWerden()
{
    erste_ = true;
    qApp->installEventFilter(this);
    return Belegung::Erste;
}

void OrdnerEinzelinstanz::beiWunsch(std::function<void(Wunsch)> ruf)
{
    ruf_ = std::move(ruf);
    if (ruf_) {
        for (const Wunsch wunsch : std::exchange(versaeumt_, {})) {
            QMetaObject::invokeMethod(
                this, [this, wunsch] { ausfuehren(wunsch); }, Qt::QueuedConnection);
        }
    }
}

bool OrdnerEinzelinstanz::bitten(std::optional<Wunsch> wunsch)
{
    if (endet_ || Endesignale::wartet()) {
        return false;
    }
    if (wunsch == Wunsch::Beenden) {
        endeErwarten();
    }
    if (wunsch) {
        QMetaObject::invokeMethod(
            this, [this, wunsch] { ausfuehren(*wunsch); }, Qt::QueuedConnection);
    }
    return true;
}

bool OrdnerEinzelinstanz::eventFilter(QObject * /*wer*/, QEvent *was)
{
    if (was->type() == QEvent::Quit) {
        endeErwarten();
    }
    return false;
}

// From here on nothing is promised that the end would break. Somebody may refuse to end, though;
// then the event loop still runs later.
void OrdnerEinzelinstanz::endeErwarten()
{
    constexpr auto dochNicht = 100ms;
    endet_ = true;
    sperre_->ruhen(true);
    QTimer::singleShot(dochNicht, this, [this] {
        endet_ = false;
        sperre_->ruhen(false);
    });
}

void OrdnerEinzelinstanz::ausfuehren(Wunsch wunsch)
{
    if (ruf_) {
        ruf_(wunsch);
    } else {
        versaeumt_.push_back(wunsch);
    }
}

} // namespace kalvaro
