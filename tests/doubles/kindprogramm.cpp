#include "doubles/kindprogramm.h"

#include <QElapsedTimer>

#include <csignal>

namespace kalvaro {

namespace {

constexpr int geduld = 30'000; // milliseconds

} // namespace

Kindprogramm::Kindprogramm(const QString &datei, const QStringList &argumente,
                           const QProcessEnvironment &umgebung)
{
    prozess_.setProcessEnvironment(umgebung);
    anTestBinden(prozess_);
    prozess_.start(datei, argumente);
    prozess_.waitForStarted(geduld);
}

Kindprogramm::~Kindprogramm()
{
    toeten();
}

void Kindprogramm::schreiben(const QString &zeile)
{
    prozess_.write((zeile + u'\n').toUtf8());
}

QByteArray Kindprogramm::ausgabe()
{
    gelesen_ += prozess_.readAllStandardOutput();
    return gelesen_;
}

QStringList Kindprogramm::zeilen()
{
    return QString::fromUtf8(ausgabe()).split(u'\n', Qt::SkipEmptyParts);
}

QByteArray Kindprogramm::fehlerausgabe()
{
    return prozess_.readAllStandardError();
}

void Kindprogramm::signal(int nummer) const
{
    if (laeuft()) { // else its id is 0, and that means us
        ::kill(static_cast<pid_t>(prozess_.processId()), nummer);
    }
}

void Kindprogramm::toeten()
{
    prozess_.kill();
    prozess_.waitForFinished(geduld);
}

int Kindprogramm::ende()
{
    prozess_.closeWriteChannel();
    prozess_.waitForFinished(geduld);
    return !laeuft() && prozess_.exitStatus() == QProcess::NormalExit ? prozess_.exitCode() : -1;
}

qint64 Kindprogramm::beenden(int nummer)
{
    QElapsedTimer zeit;
    zeit.start();
    signal(nummer);
    return ende() == 0 ? zeit.elapsed() : -1;
}

} // namespace kalvaro
