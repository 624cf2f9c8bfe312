#pragma once

#include "platform/linux/dbusverbindung.h"
#include "platform/mitteilungen.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QStringList>

class QDBusPendingCallWatcher;

namespace kalvaro {

// Notifications by org.freedesktop.Notifications, "Desktop Notifications Specification" 1.3. All
// calls are asynchronous; the service may be missing, slow, or another one from one message to the
// next.
class DBusMitteilungen final : public QObject, public Mitteilungen
{
    Q_OBJECT

public:
    // `frist` in milliseconds bounds each call; negative: the default of the bus, 25 s.
    explicit DBusMitteilungen(const QDBusConnection &sitzung = sitzungsbus(), int frist = -1);

    void mitteilen(const QString &titel, const QString &inhalt,
                   const std::optional<QString> &ziel) override;

    void beiKlick(std::function<void(const QString &ziel)> geklickt) override;

    // How many shown notifications a click is still awaited for.
    [[nodiscard]] qsizetype offene() const { return gezeigt_.size(); }

private Q_SLOTS:
    void gewaehlt(uint id, const QString &aktion, const QDBusMessage &signal);
    void markeErhalten(uint id, const QString &marke, const QDBusMessage &signal);
    void geschlossen(uint id, uint grund, const QDBusMessage &signal);

private:
    struct Nachricht
    {
        QString titel;
        QString inhalt;
        std::optional<QString> ziel;
    };

    // Ids are unique only within one run of one server.
    struct Gezeigte
    {
        QString server; // unique name on the bus
        uint id;
        QString ziel;
        QByteArray marke;
    };

    enum class Faehigkeiten { Unbekannt, Erfragt, Bekannt };

    void signaleAbonnieren();
    void erfragen();
    void erfragt(QDBusPendingCallWatcher *antwort);
    void senden(const Nachricht &nachricht);
    void gesendet(const Nachricht &nachricht, const QString &an, QDBusPendingCallWatcher *antwort);
    void inhaberErfragen();
    void serverGewechselt(const QString &neuer);
    [[nodiscard]] Gezeigte *finden(uint id, const QDBusMessage &signal);

    QDBusConnection bus_;
    const int frist_;
    QDBusServiceWatcher waechter_;
    std::function<void(const QString &)> klick_;

    // What is known of the server that runs now.
    Faehigkeiten stand_ = Faehigkeiten::Unbekannt;
    QString server_;            // who owns the service's name, as far as the bus has told
    bool auszeichnung_ = false; // it reads markup in the body
    bool aktionen_ = false;
    bool gewechselt_ = false; // another one has come since we asked

    QList<Nachricht> wartende_; // until the capabilities are known
    QList<Gezeigte> gezeigt_;   // the oldest first
};

} // namespace kalvaro
