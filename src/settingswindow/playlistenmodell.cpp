#include "settingswindow/playlistenmodell.h"

#include "foundation/formate.h"

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// As people compare names: without accents, upper and lower case alike.
QString suchform(const QString &name)
{
    QString klein = name.toCaseFolded();
    const bool einfach =
        std::all_of(klein.cbegin(), klein.cend(), [](QChar c) { return c.unicode() < 0x80; });
    if (einfach) {
        return klein;
    }
    QString zerlegt = klein.normalized(QString::NormalizationForm_KD);
    zerlegt.removeIf([](QChar c) { return c.isMark(); });
    return zerlegt.replace(u'ß', u"ss"_s);
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
    suchnamen_.clear();
    gewaehlteDavor_.clear();
    aufstellen();
    endResetModel();
}

void PlaylistenModell::filtern(const QString &suchwort)
{
    const QString neu = suchform(suchwort.trimmed());
    if (neu == filter_) {
        return;
    }
    beginResetModel();
    filter_ = neu;
    aufstellen();
    endResetModel();
}

std::vector<bool> PlaylistenModell::sichtbare() const
{
    std::vector<bool> sichtbar(knoten_.size(), filter_.isEmpty());
    if (filter_.isEmpty()) {
        return sichtbar;
    }
    // From the back, so that what a folder holds comes before the folder.
    for (size_t i = knoten_.size(); i-- > 0;) {
        sichtbar[i] = sichtbar[i] || suchnamen_[i].contains(filter_);
        if (sichtbar[i] && knoten_[i].eltern >= 0) {
            sichtbar[static_cast<size_t>(knoten_[i].eltern)] = true;
        }
    }
    return sichtbar;
}

// Where the rows below `eltern` are counted; -1: those of the top level.
PlaylistenModell::Platz &PlaylistenModell::unter(int eltern)
{
    return eltern < 0 ? wurzel_ : plaetze_[static_cast<size_t>(eltern)];
}

// Gives every visible node its place in the view.
void PlaylistenModell::aufstellen()
{
    if (!filter_.isEmpty() && suchnamen_.empty()) {
        suchnamen_.reserve(knoten_.size());
        for (const Knoten &k : knoten_) {
            suchnamen_.push_back(suchform(k.name));
        }
    }
    const std::vector<bool> sichtbar = sichtbare();
    std::vector<int> ebenen(knoten_.size(), 0);
    plaetze_.assign(knoten_.size(), {});
    wurzel_ = {};
    for (size_t i = 0; i < knoten_.size(); ++i) {
        int eltern = knoten_[i].eltern;
        if (eltern >= 0) {
            const auto oben = static_cast<size_t>(eltern);
            const bool zuTief = ebenen[oben] + 1 == meisteEbenen;
            ebenen[i] = zuTief ? ebenen[oben] : ebenen[oben] + 1;
            eltern = zuTief ? plaetze_[oben].eltern : eltern;
        }
        plaetze_[i].eltern = eltern;
        if (sichtbar[i]) {
            plaetze_[i].zeile = unter(eltern).bis++;
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
    const Knoten &k = knoten_[static_cast<size_t>(stelle(index))];
    switch (role) {
    case Qt::DisplayRole:
        return k.ordner ? k.name : QString(k.name + u"   "_s + fZahl(k.titel));
    case Qt::CheckStateRole:
        return k.haken ? Qt::Checked : Qt::Unchecked;
    case NameRolle:
        return k.name;
    case AnzahlRolle:
        return k.ordner ? QString() : fZahl(k.titel);
    case OrdnerRolle:
        return k.ordner;
    case GewaehltRolle:
        return gewaehlt(stelle(index));
    default:
        return {};
    }
}

// Counted once after each check, for the whole tree: what a folder holds may be the whole tree,
// too.
QString PlaylistenModell::gewaehlt(int stelle) const
{
    const Knoten &ordner = knoten_[static_cast<size_t>(stelle)];
    if (!ordner.ordner || ordner.haken) {
        return {};
    }
    if (gewaehlteDavor_.empty()) {
        gewaehlteDavor_.reserve(knoten_.size() + 1);
        gewaehlteDavor_.push_back(0);
        for (const Knoten &k : knoten_) {
            gewaehlteDavor_.push_back(gewaehlteDavor_.back() + (k.haken && !k.ordner ? 1 : 0));
        }
    }
    const int zahl = gewaehlteDavor_[static_cast<size_t>(ordner.ende)] -
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
    const int ende = knoten_[static_cast<size_t>(stelle)].ende;
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
