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
    , uhr(zeit)
    , prozesse(liste)
    , rekordbox_(rekordbox)
    , rbLief(rekordboxOffen())
    , rbEnde(zeit.jetzt())
{
}

bool Rekordboxwache::rekordboxOffen() const
{
    const QStringList orte = prozesse.buendel();
    return std::any_of(orte.begin(), orte.end(), [](const QString &ort) {
        return ort.sliced(ort.lastIndexOf(u'/') + 1) == u"rekordbox.app";
    });
}

void Rekordboxwache::wachen()
{
    const bool offen = rekordboxOffen();
    if (offen && !rbLief) {
        rbLief = true;
        wartetAufAgent = false;
        Q_EMIT gestartet();
    } else if (!offen && rbLief) {
        rbLief = false;
        wartetAufAgent = true;
        rbEnde = uhr.jetzt();
        Q_EMIT geschlossen();
    }
    if (!wartetAufAgent) {
        return;
    }
    if (rbEnde.msecsTo(uhr.jetzt()) <= laengstesSpeichern && rekordbox_.laeuft()) {
        return;
    }
    wartetAufAgent = false;
    Q_EMIT beendet();
}

} // namespace kalvaro
