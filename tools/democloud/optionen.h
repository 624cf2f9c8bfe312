#pragma once

#include "democloud.h"

namespace kalvaro::democloud {

// Why the program ends before it serves.
struct Abbruch
{
    int ausgang = 0; // exit code: 0 for the help, 2 for a bad command line, 1 for a bad world file
    QString meldung; // the help or one German sentence
};

// What the command line asks for, with its world. `argumente` without the program's name; `jetzt`
// dates the world of the first start. Of an option that stands more than once the last one holds,
// but for "--geraet".
[[nodiscard]] tl::expected<DemocloudOptionen, Abbruch> optionenLesen(const QStringList &argumente,
                                                                     const QDateTime &jetzt);

} // namespace kalvaro::democloud
