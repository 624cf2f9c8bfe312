#pragma once

#include "assessment/bewertung.h"

#include <QObject>

#include <functional>
#include <optional>

namespace kalvaro {

// What the main window asks of the one who drives it.
class Treiber : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Asks for a sync. `fertig` is called once with what came of the run that is then in progress,
    // which need not be the one asked for.
    virtual void abgleich(const QString &anlass, std::function<void(const Bewertung &)> fertig) = 0;

    // Posts a desktop notification; a click on it opens `ziel`.
    virtual void mitteilen(const QString &titel, const QString &inhalt,
                           const std::optional<QString> &ziel) = 0;

    // Ends the program for good.
    virtual void beenden() = 0;
};

} // namespace kalvaro
