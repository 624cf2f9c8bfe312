#include "bibliothek.h"

#include <QList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 playlistenJeOrdner = 8;
constexpr qint64 ordnerJeOrdner = 4;
constexpr qint64 ordnerStufe = 1'000'000'000; // keeps the ids of the folder levels apart

constexpr std::array oben{"Clubs", "Festivals", "Radio", "Archiv", "Privat"};
constexpr std::array mitte{"Sommer", "Herbst", "Winter", "Frühling", "Lieblinge", "Entdeckt"};
constexpr std::array unten{"Techno", "House", "Disco", "Drum & Bass", "Ambient", "Hip-Hop", "Funk"};
constexpr std::array listen{"Warm-up",   "Hauptzeit", "Afterhour",  "Klassiker",   "Neu geprüft",
                            "Übergänge", "Zugaben",   "Fundstücke", "Instrumental"};

// SplitMix64 (Steele, Lea, Flood 2014): spreads consecutive numbers evenly.
quint64 gestreut(quint64 wert)
{
    wert += 0x9E3779B97F4A7C15U;
    wert = (wert ^ (wert >> 30U)) * 0xBF58476D1CE4E5B9U;
    wert = (wert ^ (wert >> 27U)) * 0x94D049BB133111EBU;
    return wert ^ (wert >> 31U);
}

QByteArray uuid(quint64 kennung)
{
    const QByteArray hex = QByteArray::number(gestreut(kennung), 16).rightJustified(16, '0') +
                           QByteArray::number(gestreut(~kennung), 16).rightJustified(16, '0');
    return hex.left(8) + '-' + hex.mid(8, 4) + '-' + hex.mid(12, 4) + '-' + hex.mid(16, 4) + '-' +
           hex.mid(20);
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

QByteArray ordnerId(qint64 stufe, qint64 nummer)
{
    return QByteArray::number((stufe + 1) * ordnerStufe + nummer);
}

template<std::size_t n>
QByteArray benannt(const std::array<const char *, n> &namen, qint64 nummer)
{
    const auto stelle = static_cast<std::size_t>(nummer);
    const QByteArray name(namen.at(stelle % n));
    return stelle < n ? name : name + ' ' + QByteArray::number(stelle / n + 1);
}

struct Eintrag
{
    QByteArray id;
    QByteArray uuid;
    QByteArray name;
    bool ordner = false;
    qint64 titel = 0;
    QByteArray eltern;
    qint64 seq = 0;
};

void anhaengen(QByteArray &json, const Eintrag &eintrag)
{
    json += json.size() > 1 ? ",{\"id\":\"" : "{\"id\":\"";
    json += eintrag.id;
    json += "\",\"uuid\":\"";
    json += eintrag.uuid;
    json += "\",\"name\":\"";
    json += eintrag.name;
    json += eintrag.ordner ? "\",\"ordner\":true,\"titel\":" : "\",\"ordner\":false,\"titel\":";
    json += QByteArray::number(eintrag.titel);
    json += ",\"eltern\":\"";
    json += eintrag.eltern;
    json += "\",\"seq\":";
    json += QByteArray::number(eintrag.seq);
    json += '}';
}

QByteArray ordnerName(qint64 stufe, qint64 stufen, qint64 nummer)
{
    if (stufe == stufen - 1) {
        return benannt(oben, nummer);
    }
    return stufe == 0 ? benannt(unten, nummer) : benannt(mitte, nummer);
}

void ordnerAnhaengen(QByteArray &json, const QList<qint64> &stufen)
{
    for (qint64 stufe = stufen.size() - 1; stufe >= 0; --stufe) {
        for (qint64 nummer = 0; nummer < stufen.at(stufe); ++nummer) {
            const bool wurzel = stufe == stufen.size() - 1;
            const QByteArray id = ordnerId(stufe, nummer);
            anhaengen(json,
                      {.id = id,
                       .uuid = uuid(id.toULongLong()),
                       .name = ordnerName(stufe, stufen.size(), nummer),
                       .ordner = true,
                       .eltern = wurzel ? "root" : ordnerId(stufe + 1, nummer / ordnerJeOrdner),
                       .seq = (wurzel ? nummer : nummer % ordnerJeOrdner) + 1});
        }
    }
}

// One playlist in eight lies beside the folders of the level above, so that folders hold both.
Eintrag playlist(qint64 nummer)
{
    const qint64 ordner = nummer / playlistenJeOrdner;
    const qint64 stelle = nummer % playlistenJeOrdner;
    const bool daneben = stelle == playlistenJeOrdner - 1;
    return {.id = QByteArray::number(nummer + 1),
            .uuid = uuid(static_cast<quint64>(nummer)),
            .name = benannt(listen, nummer),
            .titel = static_cast<qint64>(gestreut(static_cast<quint64>(nummer)) % 190) + 8,
            .eltern = daneben ? ordnerId(1, ordner / ordnerJeOrdner) : ordnerId(0, ordner),
            .seq = daneben ? ordnerJeOrdner + 1 + ordner % ordnerJeOrdner : stelle + 1};
}

} // namespace

QByteArray bibliothek(qint64 anzahl)
{
    QByteArray json = "[";
    if (anzahl > 0) {
        constexpr qint64 bytesJeEintrag = 190;
        json.reserve(anzahl * bytesJeEintrag);
        ordnerAnhaengen(json, ordnerJeStufe(anzahl));
        for (qint64 nummer = 0; nummer < anzahl; ++nummer) {
            anhaengen(json, playlist(nummer));
        }
    }
    return json + ']';
}

QString playlistUuid(qint64 nummer)
{
    return QString::fromLatin1(uuid(static_cast<quint64>(nummer)));
}
