#pragma once

#include "foundation/datenordner.h"
#include "platform/einzelinstanz.h"
#include "platform/linux/dbusaktivierung.h"
#include "platform/linux/dbusverbindung.h"
#include "platform/linux/einzelinstanzsperre.h"

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kalvaro {

// What somebody wants of the one that runs, and with it the right to come to the front.
struct Bitte
{
    std::optional<Wunsch> wunsch; // absent: nothing, but to hear that it is there
    Aktivierung aktivierung;
};

// Single instance by a lock in the data folder, whose holder takes messages at a socket beside it.
// The holder also has the well-known name de.kalvaro.kalvaro on the session bus, where there is one
// and it is free, and answers there to org.freedesktop.Application. Only where the folder allows
// for no lock does the name decide.
class DBusEinzelinstanz final : public QObject, public Einzelinstanz
{
    Q_OBJECT

public:
    // `eigene` is handed to the first instance when this is not the one.
    explicit DBusEinzelinstanz(Aktivierung eigene = Aktivierung::desStarts(),
                               const QDBusConnection &sitzung = sitzungsbus(),
                               QString ordner = appOrdner());
    ~DBusEinzelinstanz() override;

    [[nodiscard]] Belegung belegen(std::optional<Wunsch> wunsch) override;

    // Whether this one has been told that it is the first.
    [[nodiscard]] bool belegt() const { return erste_; }

    void beiWunsch(std::function<void(Wunsch)> ruf) override;

    // Somebody wants something. Answers at once, acts from the event loop. False when the program
    // is about to end: then somebody else has to be asked.
    [[nodiscard]] bool bitten(const Bitte &bitte);

    // Answers `ruf`, a call that came over the bus.
    void antworten(const QDBusMessage &ruf, const Bitte &bitte);

    // Sees the application's wish to end.
    bool eventFilter(QObject *wer, QEvent *was) override;

private:
    [[nodiscard]] Belegung ersteWerden();
    [[nodiscard]] Belegung ohneSperre(const Bitte &bitte, const QDeadlineTimer &bis);
    [[nodiscard]] std::optional<Bitte> botengang();
    [[nodiscard]] uint nameNehmen(uint wie);
    void nameAufgeben();
    void endeErwarten();
    void ausfuehren(const Bitte &bitte);

    const Aktivierung eigene_;
    QDBusConnection bus_;
    const QString ordner_;
    bool erste_ = false;
    bool nameGewollt_ = false;
    bool endet_ = false; // the event loop has been told to end, or will be
    std::unique_ptr<Einzelinstanzsperre> sperre_;
    std::function<void(Wunsch)> ruf_;
    std::vector<Bitte> versaeumt_; // came when there was nobody to call
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
    void Activate(const QVariantMap &plattformdaten, const QDBusMessage &ruf);
    void Open(const QStringList &adressen, const QVariantMap &plattformdaten,
              const QDBusMessage &ruf);
    void ActivateAction(const QString &name, const QVariantList &werte,
                        const QVariantMap &plattformdaten, const QDBusMessage &ruf);

private:
    DBusEinzelinstanz *const instanz_;
};

} // namespace kalvaro
