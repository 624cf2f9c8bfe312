#include "platform/macos/macprozesse.h"

#include "platform/macos/pgrepzaehlung.h"

#include <QDir>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

MacProzesse::MacProzesse(Uhr &uhr, Buendelfrage buendel, QString werkzeug)
    : uhr_(uhr)
    , buendel_(std::move(buendel))
    , werkzeug_(std::move(werkzeug))
{
}

void MacProzesse::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    auto *const zaehlung = new Pgrepzaehlung(
        besitzer, std::move(fertig), [this, name] { return namens(buendel(), name).size(); });
    zaehlung->beginnen(uhr_, werkzeug_, name);
}

QStringList MacProzesse::buendel() const
{
    QStringList liste;
    for (const QString &ort : buendel_()) {
        const QString sauber = QDir::cleanPath(ort);
        if (QDir::isAbsolutePath(sauber) && !liste.contains(sauber)) {
            liste.append(sauber);
        }
    }
    return liste;
}

} // namespace kalvaro
