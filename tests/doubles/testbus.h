#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace kalvaro {

// A message bus of the test's own: dbus-daemon with a configuration that knows only the services in
// `dienstordner`, which run in `umgebung`. Ends with this object.
class Testbus
{
public:
    explicit Testbus(const QProcessEnvironment &umgebung = QProcessEnvironment::systemEnvironment(),
                     const QString &dienstordner = {});
    ~Testbus();
    Testbus(const Testbus &) = delete;
    Testbus &operator=(const Testbus &) = delete;

    // Starts it anew at the same address where it has ended.
    void starten();
    void beenden();

    // SIGSTOP and SIGCONT: a bus that hangs.
    void anhalten();
    void fortsetzen();

    [[nodiscard]] const QString &adresse() const { return wo; }
    [[nodiscard]] const QString &ordner() const { return platz; }

    // A new connection on each call; it ends with the bus.
    [[nodiscard]] QDBusConnection verbindung();

private:
    QTemporaryDir ablage;
    const QString platz;
    const QString wo;
    QProcess daemon;
    QStringList verbindungen;
};

} // namespace kalvaro
