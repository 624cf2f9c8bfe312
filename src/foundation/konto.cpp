#include "foundation/konto.h"

#include "foundation/datenordner.h"
#include "foundation/gewoehnlichedatei.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// What is wrong with the file, after its name.
QString mangeltext(Dateimangel mangel)
{
    switch (mangel) {
    case Dateimangel::Fehlt:
        return u"existiert nicht."_s;
    case Dateimangel::KeineDatei:
        return u"ist keine gewöhnliche Datei."_s;
    case Dateimangel::ImKreis:
        return u"lässt sich nicht öffnen: Die Verweise führen im Kreis."_s;
    case Dateimangel::Rechte:
        return u"lässt sich nicht öffnen: Es fehlen die Rechte."_s;
    case Dateimangel::Verschlossen:
        return u"lässt sich nicht öffnen."_s;
    case Dateimangel::Unlesbar:
        return u"lässt sich nicht lesen."_s;
    case Dateimangel::ZuGross:
        return u"ist zu groß für eine Kontodatei."_s;
    }
    return {};
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
    const auto bytes = gewoehnlichLesen(pfad);
    if (!bytes) {
        return tl::unexpected(u"Die Datei „%1“ "_s.arg(pfad) + mangeltext(bytes.error()));
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
