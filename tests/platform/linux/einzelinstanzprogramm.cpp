// A program that is started twice. Says "erste" or "zweite" as soon as it knows; the first then
// says "oeffnen TOKEN ID" whenever it is asked to, until its standard input ends. With "--spaet" it
// takes requests only after a line on standard input.
#include "foundation/datenordner.h"
#include "platform/linux/dbuseinzelinstanz.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cstdio>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

void sagen(const QByteArray &zeile)
{
    std::fputs((zeile + '\n').constData(), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const Aktivierung eigene = Aktivierung::desStarts();
    sitzungsbusFestlegen();
    const QCoreApplication programm(argc, argv);
    const QStringList argumente = QCoreApplication::arguments();
    ordnerAnlegen();
    DBusEinzelinstanz instanz(eigene);
    if (!instanz.belegen(argumente.contains(u"--leise"_s))) {
        sagen("zweite");
        return 0;
    }
    sagen("erste");
    const auto bereit = [&instanz] {
        instanz.beiOeffnen([] {
            sagen("oeffnen " + qgetenv("XDG_ACTIVATION_TOKEN") + ' ' +
                  qgetenv("DESKTOP_STARTUP_ID"));
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
