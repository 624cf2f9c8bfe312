#include "settingswindow/playlistenzeile.h"

#include "settingswindow/baumansicht.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/beschriftung.h"
#include "ui/farbe.h"
#include "ui/schrift.h"
#include "ui/stilteile.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr double schriftgroesse = 13;
constexpr int mindesthoehe = 26;
constexpr int kastenAbstand = 7; // between the box and the title
constexpr int seitenrand = 4;    // on either side of the row

// More than a row can show; names may be megabytes long.
constexpr qsizetype meisteZeichen = 500;

// The name in one line: what would break it or move the pen becomes a blank.
QString einzeilig(const QString &name)
{
    QString zeile = name.left(meisteZeichen);
    for (QChar &zeichen : zeile) {
        const QChar::Category art = zeichen.category();
        if (art == QChar::Other_Control || art == QChar::Separator_Line ||
            art == QChar::Separator_Paragraph) {
            zeichen = u' ';
        }
    }
    return zeile;
}

} // namespace

Playlistenzeile::Playlistenzeile(QObject *parent)
    : QStyledItemDelegate(parent)
    , normal_(systemschrift(schriftgroesse))
    , fett_(systemschrift(schriftgroesse, QFont::DemiBold))
{
}

const QFont &Playlistenzeile::schriftFuer(const QModelIndex &index) const
{
    return index.data(PlaylistenModell::OrdnerRolle).toBool() ? fett_ : normal_;
}

Playlistenzeile::Satz Playlistenzeile::gesetzt(const QRect &zeile, const QModelIndex &index) const
{
    const QFontMetricsF mass(schriftFuer(index));
    const QFontMetricsF zahlmass(normal_);
    const QString ganz = einzeilig(index.data(PlaylistenModell::NameRolle).toString());

    const auto *const ansicht = qobject_cast<const Baumansicht *>(parent());
    const Qt::LayoutDirection anordnung =
        ansicht != nullptr ? ansicht->layoutDirection() : Qt::LeftToRight;

    // As from left to right; mirrored at the end.
    Satz satz;
    satz.anzahl = index.data(PlaylistenModell::AnzahlRolle).toString();
    const int seite = kaestchen();
    satz.kasten = QRectF(zeile.left() + seitenrand,
                         zeile.top() + std::floor((zeile.height() - seite) / 2.0), seite, seite);
    const double links = satz.kasten.right() + kastenAbstand;
    const double anzahlBreite = std::ceil(zahlmass.horizontalAdvance(satz.anzahl));
    const double drei = zahlmass.horizontalAdvance(u"   "_s);
    const double luecke = satz.anzahl.isEmpty() ? 0 : drei;
    double rechts = zeile.right() + 1 - seitenrand;
    if (ansicht != nullptr && !ansicht->isExpanded(index)) {
        satz.gewaehlt = index.data(PlaylistenModell::GewaehltRolle).toString();
        const double breite = std::ceil(zahlmass.horizontalAdvance(satz.gewaehlt));
        satz.gewaehltOrt = QRectF(rechts - breite, zeile.top(), breite, zeile.height());
        rechts -= satz.gewaehlt.isEmpty() ? 0 : breite + drei;
    }
    const double platz = std::max(0.0, rechts - anzahlBreite - luecke - links);
    satz.name = mass.elidedText(ganz, Qt::ElideRight, platz);
    satz.gekuerzt = satz.name != ganz;
    const double breite = std::min(platz, std::ceil(mass.horizontalAdvance(satz.name)));
    satz.vonRechts = vonRechts(ganz);
    const bool amEnde = satz.vonRechts && anordnung == Qt::LeftToRight;
    const double nameAb = amEnde ? rechts - breite : links;
    const double anzahlAb = amEnde ? nameAb - luecke - anzahlBreite : nameAb + breite + luecke;
    satz.nameOrt = QRectF(nameAb, zeile.top(), breite, zeile.height());
    satz.anzahlOrt = QRectF(anzahlAb, zeile.top(), anzahlBreite, zeile.height());
    for (QRectF *ort : {&satz.kasten, &satz.nameOrt, &satz.anzahlOrt, &satz.gewaehltOrt}) {
        *ort = gespiegelt(*ort, zeile, anordnung);
    }
    return satz;
}

void Playlistenzeile::paint(QPainter *maler, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    constexpr int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
    const bool gesperrt = !option.state.testFlag(QStyle::State_Enabled);
    const auto *const ansicht = qobject_cast<const Baumansicht *>(parent());
    const bool mitTasten = ansicht == nullptr || ansicht->mitTasten();
    const Satz satz = gesetzt(option.rect, index);
    const QColor grund = Farbe::flaeche(option.palette);
    const auto stift = [&](Farbton ton) {
        return Farbe::auf(grund, gesperrt ? Farbe::gesperrt : ton, option.palette);
    };
    maler->save();
    kaestchenMalen(*maler, satz.kasten, option.palette, grund,
                   index.data(Qt::CheckStateRole).toInt() == Qt::Checked, gesperrt);
    maler->restore();
    maler->save();
    maler->setFont(schriftFuer(index));
    maler->setPen(stift(Farbe::schrift));
    maler->setLayoutDirection(satz.vonRechts ? Qt::RightToLeft : Qt::LeftToRight);
    maler->drawText(satz.nameOrt, flags, satz.name);
    maler->setLayoutDirection(Qt::LeftToRight);
    maler->setFont(normal_);
    maler->setPen(stift(Farbe::sekundaer));
    maler->drawText(satz.anzahlOrt, flags, satz.anzahl);
    maler->drawText(satz.gewaehltOrt, flags, satz.gewaehlt);
    if (option.state.testFlag(QStyle::State_HasFocus) && mitTasten) {
        constexpr double radius = 6;
        fokusMalen(*maler, satz.kasten.adjusted(-2, -2, 2, 2), radius,
                   Farbe::fokus(option.palette, grund, grund));
    }
    maler->restore();
}

QSize Playlistenzeile::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    const int hoehe = static_cast<int>(std::ceil(QFontMetricsF(fett_).height())) + 8;
    const int breite = 180; // names are cut, so no row asks for more
    return {breite, std::max(mass(mindesthoehe), hoehe)};
}

QRect Playlistenzeile::tastflaeche(const QRect &zeile, const QModelIndex &index) const
{
    const Satz satz = gesetzt(zeile, index);
    const QRectF ganz = satz.kasten | satz.nameOrt | satz.anzahlOrt;
    return QRectF(ganz.left() - seitenrand, zeile.top(), ganz.width() + 2 * seitenrand,
                  zeile.height())
        .toAlignedRect();
}

bool Playlistenzeile::editorEvent(QEvent *event, QAbstractItemModel *modell,
                                  const QStyleOptionViewItem &option, const QModelIndex &index)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease: {
        const auto *const maus = static_cast<QMouseEvent *>(event);
        if (maus->button() != Qt::LeftButton ||
            !tastflaeche(option.rect, index).contains(maus->position().toPoint())) {
            return false;
        }
        if (event->type() != QEvent::MouseButtonRelease) {
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        const auto *const taste = static_cast<QKeyEvent *>(event);
        if (taste->key() != Qt::Key_Space && taste->key() != Qt::Key_Select) {
            return false;
        }
        if (taste->isAutoRepeat()) {
            return true;
        }
        break;
    }
    default:
        return false;
    }
    const bool an = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return modell->setData(index, an ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

bool Playlistenzeile::helpEvent(QHelpEvent *event, QAbstractItemView *ansicht,
                                const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid() ||
        !gesetzt(option.rect, index).gekuerzt) {
        QToolTip::hideText();
        return false;
    }
    QToolTip::showText(event->globalPos(), alsHinweis(index.data(Qt::DisplayRole).toString()),
                       ansicht->viewport(), option.rect);
    return true;
}

} // namespace kalvaro
