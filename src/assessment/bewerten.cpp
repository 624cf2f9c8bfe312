#include "assessment/bewerten.h"

#include "assessment/aenderungstexte.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "foundation/werte.h"
#include "server/inhalt.h"
#include "server/zentrale.h"

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString nichtsZuTun = u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s;

double aenderungen(const QJsonValue &ergebnis)
{
    return summe(pfad(ergebnis, u"aendert_zentrale")) + summe(pfad(ergebnis, u"aendert_geraet"));
}

// A larger answer is not kept as a whole.
constexpr qsizetype groessteAntwort = qsizetype{1024} * 1024;

// What is read of an answer once it has been assessed.
QJsonValue ausgewaehlt(const QJsonValue &antwort)
{
    const auto zustand = [&antwort](QStringView wo) {
        return QJsonObject{{u"zustand"_s, kurztext(antwort, wo)}};
    };
    const QJsonObject statistik = pfad(antwort, u"statistik").toObject();
    QJsonObject knapp;
    for (auto feld = statistik.begin(); feld != statistik.end() && knapp.size() < 1000; ++feld) {
        const bool lang = feld->isString() || feld->isObject() || feld->isArray();
        knapp.insert(gekuerzt(feld.key()), lang ? kurztext(*feld, u"") : QJsonValue(*feld));
    }
    return QJsonObject{{u"ergebnis"_s, zustand(u"ergebnis.zustand")},
                       {u"geraet"_s, zustand(u"geraet.zustand")},
                       {u"statistik"_s, knapp}};
}

// A state that the server may report, and what it means. The detail is built from the whole answer.
struct Zustand
{
    QStringView name;
    QStringView titel;
    Art art;
    bool startbar;
    bool beschaeftigt;
    QString (*detail)(const QJsonValue &antwort);
};

const Zustand zustaende[] = {
    {u"aktuell", u"Bibliothek ist abgeglichen", Art::Gut, true, false,
     [](const QJsonValue &) { return nichtsZuTun; }},
    {u"abgeglichen", u"Bibliothek ist abgeglichen", Art::Gut, true, false,
     [](const QJsonValue &antwort) {
         const QJsonValue ergebnis = pfad(antwort, u"ergebnis");
         return aenderungen(ergebnis) != 0 ? richtungen(ergebnis, false) : nichtsZuTun;
     }},
    {u"rekordbox_offen", u"rekordbox läuft", Art::Aus, false, false,
     [](const QJsonValue &) { return u"Der Abgleich folgt, sobald rekordbox beendet ist."_s; }},
    {u"verschoben", u"Abgleich verschoben", Art::Warn, true, false,
     [](const QJsonValue &antwort) {
         const QString hinweis = kurztext(antwort, u"ergebnis.hinweis");
         return u"Es wurde nichts verändert, der nächste Abgleich holt es nach."_s +
                (hinweis.isEmpty() ? QString() : u" ("_s + hinweis + u')');
     }},
    {u"laeuft_schon", u"Cloud ist beschäftigt", Art::Warn, false, true,
     [](const QJsonValue &) {
         return u"Ein anderer Abgleich läuft noch. kalvaro versucht es gleich wieder."_s;
     }},
    {u"angehalten", u"Abgleich angehalten", Art::Krit, false, false,
     [](const QJsonValue &) {
         return u"Zur Sicherheit wurde nichts verändert: dieser Abgleich hätte ungewöhnlich viel "
                "gelöscht. Deine Bibliothek ist unverändert, der Betreiber der Cloud schaut es "
                "sich an."_s;
     }},
    {u"fehler", u"Abgleich gestört", Art::Krit, false, false,
     [](const QJsonValue &antwort) {
         return u"Es wurde nichts verändert. "_s + kurztext(antwort, u"ergebnis.fehler");
     }},
    {u"nicht_erreichbar", u"Die Cloud erreicht diesen Mac nicht", Art::Warn, true, false,
     [](const QJsonValue &) {
         return u"Der Fernzugang (SSH) zu diesem Mac fehlt gerade. rekordbox startet mit dem "
                "Stand dieses Macs."_s;
     }},
};

// The dry run: `ergebnis` is what the comparison found, absent when there was none.
void probeBewerten(Bewertung &b, const QJsonValue &ergebnis)
{
    b.startbar = true;
    b.art = Art::Gut;
    b.titel = u"Bibliothek ist abgeglichen"_s;
    b.detail = u"Identisch mit der Cloud. "_s + PROBE;
    if (ergebnis.isUndefined()) {
        b.titel = u"Bibliothek geprüft"_s;
        b.detail = PROBE;
    } else if (aenderungen(ergebnis) != 0) {
        b.art = Art::Warn;
        b.titel = u"Unterschiede gefunden"_s;
        b.detail = richtungen(ergebnis, true) + u' ' + PROBE;
    }
}

void zustandBewerten(Bewertung &b, const QString &zustand)
{
    if (zustand == u"schatten") {
        probeBewerten(b, pfad(b.antwort, u"ergebnis"));
        return;
    }
    if (zustand == u"schatten_unveraendert") {
        probeBewerten(b, pfad(b.antwort, u"geraet.schatten_ergebnis"));
        return;
    }
    const auto *const gefunden = std::find_if(std::begin(zustaende), std::end(zustaende),
                                              [&](const Zustand &z) { return z.name == zustand; });
    if (gefunden == std::end(zustaende)) {
        b.titel = u"Unbekannter Zustand"_s;
        b.detail = zustand;
        return;
    }
    b.art = gefunden->art;
    b.titel = gefunden->titel.toString();
    b.detail = gefunden->detail(b.antwort);
    b.startbar = gefunden->startbar;
    b.beschaeftigt = gefunden->beschaeftigt;
}

} // namespace

Bewertung antwortBewerten(const QJsonValue &antwort)
{
    Bewertung b;
    b.antwort = antwort;
    b.betrieb = kurztext(antwort, u"betrieb");
    const QString zustand = kurztext(antwort, u"ergebnis.zustand");
    zustandBewerten(b, zustand);

    // The states of the dry run bring its sentence themselves; a failure goes without it.
    const bool probestand = zustand == u"schatten" || zustand == u"schatten_unveraendert";
    if (b.betrieb == u"schatten" && !probestand && b.art != Art::Krit &&
        !b.detail.contains(u"Probebetrieb")) {
        b.detail += u' ' + PROBE;
    }
    if (b.startbar) {
        if (const auto hinweise = andereHinweise(antwort)) {
            b.detail += u' ' + *hinweise;
        }
    }
    if (const auto angebot = updateAngebot(antwort)) {
        b.neueVersion = angebot->version;
        b.updateAdresse = angebot->adresse;
    }
    return b;
}

Bewertung fehlerBewerten(const ZentraleFehler &fehler)
{
    Bewertung b;
    if (fehler.offline) {
        b.titel = u"Nicht abgeglichen"_s;
        b.detail =
            u"Keine Verbindung zur Cloud – rekordbox startet mit dem Stand dieses Macs. ("_s +
            fehler.meldung + u')';
        b.startbar = true;
        b.offline = true;
    } else {
        b.art = Art::Krit;
        b.titel = u"Abgleich nicht möglich"_s;
        b.detail = fehler.meldung;
    }
    return b;
}

void bewerten(Zentrale &zentrale, Anlass anlass, QObject *besitzer,
              std::function<void(const Bewertung &)> fertig)
{
    const Auftrag auftrag{.pfad = u"/api/abgleich"_s,
                          .methode = "POST",
                          .body = QJsonObject{{u"geraet"_s, zentrale.konto().geraet},
                                              {u"anlass"_s, anlassname(anlass)},
                                              {u"version"_s, VERSION}},
                          .zeit = Sekunden(480)};
    zentrale.anfrageLesen<Bewertung>(
        auftrag, besitzer,
        [](const QByteArray &daten, const Abbruch &abbruch) -> std::optional<Bewertung> {
            const auto antwort = inhalt(daten);
            if (!antwort || abbruch()) {
                return {};
            }
            Bewertung b = antwortBewerten(*antwort);
            if (daten.size() > groessteAntwort) {
                b.antwort = ausgewaehlt(*antwort);
            }
            return b;
        },
        [fertig = std::move(fertig)](const tl::expected<Bewertung, ZentraleFehler> &b) {
            if (!b) {
                fertig(fehlerBewerten(b.error()));
                return;
            }
            if (kurztext(b->antwort, u"ergebnis.zustand") == u"angehalten") {
                protokoll(u"angehalten: "_s + kurztext(b->antwort, u"geraet.zustand"));
            }
            fertig(*b);
        });
}

} // namespace kalvaro
