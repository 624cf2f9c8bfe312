#include "ablauf/rekordboxwache.h"

#include "platform/prozesse.h"
#include "rekordbox/rekordbox.h"

#include <algorithm>

namespace kalvaro {

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
    const QStringList orte = prozesse_.buendel();
    return std::any_of(orte.begin(), orte.end(), [](const QString &ort) {
        return ort.sliced(ort.lastIndexOf(u'/') + 1) == u"rekordbox.app";
    });
}

void Rekordboxwache::wachen()
{
    const bool offen = rekordboxOffen();
    if (offen && !rbLief_) {
        rbLief_ = true;
        wartetAufAgent_ = false;
        Q_EMIT gestartet();
    } else if (!offen && rbLief_) {
        rbLief_ = false;
        wartetAufAgent_ = true;
        rbEnde_ = uhr_.laufzeit();
        Q_EMIT geschlossen();
    }
    if (!wartetAufAgent_) {
        return;
    }
    if (uhr_.laufzeit() - rbEnde_ <= laengstesSpeichern && rekordbox_.laeuft()) {
        return;
    }
    wartetAufAgent_ = false;
    Q_EMIT beendet();
}

} // namespace kalvaro
