#pragma once

#include "foundation/farbwunsch.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>

#include <functional>
#include <optional>

class QDBusVariant;

namespace kalvaro {

// The wish for light or dark by the desktop portal: org.freedesktop.portal.Settings, key
// "color-scheme" of "org.freedesktop.appearance" ("XDG Desktop Portal", Settings 1 and 2).

// The first question for it, asked while the program still starts: needs no application object.
class Farbfrage
{
public:
    // Asks over a connection of its own. Without an address nobody is asked.
    explicit Farbfrage(const QString &busadresse);
    ~Farbfrage();
    Farbfrage(const Farbfrage &) = delete;
    Farbfrage &operator=(const Farbfrage &) = delete;

    // What the portal has answered; absent when it is silent, or ought to be asked another way.
    // Waits until 100 ms after the question at most.
    [[nodiscard]] std::optional<Helligkeit> antwort();

private:
    const QString name_; // of the connection, within Qt
    std::optional<QDBusPendingCall> ruf_;
};

// What the portal says from then on. It may be missing, slow, or go.
class Farbportal final : public QObject
{
    Q_OBJECT

public:
    // `bisher` is what it has answered already; absent: it is asked now.
    Farbportal(const QDBusConnection &sitzung, std::optional<Helligkeit> bisher,
               std::function<void()> gewechselt);

    [[nodiscard]] Helligkeit helligkeit() const { return stand_; }

private Q_SLOTS:
    void geaendert(const QString &bereich, const QString &schluessel, const QDBusVariant &wert);

private:
    void fragen(const QString &methode);
    void setzen(Helligkeit neu);

    QDBusConnection bus_;
    const std::function<void()> gewechselt_;
    Helligkeit stand_;
};

} // namespace kalvaro
