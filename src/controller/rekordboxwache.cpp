#include "controller/rekordboxwache.h"

#include "platform/prozesse.h"
#include "rekordbox/rekordbox.h"

#include <algorithm>

namespace kalvaro {

namespace {

constexpr qint64 laengstesSpeichern = 90'000; // milliseconds

} // namespace

Rekordboxwache::Rekordboxwache(Uhr &zeit, const Prozesse &liste, const Rekordbox &rekordbox,
                               QObject *parent)
    : QObject(parent)
    , uhr_(zeit)
    , prozesse_(liste)
    , rekordbox_(rekordbox)
    , rbLief_(rekordboxOffen())
    , rbEnde_(zeit.jetzt())
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
        rbEnde_ = uhr_.jetzt();
        Q_EMIT geschlossen();
    }
    if (!wartetAufAgent_) {
        return;
    }
    if (rbEnde_.msecsTo(uhr_.jetzt()) <= laengstesSpeichern && rekordbox_.laeuft()) {
        return;
    }
    wartetAufAgent_ = false;
    Q_EMIT beendet();
}

} // namespace kalvaro
