#include "bibliothek.h"

#include <QList>
#include <QUuid>

#include <array>
#include <span>

namespace kalvaro::democloud {

namespace {

using Namen = std::span<const char *const>;

constexpr qint64 playlistenJeOrdner = 8;
constexpr qint64 ordnerJeOrdner = 4;
constexpr qint64 ordnerStufe = 1'000'000'000; // keeps the ids of the folder levels apart

constexpr std::array oben{"Clubs", "Festivals", "Radio", "Archiv", "Privat"};
constexpr std::array mitte{"Sommer", "Herbst", "Winter", "Frühling", "Lieblinge", "Entdeckt"};
constexpr std::array unten{"Techno", "House", "Disco", "Drum & Bass", "Ambient", "Hip-Hop", "Funk"};
constexpr std::array listen{"Warm-up",   "Hauptzeit", "Afterhour",  "Klassiker",   "Neu geprüft",
                            "Übergänge", "Zugaben",   "Fundstücke", "Instrumental"};

struct Eintrag
{
    qint64 id = 0;
    QByteArray name;
    qint64 eltern = 0; // 0: none
    qint64 seq = 0;
    bool ordner = false;
};

// Version 5 (RFC 4122), so the same on every machine.
QUuid uuid(qint64 id)
{
    return QUuid::createUuidV5(QUuid(), QByteArray::number(id));
}

qint64 aufgerundet(qint64 wert, qint64 teiler)
{
    return (wert + teiler - 1) / teiler;
}

// Number of folders by level, from the ones that hold playlists up to the roots.
QList<qint64> ordnerJeStufe(qint64 playlisten)
{
    QList<qint64> stufen{aufgerundet(playlisten, playlistenJeOrdner)};
    while (stufen.size() < 3 || stufen.last() > ordnerJeOrdner) {
        stufen.append(aufgerundet(stufen.last(), ordnerJeOrdner));
    }
    return stufen;
}

qint64 ordnerId(qint64 stufe, qint64 nummer)
{
    return (stufe + 1) * ordnerStufe + nummer;
}

// The names in turn, from the second round on with its number.
QByteArray benannt(Namen namen, qint64 nummer)
{
    const auto n = static_cast<qint64>(namen.size());
    const QByteArray name = namen[static_cast<std::size_t>(nummer % n)];
    return nummer < n ? name : name + ' ' + QByteArray::number(nummer / n + 1);
}

// As bytes: QJsonObject takes ten times as long over a large library.
void anhaengen(QByteArray &json, const Eintrag &eintrag)
{
    const QUuid kennung = uuid(eintrag.id);
    json += json.size() > 1 ? ",{\"id\":\"" : "{\"id\":\"";
    json += QByteArray::number(eintrag.id);
    json += "\",\"uuid\":\"" + kennung.toByteArray(QUuid::WithoutBraces);
    json += "\",\"name\":\"" + eintrag.name;
    json += eintrag.ordner ? "\",\"ordner\":true" : "\",\"ordner\":false";
    json += ",\"titel\":" + QByteArray::number(eintrag.ordner ? 0 : 8 + kennung.data1 % 190);
    json += ",\"eltern\":\"";
    json += eintrag.eltern == 0 ? QByteArrayLiteral("root") : QByteArray::number(eintrag.eltern);
    json += "\",\"seq\":" + QByteArray::number(eintrag.seq) + '}';
}

Eintrag ordner(qint64 stufe, qint64 nummer, bool wurzel)
{
    const Namen namen = wurzel ? Namen(oben) : stufe == 0 ? Namen(unten) : Namen(mitte);
    return {.id = ordnerId(stufe, nummer),
            .name = benannt(namen, nummer),
            .eltern = wurzel ? 0 : ordnerId(stufe + 1, nummer / ordnerJeOrdner),
            .seq = (wurzel ? nummer : nummer % ordnerJeOrdner) + 1,
            .ordner = true};
}

// One playlist in eight lies beside the folders of the level above, so that folders hold both.
Eintrag playlist(qint64 nummer)
{
    const qint64 ordner = nummer / playlistenJeOrdner;
    const qint64 stelle = nummer % playlistenJeOrdner;
    const bool daneben = stelle == playlistenJeOrdner - 1;
    return {.id = nummer + 1,
            .name = benannt(listen, nummer),
            .eltern = daneben ? ordnerId(1, ordner / ordnerJeOrdner) : ordnerId(0, ordner),
            .seq = daneben ? ordnerJeOrdner + 1 + ordner % ordnerJeOrdner : stelle + 1};
}

} // namespace

QByteArray bibliothek(qint64 anzahl)
{
    QByteArray json = "[";
    const QList<qint64> stufen = anzahl > 0 ? ordnerJeStufe(anzahl) : QList<qint64>();
    for (qint64 stufe = stufen.size() - 1; stufe >= 0; --stufe) {
        for (qint64 nummer = 0; nummer < stufen.at(stufe); ++nummer) {
            anhaengen(json, ordner(stufe, nummer, stufe == stufen.size() - 1));
        }
    }
    for (qint64 nummer = 0; nummer < anzahl; ++nummer) {
        anhaengen(json, playlist(nummer));
    }
    return json + ']';
}

} // namespace kalvaro::democloud
