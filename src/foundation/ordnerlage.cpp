#include "foundation/ordnerlage.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace kalvaro {

namespace {

// The path itself, or the nearest parent that exists.
QFileInfo vorhandenes(const QString &pfad)
{
    QFileInfo ort(pfad);
    // A link to what is not there stands in the way of a folder.
    while (!ort.exists() && !ort.isSymLink() && !ort.isRoot() && ort.path() != ort.filePath()) {
        ort.setFile(ort.path());
    }
    return ort;
}

} // namespace

Ordnerlage ordnerlage(const QString &pfad, const QStringList &namen)
{
    const QFileInfo selbst(pfad);
    const QFileInfo ort = vorhandenes(pfad);
    Ordnerlage lage{.pfad = pfad, .da = selbst.exists(), .istOrdner = selbst.isDir()};
    // Making a file in a folder needs the right to search it, too.
    lage.beschreibbar = ort.isDir() && ort.isWritable() && ort.isExecutable();
    for (const QString &name : namen) {
        const QFileInfo datei(pfad + u'/' + name);
        if (datei.exists() && !datei.isWritable()) {
            lage.gesperrt.append(datei.filePath());
        }
    }
    std::error_code fehler;
    const auto platz =
        std::filesystem::space(QFile::encodeName(ort.filePath()).toStdString(), fehler);
    if (!fehler) {
        lage.frei = static_cast<double>(platz.available);
    }
    return lage;
}

} // namespace kalvaro
