#pragma once

#include "settingswindow/knotenliste.h"

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QSet>

#include <vector>

namespace kalvaro {

// Builds the tree of an answer from its entries, one after the other; the rules are those of
// baumAus(). Takes whatever a server sends, in linear time but for sorting.
class Baumbau
{
public:
    // What counts of an entry, as bytes of valid UTF-8.
    struct Rohtexte
    {
        QByteArrayView id{};
        QByteArrayView eltern{};
        QByteArrayView uuid{};
        QByteArrayView name{};
        double titel = 0;
        double seq = 0;
        bool ordner = false;
    };

    void eintrag(const Rohtexte &roh);
    void eintrag(const QJsonValue &wert); // dropped when it is no map
    void gewaehlt(const QJsonValue &uuid);

    // Begins anew with the entries, or with the choice.
    void ohneEintraege();
    void ohneGewaehlte() { lokal_.clear(); }

    // About what this has taken so far, in bytes.
    [[nodiscard]] qint64 bytes() const;

    // The tree; may be called once.
    [[nodiscard]] Knotenliste fertig();

private:
    static constexpr int keine = -1;

    struct Eintrag
    {
        double seq = 0;
        double titel = 0;
        Textort id{};
        Textort uuid{};
        Textort name{};
        int gruppe = 0;     // of the entries with the same "eltern"
        int kinder = keine; // the group that is its own
        bool ordner = false;
    };

    // All entries with one "eltern".
    struct Gruppe
    {
        int ab = 0; // its entries in `reihe_`: from here up to before `bis`
        int bis = 0;
        bool obersteEbene = true;
    };

    [[nodiscard]] int gruppeVon(const QString &eltern);
    void gruppenVergeben();
    void geschwisterOrdnen();
    void anhaengen(Knotenliste &alle, const Gruppe &oben) const;
    [[nodiscard]] Knotenliste::Ast astAus(const Eintrag &e, int eltern) const;

    std::vector<Eintrag> eintraege_; // in order of the answer
    std::vector<Gruppe> gruppen_;    // in order of their first entry
    std::vector<int> reihe_;         // the entries, group by group, siblings in order
    QHash<QString, int> nummern_;    // of the groups
    QByteArray letzteEltern_;        // of the entry before, and its group
    int letzteGruppe_ = keine;
    QSet<QString> lokal_;
    qint64 schluessel_ = 0; // bytes of the texts in `nummern_` and `lokal_`
    Textvorrat texte_;      // that stay
    Textvorrat ids_;
};

} // namespace kalvaro
