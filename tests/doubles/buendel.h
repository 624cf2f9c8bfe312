#pragma once

#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

namespace kalvaro {

enum class Plistform { Xml, Binaer };

// A property list written by libplist. Values are texts, whole numbers, or lists of texts.
[[nodiscard]] QByteArray plistBytes(Plistform form, const QMap<QString, QVariant> &eintraege);

// Lays out the bundle `ordner` with `info` as its "Contents/Info.plist" and an empty
// "Contents/MacOS".
void buendelSchreiben(const QString &ordner, const QByteArray &info);

// A folder of applications with a bundle for each version, "rekordbox VERSION/rekordbox.app".
class Programmordner
{
public:
    explicit Programmordner(const QStringList &versionen = {});

    [[nodiscard]] QString pfad() const { return ordner_.path(); }
    [[nodiscard]] QString buendel(const QString &version) const;

    // Adds the bundle of a version; returns its path.
    QString installieren(const QString &version) const;
    void deinstallieren(const QString &version) const;

private:
    QTemporaryDir ordner_;
};

} // namespace kalvaro
