#include "platform/merkprozesse.h"

#include <utility>

namespace kalvaro {

Merkprozesse::Merkprozesse(const Prozesse &quelle)
    : quelle_(quelle)
{
}

void Merkprozesse::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    auto *const selbst = const_cast<Merkprozesse *>(this);
    if (gefragt_.isEmpty()) {
        QMetaObject::invokeMethod(
            selbst, [this] { gefragt_.clear(); }, Qt::QueuedConnection);
    }
    auto &fragende = gefragt_[name];
    if (!fragende) {
        fragende = std::make_shared<Fragende>();
        quelle_.anzahl(name, selbst, [alle = fragende](qsizetype wert) {
            for (const auto &einer : *alle) {
                if (einer) {
                    einer->antworten(wert);
                }
            }
        });
    }
    fragende->push_back(new Einmalruf<qsizetype>(besitzer, std::move(fertig)));
}

} // namespace kalvaro
