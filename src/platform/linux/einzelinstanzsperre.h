#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <map>
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

    enum class Antwort {
        Angenommen, // the holder's event loop took the message
        Niemand,    // nobody listens, or whoever did has ended without taking it
        Stumm,      // somebody has it and says nothing
    };

    // `ordner` is created where it is missing. `angekommen` receives what another process sent,
    // from the event loop, and tells whether it takes it. After one that it does not, it rests.
    Einzelinstanzsperre(const QString &ordner, std::function<bool(const QByteArray &)> angekommen);
    ~Einzelinstanzsperre() override;

    [[nodiscard]] Stand nehmen();

    // Gives `nachricht` (64 KiB at most) to the holder and waits for its answer until `bis`.
    [[nodiscard]] Antwort fragen(const QByteArray &nachricht, const QDeadlineTimer &bis) const;

    // While it rests, the holder lets all who come wait. When it ends like that, they hear of it at
    // once, and that nobody took what they sent.
    void ruhen(bool ja);

private:
    void horchen();
    void annehmen();
    void lesen(int gast);
    void verabschieden(int gast);

    const QByteArray ordner_;
    const std::function<bool(const QByteArray &)> angekommen_;
    int sperre_ = -1;
    int tuer_ = -1;
    bool ruht_ = false;
    std::unique_ptr<QSocketNotifier> horcher_;
    std::map<int, std::unique_ptr<QSocketNotifier>> gaeste_;
};

} // namespace kalvaro
