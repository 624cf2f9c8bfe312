#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

class QLocalServer;
class QLocalSocket;

namespace kalvaro {

// "Only one of us" by means of a folder: whoever holds the lock on a file there is the one, and a
// local socket beside it, which only the user may use, takes messages from the others. The kernel
// drops the lock with the process, however that ends; what is left of the socket is cleared away by
// the next holder.
class Ordnersperre final : public QObject
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
    Ordnersperre(const QString &ordner, std::function<bool(const QByteArray &)> angekommen);
    ~Ordnersperre() override;

    [[nodiscard]] Stand nehmen();

    // Gives `nachricht`, a line without its end, to the holder and waits for its answer until
    // `bis`.
    [[nodiscard]] Antwort fragen(const QByteArray &nachricht, const QDeadlineTimer &bis) const;

    // While it rests, the holder lets all who come wait. When it ends like that, they hear of it at
    // once, and that nobody took what they sent.
    void ruhen(bool ja);

    // Where the socket lies: beside the lock, or where temporary files of the user do when an
    // address cannot hold a path that long.
    [[nodiscard]] static QString socketort(const QString &ordner);

private:
    void horchen();
    void annehmen();
    void lesen(QLocalSocket *gast);
    void verabschieden(QLocalSocket *gast);

    const QString ordner_;
    const std::function<bool(const QByteArray &)> angekommen_;
    int sperre_ = -1;
    bool ruht_ = false;
    std::unique_ptr<QLocalServer> tuer_;
    QSet<QLocalSocket *> gaeste_;
};

} // namespace kalvaro
