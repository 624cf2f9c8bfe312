#include "ablauf/rekordboxwache.h"

#include "platform/prozesse.h"
#include "rekordbox/rekordbox.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds laengstesSpeichern{90};

} // namespace

Rekordboxwache::Rekordboxwache(const Uhr &uhr, const Prozesse &prozesse, const Rekordbox &rekordbox)
    : uhr_(uhr)
    , prozesse_(prozesse)
    , rekordbox_(rekordbox)
    , rbLief_(rekordboxOffen())
    , rbEnde_(uhr.laufzeit())
{
}

bool Rekordboxwache::rekordboxOffen() const
{
    return !Prozesse::namens(prozesse_.buendel(), u"rekordbox"_s).isEmpty();
}

void Rekordboxwache::wachen()
{
    const bool offen = rekordboxOffen();
    if (offen && !rbLief_) {
        rbLief_ = true;
        wartetAufAgent_.reset();
        Q_EMIT gestartet();
    } else if (!offen && rbLief_) {
        rbLief_ = false;
        wartetAufAgent_ = std::make_unique<QObject>();
        rbEnde_ = uhr_.laufzeit();
        Q_EMIT geschlossen();
    }
    if (!wartetAufAgent_) {
        return;
    }
    if (uhr_.laufzeit() - rbEnde_ > laengstesSpeichern) {
        ausgewartet();
        return;
    }
    // An answer to this wait is none to a later one.
    rekordbox_.laeuft(wartetAufAgent_.get(), [this](bool laeuft) {
        if (!laeuft) {
            ausgewartet();
        }
    });
}

void Rekordboxwache::ausgewartet()
{
    wartetAufAgent_.reset();
    Q_EMIT beendet();
}

} // namespace kalvaro
