#include "weltdatei.h"

#include "beispielwelt.h"
#include "bibliothek.h"
#include "jsonpruefer.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

QString lesehindernis(const QString &pfad)
{
    const QFileInfo angaben(pfad);
    if (!angaben.exists()) {
        return u"die Datei gibt es nicht"_s;
    }
    if (angaben.isDir()) {
        return u"das ist ein Ordner"_s;
    }
    return angaben.isReadable() ? u"die Datei ist nicht lesbar"_s : u"die Zugriffsrechte fehlen"_s;
}

QString syntaxgrund(QJsonParseError::ParseError fehler)
{
    switch (fehler) {
    case QJsonParseError::UnterminatedObject:
    case QJsonParseError::UnterminatedArray:
    case QJsonParseError::MissingValueSeparator:
        return u"hier fehlt ein Komma oder eine schließende Klammer"_s;
    case QJsonParseError::MissingNameSeparator:
        return u"nach einem Schlüssel fehlt der Doppelpunkt"_s;
    case QJsonParseError::MissingObject:
        return u"hier fehlt ein Schlüssel in Anführungszeichen"_s;
    case QJsonParseError::IllegalValue:
    case QJsonParseError::TerminationByNumber:
    case QJsonParseError::IllegalNumber:
        return u"hier steht kein gültiger Wert"_s;
    case QJsonParseError::IllegalEscapeSequence:
    case QJsonParseError::UnterminatedString:
        return u"ein Text ist nicht abgeschlossen oder enthält eine ungültige Folge mit \\"_s;
    case QJsonParseError::IllegalUTF8String:
        return u"die Datei ist nicht in UTF-8 geschrieben"_s;
    case QJsonParseError::GarbageAtEnd:
        return u"nach dem Ende steht noch etwas"_s;
    case QJsonParseError::DeepNesting:
    case QJsonParseError::DocumentTooLarge:
        return u"die Datei ist zu groß oder zu tief geschachtelt"_s;
    case QJsonParseError::NoError:
        break;
    }
    return u"das ist kein JSON"_s;
}

QString zeileUndSpalte(const QByteArray &json, qsizetype stelle)
{
    const QByteArray davor = json.left(stelle);
    const qsizetype zeile = davor.count('\n') + 1;
    const qsizetype spalte = stelle - davor.lastIndexOf('\n');
    return u"Zeile %1, Spalte %2"_s.arg(zeile).arg(spalte);
}

Statistik statistik(const QJsonValue &wert, qint64 playlisten, QString &fehler)
{
    Jsonpruefer leser(wert, u"statistik"_s, fehler,
                      {u"titel"_s, u"playlisten"_s, u"hot_cues"_s, u"dateigroesse"_s,
                       u"analysiert"_s, u"analysegroesse"_s, u"stand"_s});
    const auto zahl = [&](const QString &s, qint64 vorgabe = 0) {
        return leser.ganzzahl(s, vorgabe, groessteGanzzahl);
    };
    return {.titel = zahl(u"titel"_s),
            .playlisten = zahl(u"playlisten"_s, playlisten),
            .hotCues = zahl(u"hot_cues"_s),
            .dateigroesse = zahl(u"dateigroesse"_s),
            .analysiert = zahl(u"analysiert"_s),
            .analysegroesse = zahl(u"analysegroesse"_s),
            .stand = leser.text(u"stand"_s)};
}

Geraet geraet(const QJsonValue &wert, const QString &ort, QString &fehler)
{
    Jsonpruefer leser(
        wert, ort, fehler,
        {u"name"_s, u"zustand"_s, u"aendert_geraet"_s, u"aendert_zentrale"_s, u"lokal"_s});
    return {.name = leser.pflichttext(u"name"_s),
            .zustand = leser.text(u"zustand"_s, u"bereit"_s),
            .fuerGeraet = leser.aenderungen(u"aendert_geraet"_s),
            .fuerZentrale = leser.aenderungen(u"aendert_zentrale"_s),
            .lokal = leser.texte(u"lokal"_s)};
}

AnderesGeraet anderes(const QJsonValue &wert, const QString &ort, QString &fehler)
{
    Jsonpruefer leser(
        wert, ort, fehler,
        {u"name"_s, u"periode"_s, u"offen_ab"_s, u"offen_dauer"_s, u"laeuft_dauer"_s, u"bringt"_s});
    AnderesGeraet geraet{.name = leser.text(u"name"_s),
                         .periode = leser.sekunden(u"periode"_s, 600, 1),
                         .offenAb = leser.sekunden(u"offen_ab"_s, 0, 0),
                         .offenDauer = leser.sekunden(u"offen_dauer"_s, 0, 0),
                         .laeuftDauer = leser.sekunden(u"laeuft_dauer"_s, 0, 0),
                         .bringt = leser.aenderungen(u"bringt"_s)};
    if (geraet.offenAb + geraet.offenDauer + geraet.laeuftDauer > geraet.periode) {
        leser.melden(u"periode"_s, u"kürzer als offen_ab, offen_dauer und laeuft_dauer zusammen"_s);
    }
    return geraet;
}

void geraeteLesen(Welt &welt, Jsonpruefer &leser, QString &fehler)
{
    if (!leser.hat(u"geraete"_s)) {
        welt.geraete = {{.name = u"demo-mac"_s}};
        return;
    }
    const auto elemente = leser.liste(u"geraete"_s);
    for (const auto &[wert, ort] : elemente) {
        Geraet neues = geraet(wert, ort, fehler);
        if (finde(welt, neues.name) != nullptr && fehler.isEmpty()) {
            fehler = ort + u".name: „%1“ kommt zweimal vor"_s.arg(neues.name);
        }
        welt.geraete.append(std::move(neues));
    }
    if (welt.geraete.isEmpty()) {
        leser.melden(u"geraete"_s, u"mindestens ein Gerät wird gebraucht"_s);
    }
}

void playlistenLesen(Welt &welt, Jsonpruefer &leser)
{
    const QJsonValue wert = leser.wert(u"playlisten"_s);
    if (wert.isArray()) {
        welt.playlisten = QJsonDocument(wert.toArray()).toJson(QJsonDocument::Compact);
    } else if (wert.isDouble()) {
        playlistenErzeugen(welt, leser.ganzzahl(u"playlisten"_s, 0, meistePlaylisten));
    } else if (!wert.isUndefined()) {
        leser.melden(u"playlisten"_s, u"eine Liste [ … ] oder eine Anzahl wird erwartet"_s);
    }
}

QByteArray serialisiert(const QJsonValue &wert)
{
    const QByteArray json = QJsonDocument(QJsonArray{wert}).toJson(QJsonDocument::Compact);
    return json.mid(1, json.size() - 2);
}

void festeAntwortenLesen(Welt &welt, const QJsonValue &wert, QString &fehler)
{
    Jsonpruefer leser(wert, u"antworten"_s, fehler,
                      {u"/api/status"_s, u"/api/abgleich"_s, u"/api/stand"_s, u"/api/playlisten"_s,
                       u"/api/einstellungen"_s});
    const QStringList pfade = wert.toObject().keys();
    for (const QString &pfad : pfade) {
        Jsonpruefer innen(leser.wert(pfad), leser.ort(pfad), fehler,
                          {u"status"_s, u"inhalt"_s, u"roh"_s});
        const qint64 status = innen.ganzzahl(u"status"_s, 200, 599);
        if (status < 200) {
            innen.melden(u"status"_s, u"ein HTTP-Status von 200 bis 599 wird erwartet"_s);
        }
        const QByteArray roh = innen.text(u"roh"_s).toUtf8();
        const QByteArray inhalt =
            innen.hat(u"inhalt"_s) ? serialisiert(innen.wert(u"inhalt"_s)) : roh;
        welt.festeAntworten.insert(pfad, {.status = static_cast<int>(status), .inhalt = inhalt});
    }
}

void appLesen(Welt &welt, const QJsonValue &wert, QString &fehler)
{
    Jsonpruefer leser(wert, u"app"_s, fehler, {u"version"_s, u"url"_s});
    welt.appVersion = leser.pflichttext(u"version"_s);
    welt.appUrl = leser.text(u"url"_s, ladeadresse(welt.appVersion));
}

void betriebLesen(Welt &welt, Jsonpruefer &leser)
{
    const auto betrieb = betriebAus(leser.text(u"betrieb"_s, u"scharf"_s));
    if (!betrieb) {
        leser.melden(u"betrieb"_s, u"„schatten“ oder „scharf“ wird erwartet"_s);
    }
    welt.betrieb = betrieb.value_or(Betrieb::Scharf);
}

Welt gelesen(const QJsonValue &wert, QString &fehler)
{
    Welt welt;
    Jsonpruefer leser(wert, {}, fehler,
                      {u"betrieb"_s, u"app"_s, u"statistik"_s, u"geraete"_s, u"andere"_s,
                       u"nachher"_s, u"playlisten"_s, u"antworten"_s});
    betriebLesen(welt, leser);
    playlistenLesen(welt, leser);
    if (leser.hat(u"app"_s)) {
        appLesen(welt, leser.wert(u"app"_s), fehler);
    }
    if (leser.hat(u"statistik"_s)) {
        welt.statistik = statistik(leser.wert(u"statistik"_s), welt.statistik.playlisten, fehler);
    }
    geraeteLesen(welt, leser, fehler);
    const auto andere = leser.liste(u"andere"_s);
    for (const auto &[element, ort] : andere) {
        welt.andere.append(anderes(element, ort, fehler));
    }
    welt.nachRekordbox = leser.aenderungen(u"nachher"_s);
    if (leser.hat(u"antworten"_s)) {
        festeAntwortenLesen(welt, leser.wert(u"antworten"_s), fehler);
    }
    return welt;
}

} // namespace

tl::expected<Welt, QString> weltLaden(const QString &pfad)
{
    QFile datei(pfad);
    if (QFileInfo(pfad).isDir() || !datei.open(QIODevice::ReadOnly)) {
        return tl::unexpected(u"Welt „%1“: %2."_s.arg(pfad, lesehindernis(pfad)));
    }
    return weltAusJson(datei.readAll(), pfad);
}

tl::expected<Welt, QString> weltAusJson(const QByteArray &json, const QString &quelle)
{
    QJsonParseError syntax;
    const QJsonDocument dokument = QJsonDocument::fromJson(json, &syntax);
    if (syntax.error != QJsonParseError::NoError) {
        return tl::unexpected(u"Welt „%1“, %2: %3."_s.arg(
            quelle, zeileUndSpalte(json, syntax.offset), syntaxgrund(syntax.error)));
    }
    QString fehler;
    const QJsonValue wert =
        dokument.isObject() ? QJsonValue(dokument.object()) : QJsonValue(dokument.array());
    Welt welt = gelesen(wert, fehler);
    if (!fehler.isEmpty()) {
        return tl::unexpected(u"Welt „%1“, %2."_s.arg(quelle, fehler));
    }
    return welt;
}
