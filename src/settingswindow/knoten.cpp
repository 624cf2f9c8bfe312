#include "settingswindow/knoten.h"

#include "foundation/formate.h"
#include "foundation/werte.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int keine = -1;

// What decides where an entry stands. The rest is read when its place is known.
struct Eintrag
{
    QJsonObject felder;
    double seq = 0;
    int gruppe = 0;     // of the entries with the same "eltern"
    int kinder = keine; // the group that is its own
};

// All entries with one "eltern".
struct Gruppe
{
    int ab = 0; // its entries in Bauplan::reihe: from here up to before `bis`
    int bis = 0;
    bool obersteEbene = true;
};

struct Bauplan
{
    std::vector<Eintrag> eintraege; // in order of the answer
    std::vector<Gruppe> gruppen;    // in order of their first entry
    std::vector<int> reihe;         // the entries, group by group, siblings in order
};

// The readers for the two kinds of value that servers send most, without a look at the others.
QString alsText(const QJsonValue &wert)
{
    return wert.isString() ? wert.toString() : text(wert, u"");
}

double alsZahl(const QJsonValue &wert)
{
    return wert.isDouble() ? wert.toDouble() : zahl(wert, u"").value_or(0);
}

QSet<QString> mengeAus(const QJsonArray &liste)
{
    QSet<QString> menge;
    for (const auto wert : liste) {
        menge.insert(alsText(wert));
    }
    menge.remove(QString());
    return menge;
}

// Reads the entries, numbers their groups and gives each group to the first entry with its id. An
// entry without id owns none.
void gruppieren(Bauplan &plan, const QJsonArray &liste)
{
    plan.eintraege.reserve(static_cast<size_t>(liste.size()));
    QHash<QString, int> nummern;
    for (const auto wert : liste) {
        if (!wert.isObject()) {
            continue;
        }
        Eintrag e;
        e.felder = wert.toObject();
        e.seq = alsZahl(e.felder.value("seq"_L1));
        const QString eltern = alsText(e.felder.value("eltern"_L1));
        const auto nummer = nummern.constFind(eltern);
        if (nummer != nummern.constEnd()) {
            e.gruppe = nummer.value();
        } else {
            e.gruppe = static_cast<int>(plan.gruppen.size());
            nummern.insert(eltern, e.gruppe);
            plan.gruppen.emplace_back();
        }
        plan.eintraege.push_back(std::move(e));
    }
    for (Eintrag &e : plan.eintraege) {
        const QString id = alsText(e.felder.value("id"_L1));
        const int nummer = id.isEmpty() ? keine : nummern.value(id, keine);
        if (nummer == keine) {
            continue;
        }
        Gruppe &gruppe = plan.gruppen[static_cast<size_t>(nummer)];
        if (gruppe.obersteEbene && wahr(e.felder.value("ordner"_L1), u"")) {
            e.kinder = nummer;
        }
        gruppe.obersteEbene = false;
    }
}

// Fills the row: by group in the order of the answer, then each group by "seq".
void geschwisterOrdnen(Bauplan &plan)
{
    for (const Eintrag &e : plan.eintraege) {
        ++plan.gruppen[static_cast<size_t>(e.gruppe)].bis;
    }
    int ab = 0;
    for (Gruppe &gruppe : plan.gruppen) {
        gruppe.ab = ab;
        ab += std::exchange(gruppe.bis, ab);
    }
    plan.reihe.resize(plan.eintraege.size());
    for (size_t i = 0; i < plan.eintraege.size(); ++i) {
        int &bis = plan.gruppen[static_cast<size_t>(plan.eintraege[i].gruppe)].bis;
        plan.reihe[static_cast<size_t>(bis++)] = static_cast<int>(i);
    }
    const auto frueher = [&plan](int a, int b) {
        return plan.eintraege[static_cast<size_t>(a)].seq <
               plan.eintraege[static_cast<size_t>(b)].seq;
    };
    for (const Gruppe &gruppe : plan.gruppen) {
        const auto von = plan.reihe.begin() + gruppe.ab;
        const auto bis = plan.reihe.begin() + gruppe.bis;
        // Servers mostly send siblings in order.
        if (!std::is_sorted(von, bis, frueher)) {
            std::stable_sort(von, bis, frueher);
        }
    }
}

Knoten knotenAus(const QJsonObject &felder, const QSet<QString> &lokal)
{
    Knoten k;
    k.uuid = alsText(felder.value("uuid"_L1));
    k.name = gekuerzt(alsText(felder.value("name"_L1)));
    k.ordner = wahr(felder.value("ordner"_L1), u"");
    k.titel = alsZahl(felder.value("titel"_L1));
    k.haken = lokal.contains(k.uuid);
    return k;
}

// Appends the group's entries, each followed by its descendants.
void anhaengen(Knotenliste &alle, const Gruppe &oben, const Bauplan &plan,
               const QSet<QString> &lokal)
{
    struct Ebene
    {
        int naechster;
        int bis;
        int knoten;
    };
    std::vector<Ebene> offen{{oben.ab, oben.bis, keine}};
    while (!offen.empty()) {
        Ebene &ebene = offen.back();
        if (ebene.naechster == ebene.bis) {
            if (ebene.knoten != keine) {
                alle[static_cast<size_t>(ebene.knoten)].ende = static_cast<int>(alle.size());
            }
            offen.pop_back();
            continue;
        }
        const int nummer = plan.reihe[static_cast<size_t>(ebene.naechster++)];
        const Eintrag &e = plan.eintraege[static_cast<size_t>(nummer)];
        const int stelle = static_cast<int>(alle.size());
        Knoten &k = alle.emplace_back(knotenAus(e.felder, lokal));
        k.eltern = ebene.knoten;
        k.ende = stelle + 1;
        if (e.kinder != keine) {
            const Gruppe &kinder = plan.gruppen[static_cast<size_t>(e.kinder)];
            offen.push_back({kinder.ab, kinder.bis, stelle});
        }
    }
}

} // namespace

Knotenliste baumAus(const QJsonValue &antwort)
{
    const QSet<QString> lokal = mengeAus(pfad(antwort, u"lokal").toArray());
    Bauplan plan;
    gruppieren(plan, pfad(antwort, u"playlisten").toArray());
    geschwisterOrdnen(plan);
    Knotenliste alle;
    alle.reserve(plan.eintraege.size());
    for (const Gruppe &gruppe : plan.gruppen) {
        if (gruppe.obersteEbene) {
            anhaengen(alle, gruppe, plan, lokal);
        }
    }
    return alle;
}

std::vector<int> hakenSetzen(Knotenliste &alle, int stelle, bool an)
{
    const auto von = alle.begin() + stelle;
    std::for_each(von, alle.begin() + von->ende, [an](Knoten &knoten) { knoten.haken = an; });
    std::vector<int> geloest;
    if (!an) {
        for (int i = von->eltern; i >= 0; i = alle[static_cast<size_t>(i)].eltern) {
            if (std::exchange(alle[static_cast<size_t>(i)].haken, false)) {
                geloest.push_back(i);
            }
        }
    }
    return geloest;
}

QStringList auswahl(const Knotenliste &alle)
{
    QStringList uuids;
    QSet<QString> schon;
    for (const Knoten &knoten : alle) {
        if (!knoten.haken || knoten.uuid.isEmpty()) {
            continue;
        }
        const qsizetype vorher = schon.size();
        schon.insert(knoten.uuid);
        if (schon.size() != vorher) {
            uuids.append(knoten.uuid);
        }
    }
    return uuids;
}

QString zusammenfassung(const Knotenliste &alle, const QString &betrieb)
{
    qsizetype n = 0;
    double t = 0;
    for (const Knoten &knoten : alle) {
        if (knoten.haken && !knoten.ordner) {
            ++n;
            t += knoten.titel;
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
