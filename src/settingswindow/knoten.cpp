#include "settingswindow/knoten.h"

#include "foundation/formate.h"
#include "foundation/werte.h"
#include "settingswindow/baumbau.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

Knotenliste baumAus(const QJsonValue &antwort)
{
    Baumbau bau;
    const QJsonArray lokal = pfad(antwort, u"lokal").toArray();
    for (const QJsonValue uuid : lokal) {
        bau.gewaehlt(uuid);
    }
    const QJsonArray playlisten = pfad(antwort, u"playlisten").toArray();
    for (const QJsonValue wert : playlisten) {
        bau.eintrag(wert);
    }
    return bau.fertig();
}

std::vector<int> hakenSetzen(Knotenliste &alle, int stelle, bool an)
{
    for (int i = stelle; i < alle.ende(stelle); ++i) {
        alle.setHaken(i, an);
    }
    std::vector<int> geloest;
    if (!an) {
        for (int i = alle.eltern(stelle); i >= 0; i = alle.eltern(i)) {
            if (alle.haken(i)) {
                alle.setHaken(i, false);
                geloest.push_back(i);
            }
        }
    }
    return geloest;
}

namespace {

// Appends the text as JSON. Most need nothing but quotes.
void anhaengen(QByteArray &json, const QString &text)
{
    const bool einfach = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= u' ' && c < u'\u007f' && c != u'"' && c != u'\\';
    });
    if (einfach) {
        json.append('"').append(text.toLatin1()).append('"');
    } else {
        const QByteArray liste = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        json += QByteArrayView(liste).sliced(1).chopped(1);
    }
}

} // namespace

QByteArray auswahl(const Knotenliste &alle)
{
    QByteArray liste = "[";
    std::vector<bool> schon(alle.size());
    for (int i = 0; i < std::ssize(alle); ++i) {
        const int vetter = alle.namensvetter(i);
        if (!alle.haken(i) || vetter < 0 || schon[static_cast<size_t>(vetter)]) {
            continue;
        }
        schon[static_cast<size_t>(vetter)] = true;
        liste += liste.size() > 1 ? "," : "";
        anhaengen(liste, alle.uuid(i));
    }
    return liste + ']';
}

std::vector<bool> gewaehlte(const Knotenliste &alle)
{
    std::vector<bool> menge(alle.size());
    for (int i = 0; i < std::ssize(alle); ++i) {
        if (alle.haken(i) && alle.namensvetter(i) >= 0) {
            menge[static_cast<size_t>(alle.namensvetter(i))] = true;
        }
    }
    return menge;
}

QString zusammenfassung(const Knotenliste &alle, const QString &betrieb)
{
    qsizetype n = 0;
    double t = 0;
    for (int i = 0; i < std::ssize(alle); ++i) {
        if (alle.haken(i) && !alle.ordner(i)) {
            ++n;
            t += alle.titel(i);
        }
    }
    if (n == 0) {
        return u"Keine Playlist ausgewählt – alle Titel kommen von der Musikplatte."_s;
    }
    const QString wann = betrieb == u"schatten" ? u" Kopiert wird ab dem Ende des Probebetriebs."_s
                                                : u" Kopiert wird beim nächsten Abgleich."_s;
    return QString::number(n) + (n == 1 ? u" Playlist"_s : u" Playlisten"_s) + u" ausgewählt ("_s +
           fZahl(t) + u" Einträge)."_s + wann;
}

} // namespace kalvaro
