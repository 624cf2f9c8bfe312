#pragma once

#include "anfrage.h"

#include <QDateTime>
#include <QMap>
#include <QStringList>

#include <array>
#include <optional>

namespace kalvaro::democloud {

// What the demo cloud knows: plain data, and how the clock moves it. What requests do to it stands
// in abgleich.h and antworten.h; Democloud guards it with its lock.

// Number of changed rows by rekordbox table ("djmdContent" tracks, "djmdPlaylist" playlists, …).
using Aenderungen = QMap<QString, qint64>;

// Adds `faktor` times `neu`; counts saturate instead of overflowing.
void dazu(Aenderungen &ziel, const Aenderungen &neu, qint64 faktor = 1);
// Whether there is anything but zeros.
[[nodiscard]] bool wartetEtwas(const Aenderungen &aenderungen);

enum class Betrieb { Schatten, Scharf };
[[nodiscard]] QString name(Betrieb betrieb);
[[nodiscard]] std::optional<Betrieb> betriebAus(const QString &text);

// Figures of the central library; sizes in bytes.
struct Statistik
{
    qint64 titel = 0;
    qint64 playlisten = 0;
    qint64 hotCues = 0;
    qint64 dateigroesse = 0;
    qint64 analysiert = 0;
    qint64 analysegroesse = 0;
    QString stand = {}; // "yyyy-MM-dd HH:mm:ss", local time of the cloud; empty: never synced

    bool operator==(const Statistik &) const = default;
};

// The figures of Statistik under their JSON names.
inline constexpr std::array<std::pair<QStringView, qint64 Statistik::*>, 6> statistikzahlen{
    {{u"titel", &Statistik::titel},
     {u"playlisten", &Statistik::playlisten},
     {u"hot_cues", &Statistik::hotCues},
     {u"dateigroesse", &Statistik::dateigroesse},
     {u"analysiert", &Statistik::analysiert},
     {u"analysegroesse", &Statistik::analysegroesse}}};

// Counts changes that enter the central library.
void mitzaehlen(Statistik &statistik, const Aenderungen &neu, qint64 faktor = 1);
// `zeit` as "stand" and other times are written.
[[nodiscard]] QString zeitpunkt(const QDateTime &zeit);

// Differences between a device and the central library, by the side that they will change.
struct Unterschiede
{
    Aenderungen zentrale = {};
    Aenderungen geraet = {};

    bool operator==(const Unterschiede &) const = default;
};

// A device that may ask for syncs.
struct Geraet
{
    QString name;
    QString zustand = QStringLiteral("bereit");
    Aenderungen fuerGeraet = {};                       // in the cloud, not yet on the device
    Aenderungen fuerZentrale = {};                     // on the device, not yet in the cloud
    QStringList lokal = {};                            // uuids of the playlists kept on the device
    std::optional<Unterschiede> letzterVergleich = {}; // of the last dry run
};

// Another device of the account, moved by the clock alone. From the world's beginning it repeats:
// closed for `offenAb`, rekordbox open for `offenDauer`, transferring for `laeuftDauer`, closed for
// the rest of `periode` (all seconds, sum of the three at most `periode`). Each transfer that ends
// brings the changes `bringt`.
struct AnderesGeraet
{
    QString name;
    double periode = 600;
    double offenAb = 0;
    double offenDauer = 0;
    double laeuftDauer = 0;
    Aenderungen bringt = {};
    qint64 verbucht = 0; // transfers already handed to the devices
};

struct Lage
{
    bool offen = false;  // rekordbox is open there
    bool laeuft = false; // it is transferring

    bool operator==(const Lage &) const = default;
};

// `sekunden` since the world's beginning; before it a device is closed.
[[nodiscard]] Lage lage(const AnderesGeraet &geraet, double sekunden);
// Transfers that have ended by then.
[[nodiscard]] qint64 ankuenfte(const AnderesGeraet &geraet, double sekunden);

struct Welt
{
    QDateTime beginn; // when the world's clock starts; set by Democloud when invalid
    Betrieb betrieb = Betrieb::Scharf;
    QString appVersion; // offered version; empty: no offer
    QString appUrl;
    Statistik statistik;
    QList<Geraet> geraete; // the first one is meant where a request names none
    QList<AnderesGeraet> andere;
    Aenderungen nachRekordbox; // what each sync with the reason "nachher" finds on the device
    QByteArray playlisten = QByteArrayLiteral("[]"); // JSON array, served as it is
    QHash<QString, Antwort> festeAntworten;          // by path, for example "/api/stand"

    // Seconds from the beginning to `jetzt`.
    [[nodiscard]] double alter(const QDateTime &jetzt) const
    {
        return static_cast<double>(beginn.msecsTo(jetzt)) / 1000.0;
    }
};

// Brings everything that arrived from other devices until `jetzt` into the central library and
// into each device's pending changes. A clock that went backwards changes nothing.
void fortschreiben(Welt &welt, const QDateTime &jetzt);

// The device of that name, or null.
[[nodiscard]] Geraet *finde(Welt &welt, const QString &geraet);

// The address offered with version `version`.
[[nodiscard]] QString ladeadresse(const QString &version);

} // namespace kalvaro::democloud
