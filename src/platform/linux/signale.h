#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace kalvaro {

// Hears SIGTERM, SIGINT and SIGHUP and passes each on to the event loop. One at a time.
class Signale final : public QObject
{
    Q_OBJECT

public:
    explicit Signale(std::function<void()> ende);
    ~Signale() override;

private:
    QSocketNotifier *hoerer_ = nullptr;
};

// Ends the process `millisekunden` from now at the latest, with status 0, whatever it then waits
// for: QtNetwork's look-ups of host names cannot be cancelled and would hold up the end.
void endeErzwingen(int millisekunden);

} // namespace kalvaro
