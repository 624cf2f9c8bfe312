#include "settingswindow/baumbau.h"

#include "foundation/werte.h"

#include <algorithm>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The readers for the two kinds of value that servers send most, without a look at the others.
QString alsText(const QJsonValue &wert)
{
    return wert.isString() ? wert.toString() : text(wert, u"");
}

double alsZahl(const QJsonValue &wert)
{
    return wert.isDouble() ? wert.toDouble() : zahl(wert, u"").value_or(0);
}

} // namespace

int Baumbau::gruppeVon(const QString &eltern)
{
    const auto nummer = nummern_.constFind(eltern);
    if (nummer != nummern_.constEnd()) {
        return nummer.value();
    }
    const int neu = static_cast<int>(gruppen_.size());
    nummern_.insert(eltern, neu);
    schluessel_ += 2 * eltern.size();
    gruppen_.emplace_back();
    return neu;
}

void Baumbau::eintrag(const Rohtexte &roh)
{
    Eintrag e;
    e.seq = roh.seq;
    e.titel = roh.titel;
    e.ordner = roh.ordner;
    e.id = ids_.hinzuUtf8(roh.id);
    e.uuid = texte_.hinzuUtf8(roh.uuid);
    e.name = roh.name.size() <= laengsterText ? texte_.hinzuUtf8(roh.name)
                                              : texte_.hinzu(gekuerzt(QString::fromUtf8(roh.name)));
    // Servers mostly send siblings side by side.
    if (letzteGruppe_ == keine || letzteEltern_ != roh.eltern) {
        letzteEltern_ = roh.eltern.toByteArray();
        letzteGruppe_ = gruppeVon(QString::fromUtf8(roh.eltern));
    }
    e.gruppe = letzteGruppe_;
    eintraege_.push_back(e);
}

void Baumbau::eintrag(const QJsonValue &wert)
{
    if (!wert.isObject()) {
        return;
    }
    const QJsonObject felder = wert.toObject();
    Eintrag e;
    e.seq = alsZahl(felder.value("seq"_L1));
    e.titel = alsZahl(felder.value("titel"_L1));
    e.ordner = wahr(felder.value("ordner"_L1), u"");
    e.id = ids_.hinzu(alsText(felder.value("id"_L1)));
    e.uuid = texte_.hinzu(alsText(felder.value("uuid"_L1)));
    e.name = texte_.hinzu(gekuerzt(alsText(felder.value("name"_L1))));
    e.gruppe = gruppeVon(alsText(felder.value("eltern"_L1)));
    letzteGruppe_ = keine;
    eintraege_.push_back(e);
}

void Baumbau::gewaehlt(const QJsonValue &uuid)
{
    const QString name = alsText(uuid);
    if (!name.isEmpty()) {
        lokal_.insert(name);
        schluessel_ += 2 * name.size();
    }
}

void Baumbau::ohneEintraege()
{
    eintraege_.clear();
    gruppen_.clear();
    nummern_.clear();
    letzteGruppe_ = keine;
    texte_ = {};
    ids_ = {};
}

// With what fertig() adds: a node, its place among its siblings, its name in search form.
qint64 Baumbau::bytes() const
{
    constexpr qint64 jeEintrag = sizeof(Eintrag) + sizeof(Knotenliste::Ast) + 3 * sizeof(int);
    constexpr qint64 jeGruppe = sizeof(Gruppe) + 100;
    constexpr qint64 jeGewaehlter = 60;
    return jeEintrag * std::ssize(eintraege_) + jeGruppe * std::ssize(gruppen_) +
           jeGewaehlter * lokal_.size() + schluessel_ + 2 * texte_.bytes() + ids_.bytes();
}

// Gives each group to the first entry with its id. An entry without id owns none.
void Baumbau::gruppenVergeben()
{
    for (Eintrag &e : eintraege_) {
        const int nummer = e.id.laenge == 0 ? keine : nummern_.value(ids_.text(e.id), keine);
        if (nummer == keine) {
            continue;
        }
        Gruppe &gruppe = gruppen_[static_cast<size_t>(nummer)];
        if (gruppe.obersteEbene && e.ordner) {
            e.kinder = nummer;
        }
        gruppe.obersteEbene = false;
    }
}

// Fills the row: by group in the order of the answer, then each group by "seq".
void Baumbau::geschwisterOrdnen()
{
    for (const Eintrag &e : eintraege_) {
        ++gruppen_[static_cast<size_t>(e.gruppe)].bis;
    }
    int ab = 0;
    for (Gruppe &gruppe : gruppen_) {
        gruppe.ab = ab;
        ab += std::exchange(gruppe.bis, ab);
    }
    reihe_.resize(eintraege_.size());
    for (size_t i = 0; i < eintraege_.size(); ++i) {
        int &bis = gruppen_[static_cast<size_t>(eintraege_[i].gruppe)].bis;
        reihe_[static_cast<size_t>(bis++)] = static_cast<int>(i);
    }
    const auto frueher = [this](int a, int b) {
        return eintraege_[static_cast<size_t>(a)].seq < eintraege_[static_cast<size_t>(b)].seq;
    };
    for (const Gruppe &gruppe : gruppen_) {
        const auto von = reihe_.begin() + gruppe.ab;
        const auto bis = reihe_.begin() + gruppe.bis;
        // Servers mostly send siblings in order.
        if (!std::is_sorted(von, bis, frueher)) {
            std::stable_sort(von, bis, frueher);
        }
    }
}

Knotenliste::Ast Baumbau::astAus(const Eintrag &e, int eltern) const
{
    const bool haken = !lokal_.isEmpty() && lokal_.contains(texte_.text(e.uuid));
    return {.titel = e.titel,
            .eltern = eltern,
            .uuid = e.uuid,
            .name = e.name,
            .ordner = e.ordner,
            .haken = haken};
}

// Appends the group's entries, each followed by its descendants.
void Baumbau::anhaengen(Knotenliste &alle, const Gruppe &oben) const
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
                alle.schliessen(ebene.knoten);
            }
            offen.pop_back();
            continue;
        }
        const int nummer = reihe_[static_cast<size_t>(ebene.naechster++)];
        const Eintrag &e = eintraege_[static_cast<size_t>(nummer)];
        const int stelle = alle.anfuegen(astAus(e, ebene.knoten));
        if (e.kinder != keine) {
            const Gruppe &kinder = gruppen_[static_cast<size_t>(e.kinder)];
            offen.push_back({kinder.ab, kinder.bis, stelle});
        }
    }
}

Knotenliste Baumbau::fertig()
{
    gruppenVergeben();
    ids_ = {};
    nummern_ = {};
    geschwisterOrdnen();
    Knotenliste alle;
    alle.reservieren(eintraege_.size());
    for (const Gruppe &gruppe : gruppen_) {
        if (gruppe.obersteEbene) {
            anhaengen(alle, gruppe);
        }
    }
    eintraege_ = {};
    reihe_ = {};
    alle.abschliessen(std::move(texte_));
    return alle;
}

} // namespace kalvaro
