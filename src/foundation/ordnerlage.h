#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kalvaro {

// Whether a folder can be written to, found out without writing.
struct Ordnerlage
{
    QString pfad{};
    bool da = false;              // something of this name exists
    bool istOrdner = false;       // and is a folder
    bool beschreibbar = false;    // files can be made in it, or it itself where it is missing
    QStringList gesperrt{};       // files in it that exist and may not be written: paths
    std::optional<double> frei{}; // bytes left for this user; absent when the system does not tell

    bool operator==(const Ordnerlage &) const = default;
};

// `namen` are the files in the folder that will be written. A folder that does not exist yet is
// judged by the nearest of its parents that does.
[[nodiscard]] Ordnerlage ordnerlage(const QString &pfad, const QStringList &namen);

} // namespace kalvaro
