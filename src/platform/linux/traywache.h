#pragma once

#include "foundation/uhr.h"
#include "platform/linux/dbusverbindung.h"
#include "platform/linux/trayxembed.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

namespace kalvaro {

// Where an item can show.
enum class Trayart {
    StatusNotifier, // "StatusNotifierItem" 0.1, under the names of org.kde that desktops use
    XEmbed,
};

// Knows where an item can show, without polling. Of the two kinds it prefers StatusNotifier, and
// gives a desktop that has both the time to bring them up.
class Traywache final : public QObject
{
    Q_OBJECT

public:
    // `gewechselt` is called from the event loop: with the first place that comes, with each other
    // one, with none when the last has gone, and again with the same one when another panel may
    // stand there.
    Traywache(Uhr &uhr, const QDBusConnection &sitzung, XEmbedtray &xembed,
              std::function<void(std::optional<Trayart>)> gewechselt);

private Q_SLOTS:
    void hostFragen();

private:
    void namenFragen();
    void waechterGewechselt(bool da);
    void hostnameGewechselt(const QString &name, bool da);
    void hostAntwort(bool da, bool gescheitert);
    void hostVerloren();
    void xembedGewechselt();
    void xembedAbwarten();
    void melden(std::optional<Trayart> art);

    Uhr &uhr_;
    QDBusConnection bus_;
    XEmbedtray &xembed_;
    const std::function<void(std::optional<Trayart>)> gewechselt_;
    QDBusServiceWatcher waechter_;
    std::optional<Trayart> art_;
    Weckruf nocheinmal_;
    Weckruf bedenkzeit_;
    int fragen_ = 0; // since the watcher last took its name

    // Hosts by their names on the bus. A watcher may not notice that one is gone (KDE's does not
    // when the panel crashes), and some hosts have no such name: the watcher is believed as long as
    // none has been seen.
    QSet<QString> hosts_;
    bool hostsMitNamen_ = false;
};

} // namespace kalvaro
