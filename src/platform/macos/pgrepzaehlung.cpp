#include "platform/macos/pgrepzaehlung.h"

#include <QSet>
#include <QStringDecoder>

#include <chrono>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds laengsteZaehlung{2};

constexpr qsizetype groessteAusgabe = 1 << 20; // bytes; far more than the process table can hold

// The tools that nobody waits for any more. Those that outlive the program stay in it.
QSet<QProcess *> &aufgegebene()
{
    static auto *const alle = new QSet<QProcess *>;
    return *alle;
}

} // namespace

Pgrepzaehlung::Pgrepzaehlung(QObject *besitzer, Ruf fertig, std::function<qsizetype()> ersatz)
    : Einmalruf(besitzer, std::move(fertig))
    , tool_(new QProcess)
    , ersatz_(std::move(ersatz))
{
    connect(tool_, &QProcess::readyReadStandardOutput, this, &Pgrepzaehlung::lesen);
    connect(tool_, &QProcess::finished, this, &Pgrepzaehlung::geendet);
    connect(tool_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError fehler) {
        if (fehler == QProcess::FailedToStart) {
            ersetzen();
        }
    });
}

// The destructor of a QProcess waits for its end, and how long that takes depends on the tool; so
// it goes when the tool has gone.
Pgrepzaehlung::~Pgrepzaehlung()
{
    tool_->disconnect(this);
    if (tool_->state() == QProcess::NotRunning) {
        tool_->deleteLater();
        return;
    }
    aufgegebene().insert(tool_);
    QObject::connect(tool_, &QObject::destroyed, tool_,
                     [tool = tool_] { aufgegebene().remove(tool); });
    QObject::connect(tool_, &QProcess::finished, tool_, &QObject::deleteLater);
    QObject::connect(tool_, &QProcess::errorOccurred, tool_, [tool = tool_] {
        if (tool->state() == QProcess::NotRunning) {
            tool->deleteLater();
        }
    });
    tool_->closeReadChannel(QProcess::StandardOutput);
    tool_->kill();
}

void Pgrepzaehlung::beginnen(Uhr &uhr, const QString &werkzeug, const QString &name)
{
    frist_ = uhr.nach(laengsteZaehlung, [this] { ersetzen(); });
    tool_->setStandardInputFile(QProcess::nullDevice());
    tool_->setStandardErrorFile(QProcess::nullDevice());
    tool_->start(werkzeug, {u"-x"_s, name}, QIODevice::ReadOnly);
    if (tool_->state() == QProcess::NotRunning) {
        ersetzen();
    }
}

void Pgrepzaehlung::lesen()
{
    gelesen_ += tool_->readAllStandardOutput();
    if (gelesen_.size() > groessteAusgabe) {
        ersetzen();
    }
}

// pgrep(1): 0 where it has found processes, 1 where it has found none.
void Pgrepzaehlung::geendet(int ausgang, QProcess::ExitStatus wie)
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

void Pgrepzaehlung::ersetzen()
{
    if (!beantwortet()) {
        antworten(ersatz_());
    }
}

} // namespace kalvaro
