#include "mainwindow/fensterwelt.h"

#include "doubles/ereignisse.h"
#include "mainwindow/statuskarte.h"

#include <QApplication>
#include <QTimer>

namespace kalvaro {

using namespace Qt::StringLiterals;

const QString rekordboxLaeuftDetail =
    u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch."_s;

Fensterwelt::Fensterwelt(const Aufbau &aufbau)
    : Testumgebung(aufbau.versionen)
    , ablauf({aufbau.name, aufbau.geraet, aufbau.schluessel, aufbau.server},
             mitNetz(aufbau.netz != nullptr ? *aufbau.netz : netz))
{
    netz.nach([this](const Netzanfrage &anfrage) -> std::optional<Transport::Ergebnis> {
        const QString weg = anfrage.url.path();
        if (weg == u"/api/abgleich") {
            return abgleiche.isEmpty() ? std::nullopt : std::optional(abgleiche.takeFirst());
        }
        const auto inhalt = weg == u"/api/stand" ? stand : QByteArray("{}");
        return inhalt ? std::optional(Scripttransport::antwort(200, *inhalt)) : std::nullopt;
    });
    ablauf.einst.autostart = aufbau.autostart;
    QObject::connect(&ablauf.starter, &Rekordboxstarter::hinweis, &ablauf.starter,
                     [this](const QString &hinweis) { hinweise.append(hinweis); });
    QGuiApplication::setQuitOnLastWindowClosed(false);
    fenster = std::make_unique<Hauptfenster>(ablauf, aufbau.verbleib, aufbau.bild);
    QObject::connect(fenster.get(), &Hauptfenster::beendenGewuenscht, fenster.get(),
                     [this] { ++beendenGewuenscht; });
}

void Fensterwelt::ruhe()
{
    ereignisseAbarbeiten();
}

std::optional<Art> Fensterwelt::art() const
{
    return teil<Statuskarte>(u"karteStatus"_s)->art();
}

QString Fensterwelt::countdown() const
{
    return teil<QWidget>(u"countdown"_s)->isHidden() ? QString() : text(u"lblCountdown"_s);
}

Transport::Ergebnis Fensterwelt::antwort(const QString &zustand, const QJsonObject &mehr)
{
    QJsonObject inhalt{{u"betrieb"_s, u"scharf"_s},
                       {u"statistik"_s, QJsonObject{{u"titel"_s, 12345},
                                                    {u"playlisten"_s, 321},
                                                    {u"hot_cues"_s, 4567},
                                                    {u"dateigroesse"_s, 123456000000.0},
                                                    {u"analysiert"_s, 12001},
                                                    {u"analysegroesse"_s, 52300000000.0},
                                                    {u"stand"_s, u"2026-03-13 18:05:12"_s}}}};
    for (auto i = mehr.begin(); i != mehr.end(); ++i) {
        inhalt.insert(i.key(), i.value());
    }
    return abgleichAntwort(zustand, inhalt);
}

Transport::Ergebnis Fensterwelt::offline()
{
    return Scripttransport::fehler(u"Verbindung weg."_s);
}

void Fensterwelt::beantworten(const Transport::Ergebnis &antwort)
{
    ruhe();
    netz.beantworten(antwort);
    ruhe();
}

void Fensterwelt::abgeglichen(const Transport::Ergebnis &antwort)
{
    fenster->oeffnen(true);
    beantworten(antwort);
}

void Fensterwelt::rekordboxGestartet()
{
    rekordboxOffen();
    ablauf.wache.wachen();
    ruhe();
}

void Fensterwelt::rekordboxBeendet()
{
    rekordboxZu();
    ablauf.wache.wachen();
    ruhe();
}

void Fensterwelt::laeuft(int anzahlRekordbox, int agent)
{
    prozesse.laufend = {{u"rekordbox"_s, anzahlRekordbox}, {u"rekordboxAgent"_s, agent}};
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
