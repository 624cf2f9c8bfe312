#pragma once

#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <optional>

namespace kalvaro {

// The kinds of outcome.
enum class Art {
    Gut,  // in step
    Warn, // not (fully) in step, nothing harmful
    Krit, // failed or stopped for safety
    Aus,  // nothing done because rekordbox is open here
};

// Its name in the log.
[[nodiscard]] QString artname(Art art);

// What a sync came to: the one value that decides what is shown, whether rekordbox may start now
// and whether an update is offered.
struct Bewertung
{
    Art art = Art::Warn;
    QString titel{};
    QString detail{};          // sentences joined by single blanks
    QString betrieb{};         // the server's mode; "schatten" is the dry run; "" without an answer
    bool startbar = false;     // rekordbox may start now
    bool offline = false;      // the server could not be reached
    bool beschaeftigt = false; // another sync keeps the server busy: worth another try soon
    QJsonValue antwort = QJsonValue::Undefined; // the whole answer; absent when the request failed
    std::optional<QString> neueVersion{};       // a newer version that the server offers ...
    std::optional<QString> updateAdresse{};     // ... and its "https://" address: both or neither

    bool operator==(const Bewertung &) const = default;
};

struct Updateangebot
{
    QString version;
    QString adresse;

    bool operator==(const Updateangebot &) const = default;
};

// The update that an answer offers; absent unless it is newer than the running version and its
// address begins with "https://".
[[nodiscard]] std::optional<Updateangebot> updateAngebot(const QJsonValue &antwort);

// The address as a URL that may be opened in the browser; absent when it is empty or malformed.
[[nodiscard]] std::optional<QUrl> updateUrl(const QString &adresse);

} // namespace kalvaro
