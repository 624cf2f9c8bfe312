#pragma once

#include "foundation/uhr.h"
#include "platform/linux/dbusverbindung.h"
#include "platform/linux/trayxembed.h"

#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace kalvaro {

// Where an item can show.
enum class Trayart {
    StatusNotifier, // "StatusNotifierItem" 0.1, under the names of org.kde that desktops use
    XEmbed,
};

// Waits for the first place where an item can show, without polling. QSystemTrayIcon decides once
// per process which of the two it serves, from what is there when the first one is made; so this
// prefers StatusNotifier, and gives a desktop that has both the time to bring them up.
class Traywache final : public QObject
{
    Q_OBJECT

public:
    // `gefunden` is called once, from the event loop.
    Traywache(Uhr &uhr, const QDBusConnection &sitzung, XEmbedtray &xembed,
              std::function<void(Trayart)> gefunden);

private Q_SLOTS:
    void hostFragen();

private:
    void hostAntwort(bool da, bool gescheitert);
    void xembedErschienen();
    void melden(Trayart art);

    Uhr &uhr_;
    QDBusConnection bus_;
    XEmbedtray &xembed_;
    std::function<void(Trayart)> gefunden_;
    QDBusServiceWatcher waechter_;
    Weckruf nocheinmal_;
    Weckruf bedenkzeit_;
    int fragen_ = 0; // since the watcher last took its name
};

} // namespace kalvaro
