// A program that is started twice. Says "erste", "zweite" or "stumm" as soon as it knows; the first
// then says "oeffnen" (or "abgleichen", "beenden") whenever it is asked to, and on some systems
// what the wish brought along, until its standard input ends. With "--spaet" it takes requests only
// after a line on standard input, with "--gehorcht" it ends when it is asked to.
#include "einzelinstanzteile.h"
#include "foundation/datenordner.h"
#include "platform/einzelinstanz.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstdio>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const std::array<std::pair<Wunsch, QByteArray>, 4> namen{{{Wunsch::Oeffnen, "oeffnen"},
                                                          {Wunsch::Abgleichen, "abgleichen"},
                                                          {Wunsch::Beenden, "beenden"},
                                                          {Wunsch::Hintergrund, "hintergrund"}}};

std::optional<Wunsch> wunsch(const QStringList &argumente)
{
    if (argumente.contains(u"--leise"_s)) {
        return {};
    }
    for (const auto &[wunsch, name] : namen) {
        if (argumente.contains(u"--"_s + QString::fromLatin1(name))) {
            return wunsch;
        }
    }
    return Wunsch::Oeffnen;
}

void sagen(const QByteArray &zeile)
{
    std::fputs((zeile + '\n').constData(), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    vorbereiten();
    const QCoreApplication programm(argc, argv);
    const QStringList argumente = QCoreApplication::arguments();
    ordnerAnlegen();
    const auto instanz = einzelinstanzAnlegen();
    switch (instanz->belegen(wunsch(argumente))) {
    case Belegung::Erste:
        break;
    case Belegung::Uebergeben:
        sagen("zweite");
        return 0;
    case Belegung::Stumm:
        sagen("stumm");
        return 1;
    }
    const auto signale = endeHoeren([] { QCoreApplication::quit(); });
    sagen("erste");
    const auto bereit = [&instanz, &argumente] {
        instanz->beiWunsch([&argumente](Wunsch wunsch) {
            const auto name = std::find_if(namen.begin(), namen.end(),
                                           [wunsch](const auto &n) { return n.first == wunsch; });
            sagen(name->second + beigaben());
            if (wunsch == Wunsch::Beenden && argumente.contains(u"--gehorcht"_s)) {
                QCoreApplication::quit();
            }
        });
    };
    if (!argumente.contains(u"--spaet"_s)) {
        bereit();
    }
    QSocketNotifier eingabe(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&eingabe, &QSocketNotifier::activated, &programm, [&bereit] {
        std::array<char, 64> bytes = {};
        if (::read(STDIN_FILENO, bytes.data(), bytes.size()) > 0) {
            bereit();
        } else {
            QCoreApplication::quit();
        }
    });
    return QCoreApplication::exec();
}
