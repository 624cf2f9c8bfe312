#pragma once

#include <QPointer>
#include <QTreeView>

#include <vector>

class QMenu;

namespace kalvaro {

class PlaylistenModell;

// The tree of playlists on screen. Expanded folders and the scroll position survive every check;
// while a filter holds, the folders on the way are open, and what was open before comes back when
// it ends.
class Baumansicht final : public QTreeView
{
    Q_OBJECT

public:
    // `modell` must outlive this object.
    explicit Baumansicht(PlaylistenModell &modell, QWidget *parent = nullptr);

    [[nodiscard]] PlaylistenModell &modell() const { return modell_; }

    // How many folders `index` lies in.
    [[nodiscard]] static int ebene(QModelIndex index);

    // The rows that scrolling can reach, from top to bottom: how many they are, the one with a
    // number (invalid past them) and the number of one (-1 below a closed folder).
    [[nodiscard]] int zeilenzahl() const;
    [[nodiscard]] QModelIndex zeile(int nummer) const;
    [[nodiscard]] int nummer(const QModelIndex &index) const;

    // The height of the view in which so many rows can be seen, and how many whole ones can be seen
    // in a height, both with the frame.
    [[nodiscard]] int hoeheFuer(int zeilen) const;
    [[nodiscard]] int zeilenIn(int hoehe) const;

    void filtern(const QString &suchwort);
    void alleAufklappen();
    void alleZuklappen();

    // Makes the first row the current one where there is none.
    void zeileWaehlen();

    // Whether the tree was last used by the keyboard; only then the current row is marked.
    [[nodiscard]] bool mitTasten() const { return mitTasten_; }

    void scrollTo(const QModelIndex &index, ScrollHint art = EnsureVisible) override;

Q_SIGNALS:
    // Letters were typed here that want to be searched for.
    void getippt(const QString &zeichen);

protected:
    void keyboardSearch(const QString &zeichen) override;
    void focusInEvent(QFocusEvent *event) override;
    void currentChanged(const QModelIndex &neu, const QModelIndex &alt) override;
    void dataChanged(const QModelIndex &erster, const QModelIndex &letzter,
                     const QList<int> &rollen) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void mitTastenSetzen(bool mitTasten);
    bool klappen(int taste);
    void menueZeigen(const QPoint &ort);
    [[nodiscard]] QPoint menueort() const;
    [[nodiscard]] int aktuelle() const; // place of the current row; -1: none
    void aktuelleSetzen(int stelle);
    void merken();
    void wiederherstellen(int stelle);
    void breiteAnpassen(int tiefste);
    void fokusMelden();
    void zustandMelden(const QModelIndex &index, bool aufgeklappt);

    PlaylistenModell &modell_;
    int tiefste_ = 0; // level of the deepest folder that was opened
    bool mitTasten_ = false;
    QPointer<QMenu> menue_;

    // How the tree stood before the filter.
    std::vector<int> offene_; // places of the open folders
    int rollstand_ = 0;
    int vorherige_ = -1; // place of the current row
};

} // namespace kalvaro
