#include "pruefung/kontolage.h"

#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>
#include <optional>
#include <vector>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString feldName = u"name"_s;
const QString feldGeraet = u"geraet"_s;
const QString feldSchluessel = u"schluessel"_s;
const QString feldServer = u"server"_s;
const QStringList felderDesKontos{feldName, feldGeraet, feldSchluessel, feldServer};

// As it would be typed on a keyboard without umlauts.
QString gefaltet(const QString &wort)
{
    QString w = wort.toLower();
    w.replace(u"ä"_s, u"ae"_s).replace(u"ö"_s, u"oe"_s).replace(u"ü"_s, u"ue"_s);
    return w.replace(u"ß"_s, u"ss"_s);
}

// How many characters must be added, dropped or changed to get from one to the other (Levenshtein).
qsizetype abstand(const QString &a, const QString &b)
{
    std::vector<qsizetype> zeile(static_cast<size_t>(b.size()) + 1);
    for (size_t j = 0; j < zeile.size(); ++j) {
        zeile[j] = static_cast<qsizetype>(j);
    }
    for (qsizetype i = 1; i <= a.size(); ++i) {
        qsizetype schraeg = zeile[0];
        zeile[0] = i;
        for (size_t j = 1; j < zeile.size(); ++j) {
            const bool gleich = a[i - 1] == b[static_cast<qsizetype>(j) - 1];
            const qsizetype ersetzt = schraeg + (gleich ? 0 : 1);
            schraeg = zeile[j];
            zeile[j] = std::min({ersetzt, zeile[j] + 1, zeile[j - 1] + 1});
        }
    }
    return zeile.back();
}

// The key of the file that most likely is meant to be `feld`.
std::optional<QString> verschrieben(const QJsonObject &felder, const QString &feld)
{
    constexpr qsizetype laengsterName = 40; // far more than any that two mistakes can make
    std::optional<QString> bester;
    qsizetype naechster = std::min<qsizetype>(2, (feld.size() - 1) / 2) + 1;
    const QStringList namen = felder.keys();
    for (const QString &name : namen) {
        if (felderDesKontos.contains(name) || name.size() > laengsterName) {
            continue;
        }
        if (const qsizetype weite = abstand(gefaltet(name.trimmed()), feld); weite < naechster) {
            naechster = weite;
            bester = name;
        }
    }
    return bester;
}

QString artname(const QJsonValue &wert)
{
    switch (wert.type()) {
    case QJsonValue::Null:
        return u"null"_s;
    case QJsonValue::Bool:
        return u"ein Wahrheitswert"_s;
    case QJsonValue::Double:
        return u"eine Zahl"_s;
    case QJsonValue::String:
        return u"ein Text"_s;
    case QJsonValue::Array:
        return u"eine Liste"_s;
    case QJsonValue::Object:
        return u"ein Objekt"_s;
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

QString textmangel(const QString &feld, const QJsonValue &wert)
{
    const QString anfang = u"„"_s + feld + u"“ "_s;
    if (!wert.isString()) {
        return anfang + u"ist "_s + artname(wert) + u" statt eines Textes"_s;
    }
    if (wert.toString().isEmpty()) {
        return anfang + u"ist leer"_s;
    }
    if (wert.toString() != wert.toString().trimmed()) {
        return anfang + u"beginnt oder endet mit einem Leerzeichen"_s;
    }
    return {};
}

QString listenmangel(const QJsonValue &wert)
{
    const QString anfang = u"„"_s + feldServer + u"“ "_s;
    if (!wert.isArray()) {
        return anfang + u"ist "_s + artname(wert) + u" statt einer Liste von Texten"_s;
    }
    const QJsonArray liste = wert.toArray();
    if (liste.isEmpty()) {
        return anfang + u"ist eine leere Liste"_s;
    }
    const auto fremd = std::find_if(liste.begin(), liste.end(),
                                    [](const QJsonValue &eintrag) { return !eintrag.isString(); });
    if (fremd != liste.end()) {
        return u"an Stelle %1 von „%2“ steht %3 statt eines Textes"_s.arg(
            QString::number(fremd - liste.begin() + 1), feldServer, artname(*fremd));
    }
    return {};
}

// A key may also stand there under another name, or as a number.
bool sicherOhneSchluessel(const Kontolage &lage)
{
    if (!lage.konto || !lage.felder) {
        return false;
    }
    const QStringList namen = lage.felder->keys();
    return lage.konto->schluessel.isEmpty() &&
           std::all_of(namen.begin(), namen.end(), [&lage](const QString &name) {
               return felderDesKontos.contains(name) &&
                      (name != feldSchluessel || lage.felder->value(name).isString());
           });
}

QString maengelsatz(const QStringList &maengel)
{
    return maengel.join(u"; "_s);
}

} // namespace

Kontolage Kontolage::lesen()
{
    const QFileInfo datei(Konto::kontodatei());
    const QFileInfo ordner(datei.path());
    Kontolage lage{.pfad = datei.filePath(),
                   .ordnerZu = ordner.isDir() && !ordner.isExecutable(),
                   .da = datei.exists(),
                   .istDatei = datei.isFile(),
                   .lesbar = datei.isReadable(),
                   .rechte = datei.permissions(),
                   .felder = Konto::felder()};
    lage.konto = lage.felder.and_then(Konto::ausFeldern);
    return lage;
}

QStringList feldmaengel(const QJsonObject &felder)
{
    QStringList maengel;
    for (const QString &feld : felderDesKontos) {
        if (felder.contains(feld)) {
            const QJsonValue wert = felder[feld];
            maengel.append(feld == feldServer ? listenmangel(wert) : textmangel(feld, wert));
        } else if (const auto anders = verschrieben(felder, feld)) {
            maengel.append(u"„"_s + *anders + u"“ heißt hier „"_s + feld + u'“');
        } else if (feld != feldName) {
            maengel.append(u"„"_s + feld + u"“ fehlt"_s);
        }
    }
    maengel.removeAll(QString());
    return maengel;
}

QString schluesselAus(const QJsonObject &felder)
{
    const QString feld = felder.contains(feldSchluessel)
                             ? feldSchluessel
                             : verschrieben(felder, feldSchluessel).value_or(QString());
    return felder[feld].toString();
}

Befund kontobefund(const Kontolage &lage)
{
    Befund b{.bereich = u"konto"_s, .name = u"Konto"_s};
    if (!lage.konto) {
        b.text = lage.konto.error();
        if (lage.ordnerZu) {
            b.schritt = u"Gib deinem Benutzer den Zugang zu dem Ordner, in dem sie liegt."_s;
        } else if (lage.da && !lage.istDatei) {
            b.schritt = u"Räume weg, was dort liegt, und lege die Datei an."_s;
        } else if (!lage.da) {
            b.schritt = u"Lege die Datei dort an; ihren Inhalt kennt, wer die Cloud betreibt."_s;
        } else if (!lage.lesbar) {
            b.schritt = u"Mach die Datei für deinen Benutzer lesbar."_s;
        } else if (!lage.felder) {
            b.schritt = u"Berichtige die Datei."_s;
        } else {
            b.schritt = u"Berichtige die Datei: "_s + maengelsatz(feldmaengel(*lage.felder)) + u'.';
        }
        return b;
    }
    const qsizetype anzahl = lage.konto->server.size();
    b.text = u"Gerät „"_s + lage.konto->geraet + u"“, "_s +
             (anzahl == 1 ? u"eine Adresse"_s : QString::number(anzahl) + u" Adressen"_s);
    if (const QStringList maengel = feldmaengel(lage.felder.value_or(QJsonObject()));
        !maengel.isEmpty()) {
        b.text += u" (Anmerkung: "_s + maengelsatz(maengel) + u')';
    }
    return b;
}

Befund rechtebefund(const Kontolage &lage)
{
    constexpr QFile::Permissions andere =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    Befund b{.bereich = u"kontorechte"_s, .name = u"Rechte der Kontodatei"_s};
    if (sicherOhneSchluessel(lage)) {
        b.text = u"enthält keinen Schlüssel"_s;
    } else if (lage.rechte & andere) {
        b.text = u"Andere Benutzer dieses Rechners können den Schlüssel lesen oder ändern."_s;
        b.schritt = u"chmod 600 '"_s + QString(lage.pfad).replace(u'\'', u"'\\''"_s) + u'\'';
    } else {
        b.text = u"nur für dich"_s;
    }
    return b;
}

} // namespace kalvaro
