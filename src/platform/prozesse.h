#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace kalvaro {

// What the program asks of the process table.
class Prozesse
{
public:
    using Zahlruf = std::function<void(qsizetype)>;

    Prozesse() = default;
    Prozesse(const Prozesse &) = delete;
    Prozesse &operator=(const Prozesse &) = delete;
    virtual ~Prozesse() = default;

    // How many processes run whose name is exactly `name`. `fertig` (see Einmalruf) gets the number
    // as of some moment after the question, about 2 s later at the very latest. Where the system
    // does not tell, running bundles "NAME.app" are counted in their place. This object must
    // outlive `besitzer`.
    virtual void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const = 0;

    // The absolute paths of the application bundles ("…/rekordbox.app") from which processes run,
    // without a trailing slash. Cheap enough to be asked every few seconds.
    [[nodiscard]] virtual QStringList buendel() const = 0;

    // Those of `orte`, paths of bundles, whose last component is exactly "NAME.app".
    [[nodiscard]] static QStringList namens(QStringList orte, const QString &name)
    {
        orte.removeIf([datei = name + QStringLiteral(".app")](const QString &ort) {
            return ort.sliced(ort.lastIndexOf(u'/') + 1) != datei;
        });
        return orte;
    }
};

} // namespace kalvaro
