#include "doubles/testumgebung.h"

#include "doubles/ereignisse.h"

#include <QJsonDocument>

namespace kalvaro {

using namespace Qt::StringLiterals;

Transport::Ergebnis jsonAntwort(const QJsonObject &inhalt)
{
    return Scripttransport::antwort(200, QJsonDocument(inhalt).toJson(QJsonDocument::Compact));
}

Transport::Ergebnis abgleichAntwort(const QString &zustand, const QJsonObject &mehr)
{
    QJsonObject inhalt = mehr;
    QJsonObject ergebnis = inhalt[u"ergebnis"].toObject();
    ergebnis.insert(u"zustand"_s, zustand);
    inhalt.insert(u"ergebnis"_s, ergebnis);
    return jsonAntwort(inhalt);
}

QJsonObject angebot(const QString &version)
{
    return {{u"app"_s, QJsonObject{{u"version"_s, version},
                                   {u"url"_s, u"https://kalvaro.example/"_s + version}}}};
}

Testumgebung::Testumgebung(const QStringList &versionen)
    : programme(versionen)
{
    ordner().leeren();
    netz.nach([this](const Netzanfrage &anfrage) -> std::optional<Transport::Ergebnis> {
        const QString weg = anfrage.url.path();
        if (weg == u"/api/status") {
            return Scripttransport::antwort(200, "{}");
        }
        auto &liste = weg == u"/api/abgleich" ? abgleiche : staende;
        return liste.isEmpty() ? std::nullopt : std::optional(liste.takeFirst());
    });
}

Umgebung Testumgebung::mitNetz(Transport &anderes)
{
    return {uhr,          anderes,      prozesse,     rekordbox,
            arbeitsplatz, anmeldestart, mitteilungen, statusobjekt};
}

Datenordner &Testumgebung::ordner()
{
    static Datenordner einziger;
    return einziger;
}

void Testumgebung::vor(double sekunden)
{
    ereignisseAbarbeiten();
    uhr.vor(Sekunden(sekunden));
    ereignisseAbarbeiten();
}

void Testumgebung::rekordboxLaeuft(bool offen, int haupt, int agent)
{
    prozesse.buendelliste =
        offen ? QStringList{u"/Applications/rekordbox 7/rekordbox.app"_s} : QStringList();
    prozesse.laufend = {{u"rekordbox"_s, haupt}, {u"rekordboxAgent"_s, agent}};
}

QStringList Testumgebung::anlaesse() const
{
    QStringList liste;
    for (const Netzanfrage &anfrage : netz.anfragen()) {
        if (anfrage.url.path() == u"/api/abgleich") {
            const auto body = QJsonDocument::fromJson(anfrage.body.value_or(QByteArray()));
            liste.append(body[u"anlass"].toString());
        }
    }
    return liste;
}

QStringList Testumgebung::wege() const
{
    QStringList liste;
    for (const Netzanfrage &anfrage : netz.anfragen()) {
        if (anfrage.url.path() != u"/api/status") {
            liste.append(anfrage.url.path());
        }
    }
    return liste;
}

} // namespace kalvaro
