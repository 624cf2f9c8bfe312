#pragma once

#include <QJsonValue>
#include <QString>

#include <functional>
#include <optional>

class QObject;

namespace kalvaro {

class Zentrale;
struct Auftrag;

// The last look at the server before rekordbox starts.
struct Startpruefung
{
    bool noetig = false;              // a sync must run first
    std::optional<QString> hinweis{}; // remark about other devices

    bool operator==(const Startpruefung &) const = default;
};

// The request for the state that the server knows of this device: 8 s at most, so that starting
// rekordbox is never held up long.
[[nodiscard]] Auftrag standAnfragen(const QString &geraet);

// Reads the check out of the server's state. Pure.
[[nodiscard]] Startpruefung standPruefen(const QJsonValue &stand);

// Asks the server whether changes from elsewhere wait, and logs what came of it. Without an answer
// no sync is needed: rekordbox then starts with the library as it is. For `fertig` see Einmalruf.
void startPruefen(Zentrale &zentrale, QObject *besitzer,
                  std::function<void(const Startpruefung &)> fertig);

} // namespace kalvaro
