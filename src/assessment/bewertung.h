#pragma once

#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <optional>

namespace kalvaro {

// What a sync came to: the one value that decides what is shown, whether rekordbox may start now
// and whether an update is offered.
struct Bewertung
{
    // "gut": in step. "warn": not (fully) in step, nothing harmful. "krit": failed or stopped for
    // safety. "aus": nothing done because rekordbox is open here.
    QString art = QStringLiteral("warn");
    QString titel{};
    QString detail{};      // sentences joined by single blanks
    QString betrieb{};     // the server's mode; "schatten" is the dry run; "" without an answer
    bool startbar = false; // rekordbox may start now
    bool offline = false;  // the server could not be reached
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
