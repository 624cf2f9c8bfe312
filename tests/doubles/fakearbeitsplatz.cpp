#include "doubles/fakearbeitsplatz.h"

#include <QObject>

namespace kalvaro {

void FakeArbeitsplatz::starten(const QString &buendel, QObject *besitzer,
                               std::function<void(std::optional<QString>)> fertig)
{
    starts.append(buendel);
    QMetaObject::invokeMethod(
        besitzer, [ruf = std::move(fertig), grund = fehler] { ruf(grund); }, Qt::QueuedConnection);
}

void FakeArbeitsplatz::oeffnen(const QUrl &adresse)
{
    if (adresse.isValid() && (adresse.scheme() == u"http" || adresse.scheme() == u"https")) {
        adressen.append(adresse);
    }
}

void FakeArbeitsplatz::nachVorn(QWindow &fenster)
{
    vorne.append(&fenster);
}

void FakeArbeitsplatz::auftreten(Auftritt auftritt)
{
    auftritte.append(auftritt);
}

} // namespace kalvaro
