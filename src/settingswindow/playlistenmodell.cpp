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
    knoten = std::move(liste);
    suchnamen.clear();
    aufstellen();
    endResetModel();
}

void PlaylistenModell::filtern(const QString &suchwort)
{
    const QString neu = suchform(suchwort.trimmed());
    if (neu == filter) {
        return;
    }
    beginResetModel();
    filter = neu;
    aufstellen();
    endResetModel();
}

std::vector<bool> PlaylistenModell::sichtbare() const
{
    std::vector<bool> sichtbar(knoten.size(), filter.isEmpty());
    if (filter.isEmpty()) {
        return sichtbar;
    }
    // From the back, so that what a folder holds comes before the folder.
    for (size_t i = knoten.size(); i-- > 0;) {
        sichtbar[i] = sichtbar[i] || suchnamen[i].contains(filter);
        if (sichtbar[i] && knoten[i].eltern >= 0) {
            sichtbar[static_cast<size_t>(knoten[i].eltern)] = true;
        }
    }
    return sichtbar;
}

// Where the rows below `eltern` are counted; -1: those of the top level.
PlaylistenModell::Platz &PlaylistenModell::unter(int eltern)
{
    return eltern < 0 ? wurzel : plaetze[static_cast<size_t>(eltern)];
}

// Gives every visible node its place in the view.
void PlaylistenModell::aufstellen()
{
    if (!filter.isEmpty() && suchnamen.empty()) {
        suchnamen.reserve(knoten.size());
        for (const Knoten &k : knoten) {
            suchnamen.push_back(suchform(k.name));
        }
    }
    const std::vector<bool> sichtbar = sichtbare();
    std::vector<int> ebenen(knoten.size(), 0);
    plaetze.assign(knoten.size(), {});
    wurzel = {};
    for (size_t i = 0; i < knoten.size(); ++i) {
        int eltern = knoten[i].eltern;
        if (eltern >= 0) {
            const auto oben = static_cast<size_t>(eltern);
            const bool zuTief = ebenen[oben] + 1 == meisteEbenen;
            ebenen[i] = zuTief ? ebenen[oben] : ebenen[oben] + 1;
            eltern = zuTief ? plaetze[oben].eltern : eltern;
        }
        plaetze[i].eltern = eltern;
        if (sichtbar[i]) {
            plaetze[i].zeile = unter(eltern).bis++;
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
    belegen(wurzel);
    std::for_each(plaetze.begin(), plaetze.end(), belegen);
    reihe.assign(static_cast<size_t>(ab), 0);
    for (size_t i = 0; i < knoten.size(); ++i) {
        if (sichtbar[i]) {
            const int ort = unter(plaetze[i].eltern).ab + plaetze[i].zeile;
            reihe[static_cast<size_t>(ort)] = static_cast<int>(i);
        }
    }
}

int PlaylistenModell::stelle(const QModelIndex &index)
{
    return static_cast<int>(index.internalId());
}

QModelIndex PlaylistenModell::zuStelle(int stelle) const
{
    if (stelle < 0 || stelle >= std::ssize(plaetze)) {
        return {};
    }
    const int zeile = plaetze[static_cast<size_t>(stelle)].zeile;
    return zeile < 0 ? QModelIndex() : createIndex(zeile, 0, static_cast<quintptr>(stelle));
}

const PlaylistenModell::Platz &PlaylistenModell::platz(const QModelIndex &parent) const
{
    return parent.isValid() ? plaetze[static_cast<size_t>(stelle(parent))] : wurzel;
}

QModelIndex PlaylistenModell::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent)) {
        return {};
    }
    const int stelle = *(reihe.begin() + platz(parent).ab + row);
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
    const Knoten &k = knoten[static_cast<size_t>(stelle(index))];
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
    default:
        return {};
    }
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
    const std::vector<int> geloest = hakenSetzen(knoten, stelle, an);
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
    const int eltern = plaetze[static_cast<size_t>(stelle)].eltern;
    int letzter = stelle; // on the node's own level, where the tree is too deep to be shown
    const int ende = knoten[static_cast<size_t>(stelle)].ende;
    for (int i = stelle + 1; i < ende; ++i) {
        const Platz &p = plaetze[static_cast<size_t>(i)];
        if (p.zeile >= 0 && p.eltern == eltern) {
            letzter = i;
        }
    }
    Q_EMIT dataChanged(oben, zuStelle(letzter), {Qt::CheckStateRole});
    for (int i = stelle; i < ende; ++i) {
        const Platz &p = plaetze[static_cast<size_t>(i)];
        if (p.bis > p.ab) {
            const int erster = reihe[static_cast<size_t>(p.ab)];
            const int ganzUnten = reihe[static_cast<size_t>(p.bis - 1)];
            Q_EMIT dataChanged(zuStelle(erster), zuStelle(ganzUnten), {Qt::CheckStateRole});
        }
    }
}

} // namespace kalvaro
