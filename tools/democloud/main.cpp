#include "optionen.h"

#include <QTextStream>

#include <csignal>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

// Blocks the signals that end the program, for this thread and those it starts, so that only
// sigwait() receives them.
sigset_t endsignaleSperren()
{
    sigset_t signale;
    sigemptyset(&signale);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(signal, SIG_DFL); // started in the background, a shell leaves SIGINT ignored
        sigaddset(&signale, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signale, nullptr);
    return signale;
}

int abbrechen(const Abbruch &abbruch)
{
    if (abbruch.ausgang == 0) {
        QTextStream(stdout) << abbruch.meldung;
    } else {
        QTextStream(stderr) << u"kalvaro-democloud: %1\n"_s.arg(abbruch.meldung);
    }
    return abbruch.ausgang;
}

} // namespace

int main(int argc, char **argv)
{
    const sigset_t signale = endsignaleSperren();
    QStringList argumente;
    for (int i = 1; i < argc; ++i) {
        argumente.append(QString::fromUtf8(argv[i]));
    }
    const auto optionen = optionenLesen(argumente, QDateTime::currentDateTime());
    if (!optionen) {
        return abbrechen(optionen.error());
    }
    Democloud cloud(*optionen);
    if (const auto begonnen = cloud.starten(); !begonnen) {
        return abbrechen({.ausgang = 1, .meldung = begonnen.error()});
    }
    QTextStream(stdout) << u"port=%1\n"_s.arg(cloud.port());
    QTextStream(stderr) << u"Die Demo-Cloud lauscht auf %1 – Strg+C beendet sie.\n"_s.arg(
        cloud.adresse());
    int signal = 0;
    sigwait(&signale, &signal);
    return 0;
}
