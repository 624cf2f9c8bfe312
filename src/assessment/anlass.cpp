#include "assessment/anlass.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

QString anlassname(Anlass anlass)
{
    switch (anlass) {
    case Anlass::Anmeldung:
        return u"anmeldung"_s;
    case Anlass::Hand:
        return u"hand"_s;
    case Anlass::Vorstart:
        return u"vorstart"_s;
    case Anlass::Nachher:
        return u"nachher"_s;
    case Anlass::Nachholen:
        return u"nachholen"_s;
    case Anlass::Aufgewacht:
        return u"aufgewacht"_s;
    }
    Q_UNREACHABLE();
}

} // namespace kalvaro
