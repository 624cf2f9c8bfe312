#include "doubles/testportal.h"

#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QTest>

#include <csignal>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString name = u"org.freedesktop.portal.Desktop"_s;
const QString pfad = u"/org/freedesktop/portal/desktop"_s;
const QString schnittstelle = u"org.freedesktop.portal.Settings"_s;
const QString python = u"/usr/bin/python3"_s;

} // namespace

Testportal::Testportal(Testbus &bus, const QString &wert, const QString &methode)
    : frage(bus.verbindung())
{
    auto umgebung = QProcessEnvironment::systemEnvironment();
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
    prozess.setProcessEnvironment(umgebung);
    anTestBinden(prozess);
    prozess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    prozess.setStandardOutputFile(QProcess::nullDevice());
    prozess.start(python, {u"-m"_s, u"dbusmock"_s, u"--session"_s, name, pfad, schnittstelle});
    constexpr int geduld = 30'000; // milliseconds
    if (!QTest::qWaitFor([this] { return frage.interface()->isServiceRegistered(name).value(); },
                         geduld)) {
        qFatal("The test's portal does not start");
    }
    rufen(u"AddMethod"_s, {schnittstelle, methode, u"ss"_s, u"v"_s, QString(u"ret = "_s + wert)});
}

Testportal::~Testportal()
{
    prozess.kill();
    prozess.waitForFinished();
}

bool Testportal::vorhanden()
{
    return QProcess::execute(python, {u"-c"_s, u"import dbusmock"_s}) == 0;
}

void Testportal::melden(const QString &bereich, const QString &schluessel, const QVariant &wert)
{
    const QVariantList inhalt{bereich, schluessel, wert};
    rufen(u"EmitSignal"_s, {schnittstelle, u"SettingChanged"_s, u"ssv"_s, inhalt});
}

void Testportal::schemaMelden(uint wert)
{
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, wert);
}

void Testportal::anhalten()
{
    ::kill(static_cast<pid_t>(prozess.processId()), SIGSTOP);
}

void Testportal::fortsetzen()
{
    ::kill(static_cast<pid_t>(prozess.processId()), SIGCONT);
}

void Testportal::rufen(const QString &was, const QVariantList &womit)
{
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(name, pfad, u"org.freedesktop.DBus.Mock"_s, was);
    ruf.setArguments(womit);
    const QDBusMessage antwort = frage.call(ruf);
    if (antwort.type() != QDBusMessage::ReplyMessage) {
        qFatal("The test's portal refuses: %s", qPrintable(antwort.errorMessage()));
    }
}

} // namespace kalvaro
