#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

namespace kalvaro {

// Who this Mac is towards the server. Written by whoever sets the Mac up, only read here.
struct Konto
{
    QString name{};       // display name; `geraet` when the file gives none
    QString geraet{};     // device identifier, never empty once loaded
    QString schluessel{}; // account key; may be empty; never shown, never logged
    QStringList server{}; // base addresses in order of preference, at least one once loaded

    bool operator==(const Konto &) const = default;

    // Reads "konto.json" in the data folder. The error is a German sentence that names the file.
    [[nodiscard]] static tl::expected<Konto, QString> laden();

    // The two steps of laden(): the keys of the file as they stand there (none when it holds
    // something other than a JSON object), and the account that they make.
    [[nodiscard]] static tl::expected<QJsonObject, QString> felder();
    [[nodiscard]] static tl::expected<Konto, QString> ausFeldern(const QJsonObject &felder);

    [[nodiscard]] static QString kontodatei(); // absolute path of "konto.json"
};

} // namespace kalvaro
