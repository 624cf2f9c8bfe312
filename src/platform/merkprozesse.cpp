#include "platform/merkprozesse.h"

namespace kalvaro {

Merkprozesse::Merkprozesse(const Prozesse &ganze)
    : quelle(ganze)
{
}

qsizetype Merkprozesse::anzahl(const QString &name) const
{
    if (const auto da = gemerkt.constFind(name); da != gemerkt.constEnd()) {
        return *da;
    }
    if (gemerkt.isEmpty()) {
        QMetaObject::invokeMethod(
            const_cast<Merkprozesse *>(this), [this] { gemerkt.clear(); }, Qt::QueuedConnection);
    }
    const qsizetype wert = quelle.anzahl(name);
    gemerkt.insert(name, wert);
    return wert;
}

} // namespace kalvaro
