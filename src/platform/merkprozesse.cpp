#include "platform/merkprozesse.h"

namespace kalvaro {

Merkprozesse::Merkprozesse(const Prozesse &quelle)
    : quelle_(quelle)
{
}

qsizetype Merkprozesse::anzahl(const QString &name) const
{
    if (const auto da = gemerkt_.constFind(name); da != gemerkt_.constEnd()) {
        return *da;
    }
    if (gemerkt_.isEmpty()) {
        QMetaObject::invokeMethod(
            const_cast<Merkprozesse *>(this), [this] { gemerkt_.clear(); }, Qt::QueuedConnection);
    }
    const qsizetype wert = quelle_.anzahl(name);
    gemerkt_.insert(name, wert);
    return wert;
}

} // namespace kalvaro
