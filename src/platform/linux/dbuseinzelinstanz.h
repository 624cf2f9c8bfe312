#pragma once

#include "platform/einzelinstanz.h"
#include "platform/linux/dbusaktivierung.h"
#include "platform/linux/dbusverbindung.h"

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kalvaro {

class Einzelinstanzsperre;

// The folder for the lock: $XDG_RUNTIME_DIR, or the data folder where that is missing or may not be
// written.
[[nodiscard]] QString sperrordner();

// Single instance by the well-known name de.kalvaro.kalvaro on the session bus, where the first one
// answers to org.freedesktop.Application. Without a bus, by a lock in a folder.
class DBusEinzelinstanz final : public QObject, public Einzelinstanz
{
    Q_OBJECT

public:
    // `eigene` is handed to the first instance when this is not the one.
    explicit DBusEinzelinstanz(Aktivierung eigene = Aktivierung::desStarts(),
                               const QDBusConnection &sitzung = sitzungsbus(),
                               QString ordner = sperrordner());
    ~DBusEinzelinstanz() override;

    // Waits for the bus, and for the first instance to take the request, a second at most each.
    [[nodiscard]] bool belegen(std::optional<Wunsch> wunsch) override;

    // Whether this one has been told that it is the only one.
    [[nodiscard]] bool belegt() const { return nameGehalten_ || sperre_ != nullptr; }

    void beiWunsch(std::function<void(Wunsch)> ruf) override;

    // Another start, or the desktop, wants something. Answers at once, acts from the event loop.
    void bitten(Wunsch wunsch, const Aktivierung &aktivierung);

private:
    struct Bitte
    {
        Wunsch wunsch;
        Aktivierung aktivierung;
    };

    [[nodiscard]] std::optional<bool> ueberBus(std::optional<Wunsch> wunsch);
    [[nodiscard]] bool ueberSperre(std::optional<Wunsch> wunsch);
    [[nodiscard]] std::optional<bool> nameNehmen();
    [[nodiscard]] bool ersteBitten(Wunsch wunsch) const;
    void ausfuehren(const Bitte &bitte);

    const Aktivierung eigene_;
    QDBusConnection bus_;
    const QString ordner_;
    bool nameGehalten_ = false;
    std::unique_ptr<Einzelinstanzsperre> sperre_;
    std::function<void(Wunsch)> ruf_;
    std::vector<Bitte> versaeumt_; // came before there was someone to call
};

// org.freedesktop.Application, "Desktop Entry Specification" 1.5, "D-Bus Activation". The actions
// are those of the desktop entry; an unknown one opens the window, as any other activation does.
class Anwendungsdienst final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit Anwendungsdienst(DBusEinzelinstanz *instanz);

public Q_SLOTS:
    void Activate(const QVariantMap &plattformdaten);
    void Open(const QStringList &adressen, const QVariantMap &plattformdaten);
    void ActivateAction(const QString &name, const QVariantList &werte,
                        const QVariantMap &plattformdaten);

private:
    DBusEinzelinstanz *const instanz_;
};

} // namespace kalvaro
