#include "doubles/testbus.h"

#include "doubles/dateien.h"
#include "doubles/kindprogramm.h"

#include <QUuid>

#include <csignal>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString einstellung(const QString &adresse, const QString &dienstordner)
{
    const QString dienste =
        dienstordner.isEmpty() ? QString() : u"<servicedir>%1</servicedir>"_s.arg(dienstordner);
    return u"<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>%1</listen><auth>EXTERNAL</auth>%2"
           "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n"_s.arg(adresse,
                                                                                        dienste);
}

} // namespace

Testbus::Testbus(const QProcessEnvironment &umgebung, const QString &dienstordner)
    : platz(ablage.path())
    , wo(u"unix:path="_s + platz + u"/bus"_s)
{
    dateiSchreiben(platz + u"/bus.conf"_s, einstellung(wo, dienstordner).toUtf8());
    daemon.setProcessEnvironment(umgebung);
    starten();
}

Testbus::~Testbus()
{
    for (const QString &name : std::as_const(verbindungen)) {
        QDBusConnection::disconnectFromBus(name);
    }
    beenden();
}

void Testbus::starten()
{
    anTestBinden(daemon);
    daemon.setStandardErrorFile(QProcess::nullDevice());
    daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                                    u"--config-file="_s + platz + u"/bus.conf"_s});
    if (!daemon.waitForReadyRead(10000)) { // it prints its address once it listens
        qFatal("The test's bus does not start");
    }
}

void Testbus::beenden()
{
    daemon.kill();
    daemon.waitForFinished();
}

void Testbus::anhalten()
{
    ::kill(static_cast<pid_t>(daemon.processId()), SIGSTOP);
}

void Testbus::fortsetzen()
{
    ::kill(static_cast<pid_t>(daemon.processId()), SIGCONT);
}

QDBusConnection Testbus::verbindung()
{
    verbindungen.append(QUuid::createUuid().toString());
    return QDBusConnection::connectToBus(wo, verbindungen.constLast());
}

} // namespace kalvaro
