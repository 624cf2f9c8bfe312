#include "settingswindow/baumansicht.h"

#include "settingswindow/baumzugang.h"
#include "settingswindow/playlistenmodell.h"
#include "settingswindow/playlistenzeile.h"
#include "ui/ansage.h"
#include "ui/farbe.h"
#include "ui/schrift.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int einzug = 20;
constexpr int mindestbreite = 180; // of a row, however deep it stands

} // namespace

Baumansicht::Baumansicht(PlaylistenModell &modell, QWidget *parent)
    : QTreeView(parent)
    , modell_(modell)
{
    baumzugangAnmelden();
    setModel(&modell_);
    setItemDelegate(new Playlistenzeile(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setIndentation(mass(einzug));
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setExpandsOnDoubleClick(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        const int tiefe = ebene(index);
        if (tiefe > tiefste_) {
            breiteAnpassen(tiefe);
        }
        zustandMelden(index, true);
    });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { zustandMelden(index, true); });
}

int Baumansicht::ebene(QModelIndex index)
{
    int tiefe = 0;
    for (index = index.parent(); index.isValid(); index = index.parent()) {
        ++tiefe;
    }
    return tiefe;
}

// All rows are of one height, so the view finds each of them without looking at the others.
QModelIndex Baumansicht::zeile(int nummer) const
{
    const int hoehe = visualRect(modell_.index(0, 0)).height();
    const int oben = nummer * hoehe - verticalScrollBar()->value();
    return nummer >= 0 && hoehe > 0 ? indexAt(QPoint(0, oben)) : QModelIndex();
}

int Baumansicht::nummer(const QModelIndex &index) const
{
    const QRect ort = visualRect(index);
    return ort.isValid() ? (ort.top() + verticalScrollBar()->value()) / ort.height() : -1;
}

int Baumansicht::zeilenzahl() const
{
    int anzahl = 0;
    for (int zuviel = static_cast<int>(std::ssize(modell_.alle())) + 1; zuviel - anzahl > 1;) {
        const int mitte = anzahl + (zuviel - anzahl) / 2;
        (zeile(mitte - 1).isValid() ? anzahl : zuviel) = mitte;
    }
    return anzahl;
}

int Baumansicht::hoeheFuer(int zeilen) const
{
    return zeilen * itemDelegate()->sizeHint({}, {}).height() + 2 * frameWidth();
}

int Baumansicht::zeilenIn(int hoehe) const
{
    return (hoehe - 2 * frameWidth()) / itemDelegate()->sizeHint({}, {}).height();
}

void Baumansicht::filtern(const QString &suchwort)
{
    const bool vorher = modell_.gefiltert();
    const int stelle = aktuelle();
    if (!vorher) {
        merken();
    }
    modell_.filtern(suchwort);
    if (modell_.gefiltert()) {
        breiteAnpassen(0);
        expandAll();
        aktuelleSetzen(stelle);
    } else if (vorher) {
        wiederherstellen(stelle);
    }
}

int Baumansicht::aktuelle() const
{
    return currentIndex().isValid() ? PlaylistenModell::stelle(currentIndex()) : -1;
}

void Baumansicht::aktuelleSetzen(int stelle)
{
    const QModelIndex ort = modell_.zuStelle(stelle);
    if (ort.isValid()) {
        setCurrentIndex(ort);
    }
}

void Baumansicht::merken()
{
    offene_.clear();
    rollstand_ = verticalScrollBar()->value();
    vorherige_ = aktuelle();
    for (int i = 0; i < std::ssize(modell_.alle()); ++i) {
        if (isExpanded(modell_.zuStelle(i))) {
            offene_.push_back(i);
        }
    }
}

void Baumansicht::wiederherstellen(int stelle)
{
    breiteAnpassen(0);
    for (const int offener : offene_) {
        expand(modell_.zuStelle(offener));
    }
    executeDelayedItemsLayout();
    aktuelleSetzen(stelle < 0 ? vorherige_ : stelle);
    if (stelle < 0 || stelle == vorherige_) {
        verticalScrollBar()->setValue(rollstand_);
    }
}

void Baumansicht::alleAufklappen()
{
    expandAll();
    if (currentIndex().isValid()) {
        scrollTo(currentIndex());
    }
}

void Baumansicht::alleZuklappen()
{
    QModelIndex oberster = currentIndex();
    while (oberster.parent().isValid()) {
        oberster = oberster.parent();
    }
    collapseAll();
    if (oberster.isValid()) {
        setCurrentIndex(oberster);
    }
    breiteAnpassen(0);
}

void Baumansicht::zeileWaehlen()
{
    if (!currentIndex().isValid()) {
        setCurrentIndex(modell_.index(0, 0));
    }
}

// Rows far to the right keep a readable width; the tree then scrolls sideways.
void Baumansicht::breiteAnpassen(int tiefste)
{
    tiefste_ = tiefste;
    header()->setMinimumSectionSize(indentation() * (tiefste_ + 2) + mass(mindestbreite));
}

// The tree view's own version goes sideways to the column's beginning, where a deep row is not.
void Baumansicht::scrollTo(const QModelIndex &index, ScrollHint art)
{
    const int vorher = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, art);
    const int links = indentation() * ebene(index);
    const int rechts = links + indentation() + mass(mindestbreite);
    const int stand = std::max(std::min(vorher, links), rechts - viewport()->width());
    horizontalScrollBar()->setValue(stand);
}

void Baumansicht::keyboardSearch(const QString &zeichen)
{
    if (!zeichen.trimmed().isEmpty()) {
        Q_EMIT getippt(zeichen);
    }
}

// The tree view's own version names rows to assistive technology by their number on screen, which
// Baumzugang does not know.
void Baumansicht::currentChanged(const QModelIndex &neu, const QModelIndex &alt)
{
    QAbstractItemView::currentChanged(neu, alt); // NOLINT(bugprone-parent-virtual-call)
    fokusMelden();
}

// A row has the focus, never the tree alone. Qt tells of the tree once this is over, so the row is
// told of after that.
void Baumansicht::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::MouseFocusReason:
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        break; // the click tells, or it is as it was
    default:
        mitTastenSetzen(true);
    }
    QTreeView::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason) {
        zeileWaehlen();
    }
    if (QAccessible::isActive()) {
        QMetaObject::invokeMethod(this, &Baumansicht::fokusMelden, Qt::QueuedConnection);
    }
}

// Tells assistive technology which row has the focus.
void Baumansicht::fokusMelden()
{
    if (!QAccessible::isActive() || !hasFocus()) {
        return;
    }
    if (QAccessibleInterface *const zeile = zeilenzugang(*this, currentIndex())) {
        QAccessibleEvent ereignis(zeile, QAccessible::Focus);
        QAccessible::updateAccessibility(&ereignis);
    }
}

// A check changes no size. The tree view's own version would search its rows for every range, and
// checking a folder announces one for each folder in it.
void Baumansicht::dataChanged(const QModelIndex &erster, const QModelIndex &letzter,
                              const QList<int> &rollen)
{
    if (rollen != QList<int>{Qt::CheckStateRole}) {
        QTreeView::dataChanged(erster, letzter, rollen);
        return;
    }
    viewport()->update();
    if (erster == letzter) {
        zustandMelden(erster, false);
    }
}

// Tells assistive technology that a row was opened or closed, or checked or unchecked.
void Baumansicht::zustandMelden(const QModelIndex &index, bool aufgeklappt)
{
    if (!QAccessible::isActive()) {
        return;
    }
    if (QAccessibleInterface *const zeile = zeilenzugang(*this, index)) {
        QAccessible::State geaendert;
        geaendert.expanded = aufgeklappt;
        geaendert.collapsed = aufgeklappt;
        geaendert.checked = !aufgeklappt;
        QAccessibleStateChangeEvent ereignis(zeile, geaendert);
        QAccessible::updateAccessibility(&ereignis);
        if (!aufgeklappt && index == currentIndex() && hasFocus() &&
            (modell_.hasChildren(index) || !zeilenSindZellen())) {
            ansagen(*this, hakenwort(index));
        }
    }
}

void Baumansicht::mitTastenSetzen(bool mitTasten)
{
    if (mitTasten_ != mitTasten) {
        mitTasten_ = mitTasten;
        viewport()->update();
    }
}

void Baumansicht::mousePressEvent(QMouseEvent *event)
{
    mitTastenSetzen(false);
    QTreeView::mousePressEvent(event);
}

void Baumansicht::keyPressEvent(QKeyEvent *event)
{
    mitTastenSetzen(true);
    const bool menue = event->key() == Qt::Key_Menu ||
                       (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
    if (menue) {
        menueZeigen(menueort());
    } else if (!klappen(event->key())) {
        QTreeView::keyPressEvent(event);
    }
}

// The keys by which trees open and close everywhere; the tree view's own version would also take
// them for letters to search for.
bool Baumansicht::klappen(int taste)
{
    const QModelIndex zeile = currentIndex();
    switch (taste) {
    case Qt::Key_Plus:
        expand(zeile);
        return true;
    case Qt::Key_Minus:
        collapse(zeile);
        return true;
    case Qt::Key_Asterisk:
        alleAufklappen();
        return true;
    default:
        return false;
    }
}

// Below the title of the current row, where one is in sight.
QPoint Baumansicht::menueort() const
{
    const QRect zeile = visualRect(currentIndex()) & viewport()->rect();
    if (zeile.isEmpty()) {
        return viewport()->mapToGlobal(viewport()->rect().center());
    }
    const int ab = isRightToLeft() ? zeile.right() - einzug : zeile.left() + einzug;
    return viewport()->mapToGlobal(QPoint(ab, zeile.bottom()));
}

void Baumansicht::contextMenuEvent(QContextMenuEvent *event)
{
    menueZeigen(event->reason() == QContextMenuEvent::Keyboard ? menueort() : event->globalPos());
}

// Some systems send the menu key and the wish for a menu as well.
void Baumansicht::menueZeigen(const QPoint &ort)
{
    if (menue_ && menue_->isVisible()) {
        return;
    }
    auto *const menue = new QMenu(this);
    menue->setObjectName(u"baummenue"_s);
    menue->setAttribute(Qt::WA_DeleteOnClose);
    menue->addAction(u"Alle aufklappen"_s, this, &Baumansicht::alleAufklappen);
    menue->addAction(u"Alle zuklappen"_s, this, &Baumansicht::alleZuklappen);
    menue->popup(isRightToLeft() ? ort - QPoint(menue->sizeHint().width(), 0) : ort);
    menue_ = menue;
}

void Baumansicht::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (modell_.gefiltert() && !modell_.hasChildren()) {
        QPainter maler(viewport());
        maler.setFont(systemschrift(13));
        maler.setPen(Farbe::auf(Farbe::flaeche(palette()), Farbe::sekundaer, palette()));
        maler.drawText(viewport()->rect(), Qt::AlignCenter, u"Nichts gefunden"_s);
    }
}

} // namespace kalvaro
