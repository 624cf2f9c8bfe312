#include "foundation/konto.h"

#include "foundation/datenordner.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <filesystem>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 groessteKontodatei =
    qint64{4} * 1024 * 1024; // bytes; usual ones have some hundred

using Inhalt = tl::expected<QByteArray, QString>;

Inhalt lesen(const QString &pfad)
{
    const QString kopf = u"Die Datei „%1“ "_s.arg(pfad);
    std::error_code fehler;
    const auto art = std::filesystem::status(QFile::encodeName(pfad).toStdString(), fehler).type();
    if (art == std::filesystem::file_type::not_found) {
        return tl::unexpected(kopf + u"existiert nicht."_s);
    }
    // Anything but a plain file (a folder, a pipe) cannot be read, and a pipe would block for ever.
    if (!fehler && art != std::filesystem::file_type::regular) {
        return tl::unexpected(kopf + u"ist keine gewöhnliche Datei."_s);
    }
    QFile datei(pfad);
    if (fehler || !datei.open(QIODevice::ReadOnly)) {
        return tl::unexpected(kopf + (QFileInfo(pfad).isReadable()
                                          ? u"lässt sich nicht öffnen."_s
                                          : u"lässt sich nicht öffnen: Es fehlen die Rechte."_s));
    }
    const QByteArray bytes = datei.read(groessteKontodatei + 1);
    if (datei.error() != QFile::NoError) {
        return tl::unexpected(kopf + u"lässt sich nicht lesen."_s);
    }
    if (bytes.size() > groessteKontodatei) {
        return tl::unexpected(kopf + u"ist zu groß für eine Kontodatei."_s);
    }
    return bytes;
}

// The place of a parse error as people count: line and character, both from 1.
QString stelle(const QByteArray &bytes, qsizetype versatz)
{
    const QByteArray davor = bytes.first(std::clamp<qsizetype>(versatz, 0, bytes.size()));
    const QString zeile = QString::fromUtf8(davor.sliced(davor.lastIndexOf('\n') + 1));
    return u"Zeile %1, Zeichen %2"_s.arg(davor.count('\n') + 1).arg(zeile.size() + 1);
}

// A list that holds anything other than strings counts as no list at all.
QStringList adressen(const QJsonValue &wert)
{
    QStringList liste;
    const QJsonArray eintraege = wert.toArray();
    for (const QJsonValue eintrag : eintraege) {
        if (!eintrag.isString()) {
            return {};
        }
        QString adresse = eintrag.toString();
        if (adresse.endsWith(u'/')) {
            adresse.chop(1);
        }
        liste.append(adresse);
    }
    return liste;
}

} // namespace

QString Konto::kontodatei()
{
    return datei(u"konto.json"_s);
}

tl::expected<Konto, QString> Konto::laden()
{
    return felder().and_then(ausFeldern);
}

tl::expected<QJsonObject, QString> Konto::felder()
{
    const QString pfad = kontodatei();
    const Inhalt bytes = lesen(pfad);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    QJsonParseError fehler;
    const QJsonObject felder = QJsonDocument::fromJson(*bytes, &fehler).object();
    if (fehler.error != QJsonParseError::NoError) {
        return tl::unexpected(u"Die Datei „%1“ ist kein gültiges JSON (%2)."_s.arg(
            pfad, stelle(*bytes, fehler.offset)));
    }
    return felder;
}

tl::expected<Konto, QString> Konto::ausFeldern(const QJsonObject &felder)
{
    Konto konto;
    konto.name = felder[u"name"].toString();
    konto.geraet = felder[u"geraet"].toString();
    konto.schluessel = felder[u"schluessel"].toString();
    konto.server = adressen(felder[u"server"]);
    if (konto.geraet.isEmpty() || konto.server.isEmpty()) {
        return tl::unexpected(kontodatei() + u" ist unvollständig."_s);
    }
    if (konto.name.isEmpty()) {
        konto.name = konto.geraet;
    }
    return konto;
}

} // namespace kalvaro
