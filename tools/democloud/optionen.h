#pragma once

#include "democloud.h"

namespace kalvaro::democloud {

// The command line of kalvaro-democloud.
struct Programmoptionen
{
    DemocloudOptionen cloud; // with its world
    bool hilfe = false;      // only the help is wanted
};

// Why the program ends before it serves.
struct Abbruch
{
    int ausgang = 1; // exit code: 2 for a bad command line, 1 for a bad world file
    QString meldung; // one German sentence
};

// `argumente` without the program's name; `jetzt` dates the world of the first start. Of an option
// that stands more than once the last one holds, but for "--geraet".
[[nodiscard]] tl::expected<Programmoptionen, Abbruch> optionenLesen(const QStringList &argumente,
                                                                    const QDateTime &jetzt);

// What --help prints.
[[nodiscard]] QString hilfetext();

} // namespace kalvaro::democloud
