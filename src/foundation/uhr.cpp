#include "foundation/uhr.h"

#include <QTimer>

namespace kalvaro {

namespace {

class Systemwecker final : public Wecker
{
public:
    Systemwecker(Sekunden dauer, bool einmal, std::function<void()> ruf)
        : timer_(new QTimer)
    {
        timer_->setSingleShot(einmal);
        // Limits are exact, and so are ticks that people watch. A long tick may be bundled with
        // others to save power, which moves it by up to a twentieth.
        const bool genau = einmal || dauer < Sekunden(2);
        timer_->setTimerType(genau ? Qt::PreciseTimer : Qt::CoarseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, std::move(ruf));
        timer_->start(std::chrono::ceil<std::chrono::milliseconds>(dauer));
    }

    ~Systemwecker() override
    {
        // The call may be running right now, so the timer goes later.
        timer_->stop();
        timer_->deleteLater();
    }

private:
    QTimer *const timer_;
};

} // namespace

QDateTime Systemuhr::jetzt() const
{
    return QDateTime::currentDateTime();
}

std::chrono::milliseconds Systemuhr::laufzeit() const
{
    return std::chrono::floor<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

Weckruf Systemuhr::nach(Sekunden dauer, std::function<void()> ruf)
{
    return std::make_unique<Systemwecker>(dauer, true, std::move(ruf));
}

Weckruf Systemuhr::alle(Sekunden abstand, std::function<void()> ruf)
{
    return std::make_unique<Systemwecker>(abstand, false, std::move(ruf));
}

} // namespace kalvaro
