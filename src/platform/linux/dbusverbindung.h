#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <chrono>

namespace kalvaro {

// Where the message buses listen, as the "D-Bus Specification" 0.38 writes server addresses; empty
// when there is none. An address that would only start a bus ("autolaunch:") counts as none.
[[nodiscard]] QString sitzungsbusAdresse();
[[nodiscard]] QString systembusAdresse();

inline constexpr std::chrono::milliseconds busfrist{1000};

// Whether a bus answers there within `frist` and takes this user. Only Unix sockets are asked;
// addresses of other kinds, which could not be asked within a time, count as none.
[[nodiscard]] bool busAntwortet(const QString &adresse, std::chrono::milliseconds frist = busfrist);

// Settles which session bus this process uses: the first that is there and answers, or none.
// Without one it sets DBUS_SESSION_BUS_ADDRESS to an address that leads nowhere ("disabled:"), so
// that neither Qt nor libdbus starts a bus or waits for a dead one. To be called before a
// QGuiApplication exists, because its platform plug-ins look for the bus too.
void sitzungsbusFestlegen();

// The session bus; not connected when there is none. Settles it first where that has not happened.
[[nodiscard]] QDBusConnection sitzungsbus();

// A call to the bus itself, "D-Bus Specification" 0.38, "Message Bus Messages".
[[nodiscard]] QDBusMessage anDenBus(const QString &methode, const QVariantList &argumente);

} // namespace kalvaro
