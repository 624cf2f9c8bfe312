#include "steuerungsprobe.h"

#include <QAction>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QRegularExpression>

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

Steuerungsprobe::Steuerungsprobe()
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

Datenordner &Steuerungsprobe::ordner()
{
    static Datenordner einziger;
    return einziger;
}

void Steuerungsprobe::starten(bool hintergrund)
{
    steuerung = std::make_unique<Steuerung>(konto, adapter, hintergrund);
    vor();
}

void Steuerungsprobe::vor(double sekunden)
{
    uhr.vor(Sekunden(sekunden));
}

QString Steuerungsprobe::installieren(const QString &version) const
{
    return programme.installieren(version);
}

void Steuerungsprobe::deinstallieren(const QString &version) const
{
    programme.deinstallieren(version);
}

void Steuerungsprobe::rekordboxLaeuft(bool offen, int haupt, int agent)
{
    prozesse.buendelliste =
        offen ? QStringList{u"/Applications/rekordbox 7/rekordbox.app"_s} : QStringList();
    prozesse.laufend = {{u"rekordbox"_s, haupt}, {u"rekordboxAgent"_s, agent}};
}

QStringList Steuerungsprobe::anlaesse() const
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

QStringList Steuerungsprobe::anfragen() const
{
    return netz.zeilen().filter(QRegularExpression(u"^(?!GET http://cloud/api/status$)"_s));
}

QString Steuerungsprobe::kopf() const
{
    return statusobjekt.menue->actions().first()->text();
}

QAction *Steuerungsprobe::zeile(const QString &text) const
{
    const auto zeilen = statusobjekt.menue->actions();
    for (QAction *aktion : zeilen) {
        if (aktion->text() == text) {
            return aktion;
        }
    }
    qFatal("The menu has no row %s", qPrintable(text));
}

QString Steuerungsprobe::beschriftung(const QString &name) const
{
    const Hauptfenster *const fenster = steuerung->fenster();
    const auto *const element = fenster != nullptr ? fenster->findChild<QWidget *>(name) : nullptr;
    return element != nullptr ? element->property("text").toString() : QString();
}

} // namespace kalvaro
