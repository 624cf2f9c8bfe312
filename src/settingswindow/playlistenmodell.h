#pragma once

#include "settingswindow/knoten.h"

#include <QAbstractItemModel>

namespace kalvaro {

// Shows the tree of playlists in one column with check boxes; the tree itself and its rules are
// those of Knoten.
//
// A filter hides rows without touching what is checked. Checking a folder takes all that it holds
// along, hidden or not.
//
// Below level `meisteEbenen` what a folder holds follows it on the same level: views recurse, and a
// chain of folders may be 100,000 deep.
class PlaylistenModell final : public QAbstractItemModel
{
    Q_OBJECT

public:
    // GewaehltRolle: "2 gewählt", how many playlists a folder that is not checked itself has
    // chosen; empty for none.
    enum Rolle { NameRolle = Qt::UserRole, AnzahlRolle, OrdnerRolle, GewaehltRolle };
    static constexpr int meisteEbenen = 100;

    explicit PlaylistenModell(QObject *parent = nullptr);

    void setKnoten(Knotenliste liste);
    [[nodiscard]] const Knotenliste &alle() const { return knoten_; }

    // Shows only the nodes whose name contains `suchwort`, and the folders on the way to them.
    // Upper and lower case, accents and blanks around it do not count. Empty: shows all.
    void filtern(const QString &suchwort);
    [[nodiscard]] bool gefiltert() const { return !filter_.isEmpty(); }

    // The place in alle(), and back; invalid for a node that the filter hides.
    [[nodiscard]] static int stelle(const QModelIndex &index);
    [[nodiscard]] QModelIndex zuStelle(int stelle) const;

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

    // Checks (Qt::Checked) or unchecks a node, with all that follows from it.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    // After a check, when all nodes have their new state.
    void hakenGeaendert();

private:
    // Where a node is shown.
    struct Platz
    {
        int eltern = -1; // place of the node that it is shown below
        int zeile = -1;  // -1: hidden
        int ab = 0;      // what is shown below it: `reihe` from here
        int bis = 0;     // up to before here
    };

    void elternZuordnen();
    void aufstellen();
    [[nodiscard]] std::vector<bool> gesucht(const QByteArray &wort) const;
    void reiheFuellen(const std::vector<bool> &sichtbar);
    [[nodiscard]] std::vector<bool> sichtbare() const;
    [[nodiscard]] Platz &unter(int eltern);
    [[nodiscard]] const Platz &platz(const QModelIndex &parent) const;
    void haken(int stelle, bool an);
    void zweigMelden(int stelle);
    [[nodiscard]] QString gewaehlt(int stelle) const;

    Knotenliste knoten_;
    QByteArray filter_;         // in search form, UTF-8
    std::vector<bool> treffer_; // whether its name holds the filter; empty: no filter, none known

    std::vector<Platz> plaetze_; // one for each node
    std::vector<int> reihe_;     // the shown nodes, those below one node side by side
    Platz wurzel_;

    // How many chosen playlists come before each place; empty: to be counted.
    mutable std::vector<int> gewaehlteDavor_;
};

} // namespace kalvaro
