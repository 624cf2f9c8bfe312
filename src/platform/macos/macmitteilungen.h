#pragma once

#include "platform/mitteilungen.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace kalvaro {

// What the notification centre of macOS takes and tells, apart from what the program makes of it.
struct Mitteilungszugang
{
    // Asks once whether alerts and sounds are allowed; the answer is the system's business.
    std::function<void()> erlaubnisErbitten;

    // Posts at once, without a sound. `gescheitert` comes with the system's reason, from any
    // thread; never where it was taken.
    std::function<void(const QString &titel, const QString &inhalt,
                       const std::optional<QString> &ziel,
                       std::function<void(const QString &grund)> gescheitert)>
        zeigen;

    // Shows banners also while the program is in front, and calls `geklickt` with the target of
    // each clicked one that has any, from any thread.
    std::function<void(std::function<void(const QString &ziel)> geklickt)> empfangen;

    // By UNUserNotificationCenter. A program outside of a bundle has none: there every posting
    // fails, and the other two do nothing.
    [[nodiscard]] static Mitteilungszugang desSystems();
};

// Notifications by the notification centre of macOS. Needs a QCoreApplication.
class MacMitteilungen final : public QObject, public Mitteilungen
{
    Q_OBJECT

public:
    explicit MacMitteilungen(Mitteilungszugang zugang);

    // Takes clicks from now on, also the one that has started the program: it is told of before the
    // application has finished launching. They are kept until beiKlick().
    void empfangen();

    void mitteilen(const QString &titel, const QString &inhalt,
                   const std::optional<QString> &ziel) override;

    // The first call asks the user for the permission.
    void beiKlick(std::function<void(const QString &ziel)> geklickt) override;

private:
    void angekommen(const QString &ziel);

    const Mitteilungszugang zugang_;
    std::function<void(const QString &)> klick_;
    QStringList versaeumt_; // clicks that came when there was nobody to call
    bool empfaengt_ = false;
    bool gefragt_ = false; // for the permission
};

} // namespace kalvaro
