#include "antworten.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

QJsonObject json(const Aenderungen &aenderungen)
{
    QJsonObject objekt;
    for (auto it = aenderungen.cbegin(); it != aenderungen.cend(); ++it) {
        objekt.insert(it.key(), it.value());
    }
    return objekt;
}

QJsonObject json(const Unterschiede &unterschiede)
{
    return {{u"aendert_zentrale"_s, json(unterschiede.zentrale)},
            {u"aendert_geraet"_s, json(unterschiede.geraet)}};
}

QJsonObject json(const Statistik &s)
{
    return {{u"titel"_s, s.titel},
            {u"playlisten"_s, s.playlisten},
            {u"hot_cues"_s, s.hotCues},
            {u"dateigroesse"_s, s.dateigroesse},
            {u"analysiert"_s, s.analysiert},
            {u"analysegroesse"_s, s.analysegroesse},
            {u"stand"_s, s.stand}};
}

QJsonObject ergebnis(const Abgleich &abgleich)
{
    QJsonObject objekt = json(abgleich.aenderungen);
    objekt.insert(u"zustand"_s, abgleich.zustand);
    if (!abgleich.hinweis.isEmpty()) {
        objekt.insert(u"hinweis"_s, abgleich.hinweis);
    }
    if (!abgleich.fehler.isEmpty()) {
        objekt.insert(u"fehler"_s, abgleich.fehler);
    }
    return objekt;
}

QJsonObject geraetAngaben(const Geraet &geraet, const Abgleich &abgleich)
{
    QJsonObject objekt{{u"name"_s, geraet.name}, {u"zustand"_s, abgleich.geraetZustand}};
    if (abgleich.letzterVergleich) {
        objekt.insert(u"schatten_ergebnis"_s, json(*abgleich.letzterVergleich));
    }
    return objekt;
}

} // namespace

QByteArray alsJson(const QJsonObject &objekt)
{
    return QJsonDocument(objekt).toJson(QJsonDocument::Compact);
}

QJsonObject statusAntwort(const Welt &welt, const QDateTime &jetzt)
{
    return {{u"zustand"_s, u"bereit"_s},
            {u"betrieb"_s, name(welt.betrieb)},
            {u"zeit"_s, jetzt.toString(u"yyyy-MM-dd HH:mm:ss"_s)}};
}

QJsonObject abgleichAntwort(const Welt &welt, const Geraet &geraet, const Abgleich &abgleich,
                            const QJsonArray &andere)
{
    QJsonObject objekt{{u"betrieb"_s, name(abgleich.betrieb)},
                       {u"geraet"_s, geraetAngaben(geraet, abgleich)},
                       {u"andere"_s, andere},
                       {u"statistik"_s, json(welt.statistik)}};
    if (!abgleich.zustand.isEmpty()) {
        objekt.insert(u"ergebnis"_s, ergebnis(abgleich));
    }
    if (!welt.appVersion.isEmpty()) {
        objekt.insert(u"app"_s,
                      QJsonObject{{u"version"_s, welt.appVersion}, {u"url"_s, welt.appUrl}});
    }
    return objekt;
}

QJsonObject standAntwort(const Welt &welt, const Geraet &geraet, const QJsonArray &andere)
{
    return {{u"geraet"_s, geraet.name},
            {u"betrieb"_s, name(welt.betrieb)},
            {u"ausstehend"_s, anzahl(geraet.fuerGeraet) != 0},
            {u"stand"_s, welt.statistik.stand},
            {u"andere"_s, andere}};
}

QByteArray playlistenAntwort(const Welt &welt, const Geraet &geraet)
{
    const QByteArray lokal =
        QJsonDocument(QJsonArray::fromStringList(geraet.lokal)).toJson(QJsonDocument::Compact);
    return "{\"lokal\":" + lokal + ",\"playlisten\":" + welt.playlisten + '}';
}

QJsonObject einstellungenAntwort(const Geraet &geraet)
{
    return {{u"geraet"_s, geraet.name}, {u"lokal"_s, QJsonArray::fromStringList(geraet.lokal)}};
}

QJsonObject fehlerAntwort(const QString &text)
{
    return {{u"fehler"_s, text}};
}
