#include "doubles/kindprogramm.h"

#include <QElapsedTimer>

#include <csignal>
#include <sys/prctl.h>

namespace kalvaro {

namespace {

constexpr int geduld = 30'000; // milliseconds

} // namespace

void anTestBinden(QProcess &programm)
{
    programm.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

Kindprogramm::Kindprogramm(const QString &datei, const QStringList &argumente,
                           const QProcessEnvironment &umgebung)
{
    prozess.setProcessEnvironment(umgebung);
    anTestBinden(prozess);
    prozess.start(datei, argumente);
    prozess.waitForStarted(geduld);
}

Kindprogramm::~Kindprogramm()
{
    toeten();
}

void Kindprogramm::schreiben(const QString &zeile)
{
    prozess.write((zeile + u'\n').toUtf8());
}

QByteArray Kindprogramm::ausgabe()
{
    gelesen += prozess.readAllStandardOutput();
    return gelesen;
}

QStringList Kindprogramm::zeilen()
{
    return QString::fromUtf8(ausgabe()).split(u'\n', Qt::SkipEmptyParts);
}

QByteArray Kindprogramm::fehlerausgabe()
{
    return prozess.readAllStandardError();
}

void Kindprogramm::signal(int nummer) const
{
    if (laeuft()) { // else its id is 0, and that means us
        ::kill(static_cast<pid_t>(prozess.processId()), nummer);
    }
}

void Kindprogramm::toeten()
{
    prozess.kill();
    prozess.waitForFinished(geduld);
}

int Kindprogramm::ende()
{
    prozess.closeWriteChannel();
    prozess.waitForFinished(geduld);
    return !laeuft() && prozess.exitStatus() == QProcess::NormalExit ? prozess.exitCode() : -1;
}

qint64 Kindprogramm::beenden(int nummer)
{
    QElapsedTimer zeit;
    zeit.start();
    signal(nummer);
    return ende() == 0 ? zeit.elapsed() : -1;
}

} // namespace kalvaro
