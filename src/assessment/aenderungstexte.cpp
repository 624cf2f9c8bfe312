#include "assessment/aenderungstexte.h"

#include "foundation/formate.h"
#include "foundation/werte.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengsteListe = 10'000; // of devices: nobody reads more

// A true boolean, not a number or a text that reads like one.
bool gesetzt(const QJsonValue &wert, QStringView schluessel)
{
    return pfad(wert, schluessel) == QJsonValue(true);
}

} // namespace

QString menge(const QJsonValue &aenderungen)
{
    const double titel = zahl(aenderungen, u"djmdContent").value_or(0);
    const double playlisten = zahl(aenderungen, u"djmdPlaylist").value_or(0);
    QStringList stuecke;
    if (titel > 0) {
        stuecke.append(fZahl(titel) + (titel == 1 ? u" Titel"_s : u" Titeln"_s));
    }
    if (playlisten > 0) {
        stuecke.append(fZahl(playlisten) + (playlisten == 1 ? u" Playlist"_s : u" Playlisten"_s));
    }
    return stuecke.join(u" und "_s);
}

QString richtungen(const QJsonValue &ergebnis, bool probe)
{
    const QString hier = menge(pfad(ergebnis, u"aendert_geraet"));
    const QString dort = menge(pfad(ergebnis, u"aendert_zentrale"));
    if (hier.isEmpty() && dort.isEmpty()) {
        return probe ? u"Nur kleinere Unterschiede (Cues, Verlauf, Analysen)."_s
                     : u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s;
    }
    QStringList saetze;
    if (!hier.isEmpty()) {
        const QString anfang =
            probe ? u"Diesem Mac fehlen Änderungen an "_s : u"Übernommen: Änderungen an "_s;
        saetze.append(anfang + hier + u'.');
    }
    if (!dort.isEmpty()) {
        const QString anfang =
            probe ? u"Von hier kämen Änderungen an "_s : u"Gesichert: Änderungen an "_s;
        saetze.append(anfang + dort + u'.');
    }
    return saetze.join(u' ');
}

std::optional<QString> andereHinweise(const QJsonValue &antwort)
{
    QStringList saetze;
    const QJsonArray andere = pfad(antwort, u"andere").toArray();
    const qsizetype anzahl = std::min(andere.size(), laengsteListe);
    qsizetype laenge = 0;
    for (qsizetype i = 0; i < anzahl && laenge < laengsterText; ++i) {
        const QJsonValue geraet = andere.at(i);
        const QString name = u"„"_s + kurztext(geraet, u"name") + u"“"_s;
        if (gesetzt(geraet, u"rekordbox_offen")) {
            saetze.append(u"Auf "_s + name +
                          u" ist rekordbox noch offen – Änderungen von dort fehlen hier noch."_s);
        } else if (gesetzt(geraet, u"laeuft")) {
            saetze.append(name + u" überträgt gerade noch – dessen Änderungen fehlen hier noch."_s);
        } else {
            continue;
        }
        laenge += saetze.last().size();
    }
    if (saetze.isEmpty()) {
        return std::nullopt;
    }
    return gekuerzt(saetze.join(u' '));
}

} // namespace kalvaro
