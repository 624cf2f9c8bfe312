#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>

namespace kalvaro {

// "Only one of us" by means of a folder: whoever holds the lock on a file there is the one, and a
// socket beside it takes messages from the others. The kernel drops the lock with the process,
// however that ends; what is left of the socket is cleared away by the next holder.
class Einzelinstanzsperre : public QObject
{
    Q_OBJECT

public:
    enum class Stand {
        Gehalten,   // we are the one, until this object goes
        Vergeben,   // another process is
        Unmoeglich, // the folder does not allow for it
    };

    // `ordner` is created where it is missing. `angekommen` receives what another process sent,
    // from the event loop.
    Einzelinstanzsperre(const QString &ordner, std::function<void(const QByteArray &)> angekommen);
    ~Einzelinstanzsperre() override;

    [[nodiscard]] Stand nehmen();

    // Leaves `nachricht` (64 KiB at most) with the holder, which may be busy: does not wait for it.
    // False when nobody takes messages.
    [[nodiscard]] bool senden(const QByteArray &nachricht) const;

private:
    void horchen();
    void lesen();

    const QByteArray ordner_;
    const std::function<void(const QByteArray &)> angekommen_;
    int sperre_ = -1;
    int briefkasten_ = -1;
    std::unique_ptr<QSocketNotifier> horcher_;
};

} // namespace kalvaro
