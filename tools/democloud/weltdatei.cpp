#include "weltdatei.h"

#include "antworten.h"
#include "bibliothek.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>
#include <utility>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 groessteGanzzahl = 9'007'199'254'740'991; // the largest that JSON carries exactly

// A JSON value and its place, to be read and checked. The first mistake anywhere is kept in the
// shared `fehler` as "place: reason" (German); what is mistaken or missing reads as the default, so
// callers read everything and look at the mistake once, at the end. To be missing is no mistake.
struct Stelle
{
    QJsonValue wert;
    QString ort; // empty: the whole
    QString *fehler;

    [[nodiscard]] Stelle operator[](const QString &schluessel) const
    {
        return {wert[schluessel], ort.isEmpty() ? schluessel : ort + u'.' + schluessel, fehler};
    }
    [[nodiscard]] bool fehlt() const { return wert.isUndefined(); }
    void melden(const QString &grund) const
    {
        if (fehler->isEmpty()) {
            *fehler = (ort.isEmpty() ? u"oberste Ebene"_s : ort) + u": "_s + grund;
        }
    }
    [[nodiscard]] QJsonValue geprueft(bool passt, const QString &erwartet) const
    {
        if (!passt && !fehlt()) {
            melden(erwartet + u" wird erwartet"_s);
        }
        return passt ? wert : QJsonValue::Undefined;
    }

    [[nodiscard]] QString text(const QString &vorgabe = {}) const
    {
        return geprueft(wert.isString(), u"ein Text"_s).toString(vorgabe);
    }
    [[nodiscard]] QString pflichttext() const
    {
        QString gelesener = text();
        if (gelesener.isEmpty()) {
            melden(u"ein Text wird erwartet, der nicht leer ist"_s);
        }
        return gelesener;
    }
    [[nodiscard]] qint64 ganzzahl(qint64 vorgabe = 0, qint64 hoechstens = groessteGanzzahl) const
    {
        const double zahl = wert.toDouble(-1);
        const bool passt =
            zahl >= 0 && zahl <= static_cast<double>(hoechstens) && zahl == std::floor(zahl);
        return geprueft(passt, u"eine ganze Zahl von 0 bis %1"_s.arg(hoechstens))
            .toInteger(vorgabe);
    }
    [[nodiscard]] double sekunden(double vorgabe, double mindestens) const
    {
        const QString erwartet = u"eine Zahl von Sekunden ab %1"_s.arg(mindestens);
        return geprueft(wert.toDouble(-1) >= mindestens, erwartet).toDouble(vorgabe);
    }
    [[nodiscard]] QList<Stelle> liste() const
    {
        QList<Stelle> elemente;
        const QJsonArray werte = geprueft(wert.isArray(), u"eine Liste [ … ]"_s).toArray();
        for (const QJsonValue element : werte) {
            elemente.append({element, ort + u"[%1]"_s.arg(elemente.size()), fehler});
        }
        return elemente;
    }
    // The keys of an object.
    [[nodiscard]] QStringList schluessel() const
    {
        return geprueft(wert.isObject(), u"ein Objekt { … }"_s).toObject().keys();
    }
    // Demands an object without other keys.
    void nur(const QStringList &bekannte) const
    {
        const QStringList vorhandene = schluessel();
        for (const QString &name : vorhandene) {
            if (!bekannte.contains(name)) {
                const QString namen = bekannte.join(u", "_s);
                (*this)[name].melden(u"unbekannter Schlüssel (bekannt sind: %1)"_s.arg(namen));
            }
        }
    }
};

Aenderungen aenderungen(const Stelle &stelle)
{
    Aenderungen gelesene;
    const QStringList tabellen = stelle.schluessel();
    for (const QString &tabelle : tabellen) {
        gelesene.insert(tabelle, stelle[tabelle].ganzzahl());
    }
    return gelesene;
}

// `playlisten` stands for their number where the file names none.
Statistik statistik(const Stelle &stelle, qint64 playlisten)
{
    Statistik gelesene{.playlisten = playlisten, .stand = stelle[u"stand"_s].text()};
    QStringList bekannte{u"stand"_s};
    for (const auto &[name, zahl] : statistikzahlen) {
        bekannte.append(name.toString());
        gelesene.*zahl = stelle[name.toString()].ganzzahl(gelesene.*zahl);
    }
    stelle.nur(bekannte);
    return gelesene;
}

Geraet geraet(const Stelle &stelle)
{
    stelle.nur({u"name"_s, u"zustand"_s, u"aendert_geraet"_s, u"aendert_zentrale"_s, u"lokal"_s});
    Geraet gelesenes{.name = stelle[u"name"_s].pflichttext(),
                     .zustand = stelle[u"zustand"_s].text(u"bereit"_s),
                     .fuerGeraet = aenderungen(stelle[u"aendert_geraet"_s]),
                     .fuerZentrale = aenderungen(stelle[u"aendert_zentrale"_s])};
    const QList<Stelle> uuids = stelle[u"lokal"_s].liste();
    for (const Stelle &uuid : uuids) {
        gelesenes.lokal.append(uuid.text());
    }
    return gelesenes;
}

void geraeteLesen(Welt &welt, const Stelle &stelle)
{
    const QList<Stelle> elemente = stelle.liste();
    for (const Stelle &element : elemente) {
        const Geraet neues = geraet(element);
        if (finde(welt, neues.name) != nullptr) {
            element[u"name"_s].melden(u"„%1“ kommt zweimal vor"_s.arg(neues.name));
        }
        welt.geraete.append(neues);
    }
    if (stelle.fehlt()) {
        welt.geraete = {{.name = u"demo-mac"_s}};
    } else if (elemente.isEmpty()) {
        stelle.melden(u"mindestens ein Gerät wird gebraucht"_s);
    }
}

AnderesGeraet anderes(const Stelle &stelle)
{
    stelle.nur(
        {u"name"_s, u"periode"_s, u"offen_ab"_s, u"offen_dauer"_s, u"laeuft_dauer"_s, u"bringt"_s});
    AnderesGeraet gelesenes{.name = stelle[u"name"_s].text(),
                            .periode = stelle[u"periode"_s].sekunden(600, 1),
                            .offenAb = stelle[u"offen_ab"_s].sekunden(0, 0),
                            .offenDauer = stelle[u"offen_dauer"_s].sekunden(0, 0),
                            .laeuftDauer = stelle[u"laeuft_dauer"_s].sekunden(0, 0),
                            .bringt = aenderungen(stelle[u"bringt"_s])};
    if (gelesenes.offenAb + gelesenes.offenDauer + gelesenes.laeuftDauer > gelesenes.periode) {
        stelle[u"periode"_s].melden(
            u"kürzer als offen_ab, offen_dauer und laeuft_dauer zusammen"_s);
    }
    return gelesenes;
}

void playlistenLesen(Welt &welt, const Stelle &stelle)
{
    if (stelle.wert.isArray()) {
        welt.playlisten = QJsonDocument(stelle.wert.toArray()).toJson(QJsonDocument::Compact);
    } else if (stelle.wert.isDouble()) {
        welt.statistik.playlisten = stelle.ganzzahl(0, meistePlaylisten);
        welt.playlisten = bibliothek(welt.statistik.playlisten);
    } else if (!stelle.fehlt()) {
        stelle.melden(u"eine Liste [ … ] oder eine Anzahl wird erwartet"_s);
    }
}

Antwort festeAntwort(const Stelle &stelle)
{
    stelle.nur({u"status"_s, u"inhalt"_s, u"roh"_s});
    const qint64 status = stelle[u"status"_s].ganzzahl(200, 599);
    if (status < 200) {
        stelle[u"status"_s].melden(u"ein HTTP-Status von 200 bis 599 wird erwartet"_s);
    }
    QByteArray inhalt = stelle[u"roh"_s].text().toUtf8();
    if (const Stelle json = stelle[u"inhalt"_s]; !json.fehlt()) {
        inhalt = QJsonDocument(QJsonArray{json.wert}).toJson(QJsonDocument::Compact);
        inhalt = inhalt.sliced(1, inhalt.size() - 2); // without the brackets
    }
    return {.status = static_cast<int>(status), .inhalt = inhalt};
}

Welt gelesen(const Stelle &stelle)
{
    Welt welt;
    stelle.nur({u"betrieb"_s, u"app"_s, u"statistik"_s, u"geraete"_s, u"andere"_s, u"nachher"_s,
                u"playlisten"_s, u"antworten"_s});
    const auto betrieb = betriebAus(stelle[u"betrieb"_s].text(u"scharf"_s));
    if (!betrieb) {
        stelle[u"betrieb"_s].melden(u"„schatten“ oder „scharf“ wird erwartet"_s);
    }
    welt.betrieb = betrieb.value_or(Betrieb::Scharf);
    if (const Stelle app = stelle[u"app"_s]; !app.fehlt()) {
        app.nur({u"version"_s, u"url"_s});
        welt.appVersion = app[u"version"_s].pflichttext();
        welt.appUrl = app[u"url"_s].text(ladeadresse(welt.appVersion));
    }
    playlistenLesen(welt, stelle[u"playlisten"_s]);
    welt.statistik = statistik(stelle[u"statistik"_s], welt.statistik.playlisten);
    geraeteLesen(welt, stelle[u"geraete"_s]);
    const QList<Stelle> andere = stelle[u"andere"_s].liste();
    for (const Stelle &element : andere) {
        welt.andere.append(anderes(element));
    }
    welt.nachRekordbox = aenderungen(stelle[u"nachher"_s]);
    const Stelle antworten = stelle[u"antworten"_s];
    antworten.nur(wege());
    const QStringList pfade = antworten.schluessel();
    for (const QString &pfad : pfade) {
        welt.festeAntworten.insert(pfad, festeAntwort(antworten[pfad]));
    }
    return welt;
}

} // namespace

tl::expected<Welt, QString> weltLaden(const QString &pfad)
{
    QFile datei(pfad);
    const QFileInfo angaben(pfad);
    if (!datei.open(QIODevice::ReadOnly)) {
        return tl::unexpected(
            u"Welt „%1“: %2."_s.arg(pfad, !angaben.exists() ? u"die Datei gibt es nicht"_s
                                          : angaben.isDir() ? u"das ist ein Ordner"_s
                                                            : u"die Datei ist nicht lesbar"_s));
    }
    return weltAusJson(datei.readAll(), pfad);
}

tl::expected<Welt, QString> weltAusJson(const QByteArray &json, const QString &quelle)
{
    QJsonParseError syntax;
    const QJsonDocument dokument = QJsonDocument::fromJson(json, &syntax);
    if (syntax.error != QJsonParseError::NoError) {
        const QByteArray davor = json.left(syntax.offset);
        return tl::unexpected(
            u"Welt „%1“, Zeile %2, Spalte %3: hier ist das JSON nicht gültig."_s.arg(
                quelle, QString::number(davor.count('\n') + 1),
                QString::number(syntax.offset - davor.lastIndexOf('\n'))));
    }
    const QJsonValue ganzes =
        dokument.isObject() ? QJsonValue(dokument.object()) : QJsonValue(dokument.array());
    QString fehler;
    Welt welt = gelesen({ganzes, {}, &fehler});
    if (!fehler.isEmpty()) {
        return tl::unexpected(u"Welt „%1“, %2."_s.arg(quelle, fehler));
    }
    return welt;
}

} // namespace kalvaro::democloud
