#include "settingswindow/playlistenmodell.h"

#include "foundation/formate.h"
#include "settingswindow/suchform.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

std::string_view zeichen(QByteArrayView bytes)
{
    return {bytes.data(), static_cast<size_t>(bytes.size())};
}

} // namespace

PlaylistenModell::PlaylistenModell(QObject *parent)
    : QAbstractItemModel(parent)
{
}

void PlaylistenModell::setKnoten(Knotenliste liste)
{
    beginResetModel();
    knoten_ = std::move(liste);
    gewaehlteDavor_.clear();
    treffer_.clear();
    elternZuordnen();
    treffer_ = gesucht(filter_);
    aufstellen();
    endResetModel();
}

void PlaylistenModell::filtern(const QString &suchwort)
{
    const QByteArray neu = suchform(suchwort.trimmed()).toUtf8();
    if (neu == filter_) {
        return;
    }
    beginResetModel();
    // What does not hold the beginning of a word does not hold the word.
    if (filter_.isEmpty() || !neu.contains(filter_)) {
        treffer_.clear();
    }
    treffer_ = gesucht(neu);
    filter_ = neu;
    aufstellen();
    endResetModel();
}

// Which names hold the word; empty for no word. Of those that were looked through before, only what
// was found then is looked at.
std::vector<bool> PlaylistenModell::gesucht(const QByteArray &wort) const
{
    std::vector<bool> gefunden(wort.isEmpty() ? 0 : knoten_.size());
    const std::string_view gesuchtes = zeichen(wort);
    for (size_t i = 0; i < gefunden.size(); ++i) {
        gefunden[i] = (treffer_.empty() || treffer_[i]) &&
                      zeichen(knoten_.suchname(static_cast<int>(i))).find(gesuchtes) !=
                          std::string_view::npos;
    }
    return gefunden;
}

// What is found, and the folders on the way.
std::vector<bool> PlaylistenModell::sichtbare() const
{
    if (filter_.isEmpty()) {
        return std::vector<bool>(knoten_.size(), true);
    }
    std::vector<bool> sichtbar = treffer_;
    // From the back, so that what a folder holds comes before the folder.
    for (size_t i = knoten_.size(); i-- > 0;) {
        const int eltern = knoten_.eltern(static_cast<int>(i));
        if (sichtbar[i] && eltern >= 0) {
            sichtbar[static_cast<size_t>(eltern)] = true;
        }
    }
    return sichtbar;
}

// Which node each one is shown below.
void PlaylistenModell::elternZuordnen()
{
    std::vector<int> ebenen(knoten_.size(), 0);
    plaetze_.assign(knoten_.size(), {});
    for (size_t i = 0; i < knoten_.size(); ++i) {
        int eltern = knoten_.eltern(static_cast<int>(i));
        if (eltern >= 0) {
            const auto oben = static_cast<size_t>(eltern);
            const bool zuTief = ebenen[oben] + 1 == meisteEbenen;
            ebenen[i] = zuTief ? ebenen[oben] : ebenen[oben] + 1;
            eltern = zuTief ? plaetze_[oben].eltern : eltern;
        }
        plaetze_[i].eltern = eltern;
    }
}

// Where the rows below `eltern` are counted; -1: those of the top level.
PlaylistenModell::Platz &PlaylistenModell::unter(int eltern)
{
    return eltern < 0 ? wurzel_ : plaetze_[static_cast<size_t>(eltern)];
}

// Gives every visible node its place in the view.
void PlaylistenModell::aufstellen()
{
    const std::vector<bool> sichtbar = sichtbare();
    wurzel_ = {};
    for (size_t i = 0; i < plaetze_.size(); ++i) {
        Platz &p = plaetze_[i];
        p = {.eltern = p.eltern};
        if (sichtbar[i]) {
            p.zeile = unter(p.eltern).bis++;
        }
    }
    reiheFuellen(sichtbar);
}

// Turns the numbers of rows into sections of `reihe` and fills them.
void PlaylistenModell::reiheFuellen(const std::vector<bool> &sichtbar)
{
    int ab = 0;
    const auto belegen = [&ab](Platz &p) {
        p.ab = ab;
        p.bis += ab;
        ab = p.bis;
    };
    belegen(wurzel_);
    std::for_each(plaetze_.begin(), plaetze_.end(), belegen);
    reihe_.assign(static_cast<size_t>(ab), 0);
    for (size_t i = 0; i < knoten_.size(); ++i) {
        if (sichtbar[i]) {
            const int ort = unter(plaetze_[i].eltern).ab + plaetze_[i].zeile;
            reihe_[static_cast<size_t>(ort)] = static_cast<int>(i);
        }
    }
}

int PlaylistenModell::stelle(const QModelIndex &index)
{
    return static_cast<int>(index.internalId());
}

QModelIndex PlaylistenModell::zuStelle(int stelle) const
{
    if (stelle < 0 || stelle >= std::ssize(plaetze_)) {
        return {};
    }
    const int zeile = plaetze_[static_cast<size_t>(stelle)].zeile;
    return zeile < 0 ? QModelIndex() : createIndex(zeile, 0, static_cast<quintptr>(stelle));
}

const PlaylistenModell::Platz &PlaylistenModell::platz(const QModelIndex &parent) const
{
    return parent.isValid() ? plaetze_[static_cast<size_t>(stelle(parent))] : wurzel_;
}

QModelIndex PlaylistenModell::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent)) {
        return {};
    }
    const int stelle = *(reihe_.begin() + platz(parent).ab + row);
    return createIndex(row, 0, static_cast<quintptr>(stelle));
}

QModelIndex PlaylistenModell::parent(const QModelIndex &child) const
{
    return child.isValid() ? zuStelle(platz(child).eltern) : QModelIndex();
}

int PlaylistenModell::rowCount(const QModelIndex &parent) const
{
    return platz(parent).bis - platz(parent).ab;
}

int PlaylistenModell::columnCount(const QModelIndex &) const
{
    return 1;
}

bool PlaylistenModell::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

Qt::ItemFlags PlaylistenModell::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags alle = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
    return hasChildren(index) ? alle : alle | Qt::ItemNeverHasChildren;
}

QVariant PlaylistenModell::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const int i = stelle(index);
    switch (role) {
    case Qt::DisplayRole:
        return knoten_.ordner(i) ? knoten_.name(i)
                                 : QString(knoten_.name(i) + u"   "_s + fZahl(knoten_.titel(i)));
    case Qt::CheckStateRole:
        return knoten_.haken(i) ? Qt::Checked : Qt::Unchecked;
    case NameRolle:
        return knoten_.name(i);
    case AnzahlRolle:
        return knoten_.ordner(i) ? QString() : fZahl(knoten_.titel(i));
    case OrdnerRolle:
        return knoten_.ordner(i);
    case GewaehltRolle:
        return gewaehlt(i);
    default:
        return {};
    }
}

// Counted once after each check, for the whole tree: what a folder holds may be the whole tree,
// too.
QString PlaylistenModell::gewaehlt(int stelle) const
{
    if (!knoten_.ordner(stelle) || knoten_.haken(stelle)) {
        return {};
    }
    if (gewaehlteDavor_.empty()) {
        gewaehlteDavor_.reserve(knoten_.size() + 1);
        gewaehlteDavor_.push_back(0);
        for (int i = 0; i < std::ssize(knoten_); ++i) {
            const bool zaehlt = knoten_.haken(i) && !knoten_.ordner(i);
            gewaehlteDavor_.push_back(gewaehlteDavor_.back() + (zaehlt ? 1 : 0));
        }
    }
    const int zahl = gewaehlteDavor_[static_cast<size_t>(knoten_.ende(stelle))] -
                     gewaehlteDavor_[static_cast<size_t>(stelle)];
    return zahl > 0 ? QString(fZahl(zahl) + u" gewählt"_s) : QString();
}

bool PlaylistenModell::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole) {
        return false;
    }
    haken(stelle(index), value.toInt() == Qt::Checked);
    return true;
}

void PlaylistenModell::haken(int stelle, bool an)
{
    const std::vector<int> geloest = hakenSetzen(knoten_, stelle, an);
    gewaehlteDavor_.clear();
    zweigMelden(stelle);
    for (const int eltern : geloest) {
        const QModelIndex ort = zuStelle(eltern);
        Q_EMIT dataChanged(ort, ort, {Qt::CheckStateRole});
    }
    Q_EMIT hakenGeaendert();
}

// Announces the node and what is shown below it, one range for each row of siblings.
void PlaylistenModell::zweigMelden(int stelle)
{
    const QModelIndex oben = zuStelle(stelle);
    const int eltern = plaetze_[static_cast<size_t>(stelle)].eltern;
    int letzter = stelle; // on the node's own level, where the tree is too deep to be shown
    const int ende = knoten_.ende(stelle);
    for (int i = stelle + 1; i < ende; ++i) {
        const Platz &p = plaetze_[static_cast<size_t>(i)];
        if (p.zeile >= 0 && p.eltern == eltern) {
            letzter = i;
        }
    }
    Q_EMIT dataChanged(oben, zuStelle(letzter), {Qt::CheckStateRole});
    for (int i = stelle; i < ende; ++i) {
        const Platz &p = plaetze_[static_cast<size_t>(i)];
        if (p.bis > p.ab) {
            const int erster = reihe_[static_cast<size_t>(p.ab)];
            const int ganzUnten = reihe_[static_cast<size_t>(p.bis - 1)];
            Q_EMIT dataChanged(zuStelle(erster), zuStelle(ganzUnten), {Qt::CheckStateRole});
        }
    }
}

} // namespace kalvaro
