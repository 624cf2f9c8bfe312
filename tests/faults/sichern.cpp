// Saves the settings over and over, now with the one content and now with the other, until it is
// killed.
//   faults_sichern SAVES
// With a number it ends after that many saves. Before the first save it writes a line and waits for
// one.

#include "foundation/einstellungen.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace kalvaro;

int main(int argc, char *argv[])
{
    const long anzahl = argc > 1 ? std::atol(argv[1]) : 0;
    Einstellungen einst;
    char zeichen = '\n';
    if (::write(STDOUT_FILENO, &zeichen, 1) != 1 || ::read(STDIN_FILENO, &zeichen, 1) != 1) {
        return 1;
    }
    for (long i = 0; anzahl == 0 || i < anzahl; ++i) {
        einst.autostart = i % 2 == 0;
        einst.version = QString(20'000, i % 2 == 0 ? u'a' : u'b');
        einst.updateGemeldet = einst.version;
        einst.speichern();
    }
    return 0;
}
