#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace kalvaro {

// Hears SIGTERM, SIGINT and SIGHUP and passes each on to the event loop. The process lasts 0.7 s at
// the longest from then on. One at a time.
class Signale final : public QObject
{
    Q_OBJECT

public:
    explicit Signale(std::function<void()> ende);
    ~Signale() override;

private:
    QSocketNotifier *hoerer_ = nullptr;
};

// Whether such a signal has come that the event loop has not seen yet.
[[nodiscard]] bool endesignalWartet();

} // namespace kalvaro
