#pragma once

#include "settingswindow/knotenliste.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <vector>

namespace kalvaro {

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

// The uuids of all checked nodes, folders included, in tree order and each once, as a list in
// compact JSON. A node without uuid cannot be named and is left out.
[[nodiscard]] QByteArray auswahl(const Knotenliste &alle);

// The same as a set: those nodes that are the first with the uuid of a checked one. Tells whether
// two choices in one tree are the same.
[[nodiscard]] std::vector<bool> gewaehlte(const Knotenliste &alle);

// The line that tells what is chosen and when it will be copied; `betrieb` is the server's mode.
[[nodiscard]] QString zusammenfassung(const Knotenliste &alle, const QString &betrieb);

} // namespace kalvaro
