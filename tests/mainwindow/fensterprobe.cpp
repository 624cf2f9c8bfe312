#include "mainwindow/fensterprobe.h"

#include "doubles/ereignisse.h"
#include "mainwindow/statuskarte.h"

#include <QApplication>
#include <QJsonObject>
#include <QTimer>

namespace kalvaro {

using namespace Qt::StringLiterals;

const QString rekordboxLaeuftDetail =
    u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch."_s;

Fensterprobe::Fensterprobe(const Aufbau &aufbau)
    : programme(aufbau.versionen)
    , rekordbox(prozesse, programme.pfad())
    , zentrale({aufbau.name, aufbau.geraet, aufbau.schluessel, aufbau.server},
               aufbau.netz != nullptr ? *aufbau.netz : netz)
    , treiber(aufbau.mitTreiber ? std::make_unique<Treiberdouble>() : nullptr)
{
    netz.nach([this](const Netzanfrage &anfrage) -> std::optional<Transport::Ergebnis> {
        const QString pfad = anfrage.url.path();
        const auto inhalt = pfad == u"/api/status"  ? QByteArray("{}")
                            : pfad == u"/api/stand" ? stand
                                                    : antwort;
        return inhalt ? std::optional(Scripttransport::antwort(200, *inhalt)) : std::nullopt;
    });
    einst.autostart = aufbau.autostart;
    QGuiApplication::setQuitOnLastWindowClosed(false);
    fenster = std::make_unique<Hauptfenster>(
        Umgebung{zentrale, einst, uhr, rekordbox, arbeitsplatz, anmeldestart}, aufbau.bild,
        treiber.get());
}

void Fensterprobe::ruhe()
{
    ereignisseAbarbeiten();
}

QString Fensterprobe::art() const
{
    return teil<Statuskarte>(u"karteStatus"_s)->art();
}

QString Fensterprobe::countdown() const
{
    return teil<QWidget>(u"countdown"_s)->isHidden() ? QString() : text(u"lblCountdown"_s);
}

Bewertung Fensterprobe::gut()
{
    const QJsonObject statistik{{u"titel"_s, 12345},
                                {u"playlisten"_s, 321},
                                {u"hot_cues"_s, 4567},
                                {u"dateigroesse"_s, 123456000000.0},
                                {u"analysiert"_s, 12001},
                                {u"analysegroesse"_s, 52300000000.0},
                                {u"stand"_s, u"2026-03-13 18:05:12"_s}};
    return {.art = u"gut"_s,
            .titel = u"Bibliothek ist abgeglichen"_s,
            .detail = u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s,
            .betrieb = u"scharf"_s,
            .startbar = true,
            .antwort = QJsonObject{{u"statistik"_s, statistik}}};
}

void Fensterprobe::laeuft(int anzahlRekordbox, int agent)
{
    prozesse.laufend = {{u"rekordbox"_s, anzahlRekordbox}, {u"rekordboxAgent"_s, agent}};
}

QStringList Fensterprobe::anfragen() const
{
    QStringList pfade;
    for (const Netzanfrage &anfrage : netz.anfragen()) {
        if (anfrage.url.path() != u"/api/status") {
            pfade.append(anfrage.url.path());
        }
    }
    return pfade;
}

void Fensterprobe::abgeglichen(const Bewertung &b)
{
    fenster->oeffnen(true);
    treiber->beantworten(b);
    ruhe();
}

bool beendetDasProgramm(const std::function<void()> &tat)
{
    constexpr int weiter = 7;
    QTimer::singleShot(0, qApp, [&tat] {
        tat();
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(weiter); });
    });
    return QCoreApplication::exec() != weiter;
}

} // namespace kalvaro
