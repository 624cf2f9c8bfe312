#include "platform/linux/linuxprozesse.h"

#include "foundation/einmalruf.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <functional>
#include <iterator>
#include <memory>
#include <unistd.h>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds laengsteZaehlung{2};

constexpr qsizetype groessteAusgabe = 1 << 20; // far more than the process table can hold

// The states of proc(5) but Z and X: what has ended and waits for its parent does not run.
const QString laufend = u"DIKPRSTWt"_s;

// The tools that nobody waits for any more. Those that outlive the program stay in it.
QSet<QProcess *> &aufgegebene()
{
    static auto *const alle = new QSet<QProcess *>;
    return *alle;
}

// One run of the tool. Whether it answers, hangs or is no longer wanted: nobody waits for it.
class Zaehlung final : public Einmalruf<qsizetype>
{
public:
    // `ersatz` answers when the tool does not.
    Zaehlung(QObject *besitzer, Prozesse::Zahlruf fertig, std::function<qsizetype()> ersatz)
        : Einmalruf(besitzer, std::move(fertig))
        , ersatz_(std::move(ersatz))
    {
        connect(tool_, &QProcess::readyReadStandardOutput, this, &Zaehlung::lesen);
        connect(tool_, &QProcess::finished, this, &Zaehlung::geendet);
        connect(tool_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError fehler) {
            if (fehler == QProcess::FailedToStart) {
                ersetzen();
            }
        });
    }

    // The destructor of a QProcess waits for its end, and how long that takes depends on the tool;
    // so it goes when the tool has gone, and until then it is what keeps that from being a zombie.
    ~Zaehlung() override
    {
        tool_->disconnect(this);
        if (tool_->state() == QProcess::NotRunning) {
            tool_->deleteLater();
            return;
        }
        aufgegebene().insert(tool_);
        connect(tool_, &QObject::destroyed, tool_, [tool = tool_] { aufgegebene().remove(tool); });
        connect(tool_, &QProcess::finished, tool_, &QObject::deleteLater);
        connect(tool_, &QProcess::errorOccurred, tool_, [tool = tool_] {
            if (tool->state() == QProcess::NotRunning) {
                tool->deleteLater();
            }
        });
        tool_->closeReadChannel(QProcess::StandardOutput);
        tool_->kill();
    }

    void beginnen(Uhr &uhr, const QString &programm, const QStringList &argumente)
    {
        frist_ = uhr.nach(laengsteZaehlung, [this] { ersetzen(); });
        tool_->setStandardInputFile(QProcess::nullDevice());
        tool_->setStandardErrorFile(QProcess::nullDevice());
        tool_->start(programm, argumente, QIODevice::ReadOnly);
        if (tool_->state() == QProcess::NotRunning) {
            ersetzen();
        }
    }

private:
    void lesen()
    {
        gelesen_ += tool_->readAllStandardOutput();
        if (gelesen_.size() > groessteAusgabe) {
            ersetzen();
        }
    }

    // pgrep(1): 0 where it has found processes, 1 where it has found none.
    void geendet(int ausgang, QProcess::ExitStatus wie)
    {
        lesen();
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = utf8(gelesen_);
        if (wie != QProcess::NormalExit || ausgang < 0 || ausgang > 1 || utf8.hasError()) {
            ersetzen();
        } else if (!beantwortet()) {
            antworten(text.split(u'\n', Qt::SkipEmptyParts).size());
        }
    }

    void ersetzen()
    {
        if (!beantwortet()) {
            antworten(ersatz_());
        }
    }

    QProcess *const tool_ = new QProcess;
    const std::function<qsizetype()> ersatz_;
    QByteArray gelesen_;
    Weckruf frist_;
};

// Reading where a process runs from costs about 2 us. A new process may yet become another program;
// old ones hardly ever do, so each of them has its turn in every eighth call.
constexpr std::chrono::seconds jung{9};
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

LinuxProzesse::LinuxProzesse(Uhr &uhr, QString werkzeug, QByteArray proc)
    : uhr_(uhr)
    , werkzeug_(std::move(werkzeug))
    , proc_(std::move(proc))
{
}

void LinuxProzesse::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    auto *const zaehlung = new Zaehlung(besitzer, std::move(fertig), [this, name] {
        // The application "rekordbox.app" that runs counts for "rekordbox", its agent's bundle for
        // the agent. Nobody's turn is waited for: all are read.
        draussen_.clear();
        return namens(buendel(), name).size();
    });
    zaehlung->beginnen(uhr_, werkzeug_, {u"-x"_s, u"--runstates"_s, laufend, name});
}

QStringList LinuxProzesse::buendel() const
{
    const std::unique_ptr<DIR, int (*)(DIR *)> ordner(::opendir(proc_.constData()), ::closedir);
    QStringList liste;
    if (!ordner) {
        return liste;
    }
    ++blick_;
    const auto jetzt = uhr_.laufzeit();
    draussen_.swap(vorher_);
    draussen_.clear();
    const auto vorPid = [](const Aussenseiter &einer, int pid) { return einer.pid < pid; };
    auto ort = vorher_.cbegin();
    while (const dirent *eintrag = ::readdir(ordner.get())) {
        const int pid = std::atoi(eintrag->d_name);
        if (pid <= 0) {
            continue;
        }
        // The kernel lists them by number, so the next one is mostly the next one.
        const bool zurueck = ort != vorher_.cbegin() && std::prev(ort)->pid >= pid;
        if (zurueck || (ort != vorher_.cend() && ort->pid < pid && ++ort != vorher_.cend() &&
                        ort->pid < pid)) {
            ort = std::lower_bound(zurueck ? vorher_.cbegin() : ort, vorher_.cend(), pid, vorPid);
        }
        const bool bekannt = ort != vorher_.cend() && ort->pid == pid;
        const auto seit = bekannt ? ort->seit : jetzt;
        if (jetzt - seit >= jung && (pid + blick_) % reihum != 0) {
            draussen_.push_back({pid, seit});
            continue;
        }
        const QString name = buendelVon(::dirfd(ordner.get()), eintrag->d_name);
        if (name.isEmpty()) {
            draussen_.push_back({pid, seit});
        } else if (!liste.contains(name)) {
            liste.append(name);
        }
    }
    const auto nachPid = [](const Aussenseiter &a, const Aussenseiter &b) { return a.pid < b.pid; };
    if (!std::is_sorted(draussen_.cbegin(), draussen_.cend(), nachPid)) {
        std::sort(draussen_.begin(), draussen_.end(), nachPid);
    }
    return liste;
}

} // namespace kalvaro
