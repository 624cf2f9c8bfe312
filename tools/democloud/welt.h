#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

// What the demo cloud knows: plain data without behaviour beyond counting. The operations on it
// are free functions (andere.h, abgleich.h, antworten.h); Dienst guards it with its lock.

// Number of changed rows by rekordbox table ("djmdContent" tracks, "djmdPlaylist" playlists, …).
using Aenderungen = QMap<QString, qint64>;

[[nodiscard]] qint64 anzahl(const Aenderungen &aenderungen);
// Adds `faktor` times `neu`; counts saturate instead of overflowing.
void dazu(Aenderungen &ziel, const Aenderungen &neu, qint64 faktor = 1);

enum class Betrieb { Schatten, Scharf };
[[nodiscard]] QString name(Betrieb betrieb);
[[nodiscard]] std::optional<Betrieb> betriebAus(const QString &name);

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

// Counts changes that enter the central library.
void mitzaehlen(Statistik &statistik, const Aenderungen &neu, qint64 faktor = 1);

// The differences that a dry run found.
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

// A fixed answer that replaces the cloud's own for one path.
struct FesteAntwort
{
    int status = 200;
    QByteArray inhalt = {};
};

struct Welt
{
    QDateTime beginn; // when the world's clock starts; set by Dienst when invalid
    Betrieb betrieb = Betrieb::Scharf;
    QString appVersion; // offered version; empty: no offer
    QString appUrl;
    Statistik statistik;
    QList<Geraet> geraete; // the first one is meant where a request names none
    QList<AnderesGeraet> andere;
    Aenderungen nachRekordbox; // what each sync with the reason "nachher" finds on the device
    QByteArray playlisten = QByteArrayLiteral("[]"); // JSON array, served as it is
    QHash<QString, FesteAntwort> festeAntworten;     // by path, for example "/api/stand"
};

// The device of that name, or null.
[[nodiscard]] Geraet *finde(Welt &welt, const QString &geraet);

// The address offered with version `version`.
[[nodiscard]] QString ladeadresse(const QString &version);
