#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <vector>

namespace kalvaro {

// One playlist or folder.
struct Knoten
{
    QString uuid;
    QString name;
    bool ordner = false;
    double titel = 0; // number of tracks
    bool haken = false;
    int eltern = -1; // place of the folder that holds it; -1 at the top level
    int ende = 0;    // one past the place of its last descendant

    bool operator==(const Knoten &) const = default;
};

// A whole tree, depth first: each folder stands right before what it holds, so the descendants of
// the node at place `i` are those from `i + 1` up to before `ende`. Everything below walks this
// list and never recurses, however deep the tree is.
using Knotenliste = std::vector<Knoten>;

// The tree of an answer: "playlisten" holds the nodes, "lokal" the uuids of those that are checked.
// Takes whatever a server sends, in linear time but for sorting:
// - siblings stand in order of "seq"; equal positions keep the order of the answer;
// - entries whose "eltern" is empty or nobody's "id" form the top level;
// - every entry is used at most once; what cannot be reached from the top level is left out: below
//   a playlist, in a circle, below an "id" that an earlier entry has too;
// - entries that are no maps are dropped.
[[nodiscard]] Knotenliste baumAus(const QJsonValue &antwort);

// Checks or unchecks the node at `stelle` with all its descendants; unchecking also unchecks every
// folder above. Returns the places of those folders that were checked before, from below.
std::vector<int> hakenSetzen(Knotenliste &alle, int stelle, bool an);

// The uuids of all checked nodes, folders included, in tree order and each once. A node without
// uuid cannot be named and is left out.
[[nodiscard]] QStringList auswahl(const Knotenliste &alle);

// The line that tells what is chosen and when it will be copied; `betrieb` is the server's mode.
[[nodiscard]] QString zusammenfassung(const Knotenliste &alle, const QString &betrieb);

} // namespace kalvaro
