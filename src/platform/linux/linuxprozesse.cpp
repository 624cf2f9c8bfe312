#include "platform/linux/linuxprozesse.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype groessteAusgabe = 1 << 20; // far more than the process table can hold

// The states of proc(5) but Z and X: what has ended and waits for its parent does not run.
const QString laufend = u"DIKPRSTWt"_s;

int rest(const QDeadlineTimer &frist)
{
    return static_cast<int>(frist.remainingTime());
}

// Ends a tool that does not end. Its destructor would wait for that, and for how long depends on
// the tool; so it goes when it is gone.
void aufgeben(std::unique_ptr<QProcess> tool)
{
    QProcess *const waise = tool.release();
    QObject::connect(waise, &QProcess::finished, waise, &QObject::deleteLater);
    waise->closeReadChannel(QProcess::StandardOutput);
    waise->kill();
}

// The whole output of the tool; absent when it could not be had in time or within bounds.
std::optional<QByteArray> ausgabe(const QString &programm, const QStringList &argumente,
                                  const QDeadlineTimer &frist)
{
    auto tool = std::make_unique<QProcess>();
    tool->setStandardInputFile(QProcess::nullDevice());
    tool->setStandardErrorFile(QProcess::nullDevice());
    tool->start(programm, argumente, QIODevice::ReadOnly);
    QByteArray gelesen;
    while (gelesen.size() <= groessteAusgabe && tool->waitForReadyRead(rest(frist))) {
        gelesen += tool->readAllStandardOutput();
    }
    if (gelesen.size() <= groessteAusgabe &&
        (tool->state() == QProcess::NotRunning || tool->waitForFinished(rest(frist)))) {
        return gelesen + tool->readAllStandardOutput();
    }
    aufgeben(std::move(tool));
    return {};
}

// Reading where a process runs from costs about 2 us. A new process may yet become another program;
// old ones hardly ever do, so each of them has its turn in every eighth call.
constexpr int jung = 3;
constexpr int reihum = 8;

// The bundle that a process runs from; empty when it runs from none, has ended, belongs to another
// user or to the kernel. The last match is the innermost bundle: an agent that is shipped inside of
// an application is not that application.
QString buendelVon(int prozesse, const char *pid)
{
    std::array<char, 32> verweis = {};
    std::array<char, 4096> ziel = {};
    std::snprintf(verweis.data(), verweis.size(), "%s/exe", pid);
    const ssize_t laenge = ::readlinkat(prozesse, verweis.data(), ziel.data(), ziel.size());
    const QByteArrayView programm(ziel.data(), std::max<ssize_t>(laenge, 0));
    const qsizetype ort = programm.lastIndexOf("/Contents/MacOS/");
    return ort > 0 ? QFile::decodeName(programm.first(ort).toByteArray()) : QString();
}

} // namespace

LinuxProzesse::LinuxProzesse(QString werkzeug, QByteArray proc, std::chrono::milliseconds frist)
    : werkzeug_(std::move(werkzeug))
    , proc_(std::move(proc))
    , frist_(frist)
{
}

qsizetype LinuxProzesse::anzahl(const QString &name) const
{
    const auto bytes =
        ausgabe(werkzeug_, {u"-x"_s, u"--runstates"_s, laufend, name}, QDeadlineTimer(frist_));
    if (!bytes) {
        return 0;
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(*bytes);
    return utf8.hasError() ? 0 : text.split(u'\n', Qt::SkipEmptyParts).size();
}

QStringList LinuxProzesse::buendel() const
{
    const std::unique_ptr<DIR, int (*)(DIR *)> ordner(::opendir(proc_.constData()), ::closedir);
    QStringList liste;
    if (!ordner) {
        return liste;
    }
    ++blick_;
    const auto vorher = std::exchange(draussen_, {});
    draussen_.reserve(vorher.size());
    while (const dirent *eintrag = ::readdir(ordner.get())) {
        const int pid = std::atoi(eintrag->d_name);
        if (pid <= 0) {
            continue;
        }
        const int male = vorher.value(pid);
        if (male >= jung && (pid + blick_) % reihum != 0) {
            draussen_.insert(pid, male);
            continue;
        }
        const QString name = buendelVon(::dirfd(ordner.get()), eintrag->d_name);
        if (name.isEmpty()) {
            draussen_.insert(pid, std::min(male + 1, jung));
        } else if (!liste.contains(name)) {
            liste.append(name);
        }
    }
    return liste;
}

} // namespace kalvaro
