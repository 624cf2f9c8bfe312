#pragma once

#include <QStyledItemDelegate>

namespace kalvaro {

// Draws a row of the tree as a check box with a title: the name, semibold for folders, and after it
// the quieter number of tracks. A long name is cut with "…", the number stays. A closed folder
// says at its right how many playlists in it are chosen. Everything is shown literally, in one
// line. Pressing the box or the title checks, as does the space bar.
class Playlistenzeile final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit Playlistenzeile(QObject *parent = nullptr);

    void paint(QPainter *maler, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *modell, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    // Shows the whole name in a tool tip where the row cuts it.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *ansicht,
                   const QStyleOptionViewItem &option, const QModelIndex &index) override;

    // What can be pressed of a row at `zeile`: box and title.
    [[nodiscard]] QRect tastflaeche(const QRect &zeile, const QModelIndex &index) const;

private:
    struct Satz
    {
        QRectF kasten;
        QString name; // as it fits
        QString anzahl;
        QString gewaehlt;
        QRectF nameOrt;
        QRectF anzahlOrt;
        QRectF gewaehltOrt;
        bool gekuerzt = false;
        bool vonRechts = false; // the name begins at the right, and the number follows on its left
    };

    [[nodiscard]] Satz gesetzt(const QRect &zeile, const QModelIndex &index) const;
    [[nodiscard]] const QFont &schriftFuer(const QModelIndex &index) const;

    const QFont normal_;
    const QFont fett_;
};

} // namespace kalvaro
