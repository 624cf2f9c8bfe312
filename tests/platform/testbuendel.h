#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

namespace kalvaro {

enum class Plistform { Xml, Binaer };

// A property list written by libplist. Values are texts, whole numbers, or lists of texts.
[[nodiscard]] QByteArray plistBytes(Plistform form, const QMap<QString, QVariant> &eintraege);

// Writes a file with its folders; ends the test when it cannot.
void dateiSchreiben(const QString &name, const QByteArray &inhalt, bool ausfuehrbar = false);

// Lays out the bundle `ordner` with `info` as its "Contents/Info.plist" and an empty
// "Contents/MacOS".
void buendelSchreiben(const QString &ordner, const QByteArray &info);

// While it lives, permissions apply, even to root: root acts as "nobody".
class Ohnmacht
{
public:
    Ohnmacht();
    ~Ohnmacht();
    Ohnmacht(const Ohnmacht &) = delete;
    Ohnmacht &operator=(const Ohnmacht &) = delete;

private:
    const bool warRoot;
};

} // namespace kalvaro
