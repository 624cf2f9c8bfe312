#pragma once

#include "foundation/uhr.h"
#include "platform/linux/dbusverbindung.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <functional>

namespace kalvaro {

// Tells when the computer wakes from sleep: PrepareForSleep(false) of
// org.freedesktop.login1.Manager (org.freedesktop.login1(5)) on the system bus. logind and the bus
// may come later, and go.
class Logindwache final : public QObject
{
    Q_OBJECT

public:
    // `adresse` is that of the system bus.
    Logindwache(Uhr &uhr, std::function<void()> aufgewacht, QString adresse = systembusAdresse());
    ~Logindwache() override;

private Q_SLOTS:
    void schlafWechselt(bool beginnt);
    void getrennt();

private:
    void neuVersuchen();
    void verbinden();
    [[nodiscard]] bool angeschlossen();
    void ordnerBeobachten();
    void spaeterWieder();

    Uhr &uhr_;
    const std::function<void()> aufgewacht_;
    const QString adresse_;
    const QString name_; // of the connection, within Qt
    QFileSystemWatcher ordner_;
    Weckruf naechsterVersuch_;
    int versuche_ = 0; // since the folder last changed
    bool verbunden_ = false;
};

} // namespace kalvaro
