#include "ablauf/abgleicher.h"

#include "assessment/bewerten.h"
#include "rekordbox/rekordbox.h"

#include <utility>

namespace kalvaro {

Abgleicher::Abgleicher(Zentrale &zentrale, const Rekordbox &rekordbox)
    : zentrale_(zentrale)
    , rekordbox_(rekordbox)
{
}

void Abgleicher::abgleich(Anlass anlass, QObject *besitzer, Rueckruf fertig)
{
    if (fertig) {
        wartende_.push_back({besitzer, std::move(fertig)});
    }
    if (laeuftGerade_) {
        return;
    }
    laeuftGerade_ = true;
    ++laeufe_;
    neues_ = false;
    Q_EMIT begonnen(anlass);
    // What rekordbox or its agent saves beside this run is not part of it. The answer to an earlier
    // run says nothing of a later one, which asks for itself.
    rekordbox_.laeuft(this, [this, lauf = laeufe_](bool belegt) {
        neues_ = neues_ || (belegt && lauf == laeufe_);
    });
    bewerten(zentrale_, anlass, this,
             [this, anlass](const Bewertung &b) { abgeschlossen(b, anlass); });
}

void Abgleicher::moeglich(QObject *besitzer, std::function<void(bool)> fertig)
{
    rekordbox_.laeuft(besitzer, [this, fertig = std::move(fertig)](bool belegt) {
        neues_ = neues_ || belegt;
        fertig(!belegt);
    });
}

void Abgleicher::abgeschlossen(const Bewertung &b, Anlass anlass)
{
    laeuftGerade_ = false;
    startbar_ = b.startbar;
    erfolglos_ = b.offline || b.beschaeftigt;
    neues_ = neues_ || b.art == Art::Aus;
    // Who asks from now on waits for a later run.
    const auto gerufene = std::exchange(wartende_, {});
    Q_EMIT fertig(b, anlass);
    for (const Wartender &einer : gerufene) {
        if (einer.besitzer) {
            einer.fertig(b);
        }
    }
}

} // namespace kalvaro
