#include "settingswindow/baumzugang.h"

#include "settingswindow/baumansicht.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/ansage.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The tree: the rows that it shows are its children, also those in folders. Rows below rows lost:
// screen readers take what a row holds for its text.
class Baumzugang final : public QAccessibleWidget
{
public:
    explicit Baumzugang(Baumansicht *ansicht)
        : QAccessibleWidget(ansicht, QAccessible::Tree)
    {
    }
    ~Baumzugang() override
    {
        for (const QAccessible::Id zugang : std::as_const(zeilen_)) {
            QAccessible::deleteAccessibleInterface(zugang);
        }
    }

    [[nodiscard]] Baumansicht *ansicht() const { return static_cast<Baumansicht *>(widget()); }

    // The description of the row, made when first asked for.
    [[nodiscard]] QAccessibleInterface *zeile(const QModelIndex &index);

    [[nodiscard]] int childCount() const override { return ansicht()->zeilenzahl(); }
    [[nodiscard]] QAccessibleInterface *child(int nummer) const override
    {
        return const_cast<Baumzugang *>(this)->zeile(ansicht()->zeile(nummer));
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *kind) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override
    {
        QWidget *const flaeche = ansicht()->viewport();
        const QPoint ort = flaeche->mapFromGlobal(QPoint(x, y));
        return flaeche->rect().contains(ort)
                   ? const_cast<Baumzugang *>(this)->zeile(ansicht()->indexAt(ort))
                   : nullptr;
    }
    [[nodiscard]] QAccessibleInterface *focusChild() const override
    {
        return ansicht()->hasFocus()
                   ? const_cast<Baumzugang *>(this)->zeile(ansicht()->currentIndex())
                   : nullptr;
    }

private:
    QHash<int, QAccessible::Id> zeilen_; // by place of the node
};

// A row. It names its node by place, so it survives filters and comes back to life after them.
class Zeilenzugang final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    Zeilenzugang(Baumzugang &baum, int stelle)
        : baum_(baum)
        , ansicht_(baum.ansicht())
        , stelle_(stelle)
    {
    }

    [[nodiscard]] int stelle() const { return stelle_; }

    [[nodiscard]] bool isValid() const override { return ansicht_ && index().isValid(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return ansicht_ ? baum_.window() : nullptr; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::TreeItem; }
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    void setText(QAccessible::Text, const QString &) override {}

    [[nodiscard]] QString text(QAccessible::Text art) const override
    {
        if (!isValid()) {
            return {};
        }
        switch (art) {
        case QAccessible::Name:
            return index().data().toString();
        case QAccessible::Description:
            return beschreibung();
        default:
            return {};
        }
    }
    [[nodiscard]] QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        QWidget *const flaeche = ansicht_->viewport();
        const QRect sichtbar = ansicht_->visualRect(index()) & flaeche->rect();
        return sichtbar.isEmpty()
                   ? QRect()
                   : QRect(flaeche->mapToGlobal(sichtbar.topLeft()), sichtbar.size());
    }
    [[nodiscard]] QAccessibleInterface *parent() const override { return &baum_; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString beschreibung() const;

    void *interface_cast(QAccessible::InterfaceType art) override
    {
        return art == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                   : nullptr;
    }
    // Orca knows a check box in a row by an action of exactly this name, which Qt writes with a
    // capital.
    [[nodiscard]] QStringList actionNames() const override
    {
        return {toggleAction().toLower(), setFocusAction()};
    }
    void doAction(const QString &aktion) override
    {
        if (!isValid() || !ansicht_->isEnabled()) {
            return;
        }
        if (aktion.compare(toggleAction(), Qt::CaseInsensitive) == 0) {
            const bool an = index().data(Qt::CheckStateRole).toInt() == Qt::Checked;
            ansicht_->modell().setData(index(), an ? Qt::Unchecked : Qt::Checked,
                                       Qt::CheckStateRole);
        } else if (aktion == setFocusAction()) {
            ansicht_->setFocus();
            ansicht_->setCurrentIndex(index());
        }
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    [[nodiscard]] QModelIndex index() const { return ansicht_->modell().zuStelle(stelle_); }

    Baumzugang &baum_; // owns this one
    const QPointer<Baumansicht> ansicht_;
    const int stelle_;
};

QAccessible::State Zeilenzugang::state() const
{
    QAccessible::State zustand;
    zustand.invalid = !isValid();
    if (zustand.invalid) {
        return zustand;
    }
    zustand.disabled = !ansicht_->isEnabled();
    zustand.focusable = true;
    zustand.focused = ansicht_->hasFocus() && ansicht_->currentIndex() == index();
    zustand.checkable = true;
    zustand.checked = index().data(Qt::CheckStateRole).toInt() == Qt::Checked;
    zustand.expandable = ansicht_->modell().hasChildren(index());
    zustand.expanded = zustand.expandable && ansicht_->isExpanded(index());
    zustand.collapsed = zustand.expandable && !zustand.expanded;
    zustand.invisible = !ansicht_->isVisible() || ansicht_->nummer(index()) < 0;
    zustand.offscreen = rect().isEmpty();
    return zustand;
}

// Whether it is checked, where nothing else says so, what it says at its right, and how deep it
// lies.
QString Zeilenzugang::beschreibung() const
{
    QStringList teile;
    if (!zeilenSindZellen()) {
        teile << hakenwort(index());
    }
    const QString gewaehlt = index().data(PlaylistenModell::GewaehltRolle).toString();
    if (!gewaehlt.isEmpty() && !ansicht_->isExpanded(index())) {
        teile << gewaehlt;
    }
    teile << u"Ebene %1"_s.arg(Baumansicht::ebene(index()) + 1);
    return teile.join(u", "_s);
}

QAccessibleInterface *Baumzugang::zeile(const QModelIndex &index)
{
    if (!index.isValid()) {
        return nullptr;
    }
    const int stelle = PlaylistenModell::stelle(index);
    const auto schon = zeilen_.constFind(stelle);
    if (schon != zeilen_.constEnd()) {
        return QAccessible::accessibleInterface(*schon);
    }
    auto *const neu = new Zeilenzugang(*this, stelle);
    zeilen_.insert(stelle, QAccessible::registerAccessibleInterface(neu));
    return neu;
}

int Baumzugang::indexOfChild(const QAccessibleInterface *kind) const
{
    const auto *const zeile = dynamic_cast<const Zeilenzugang *>(kind);
    if (zeile == nullptr || !zeile->isValid()) {
        return -1;
    }
    return ansicht()->nummer(ansicht()->modell().zuStelle(zeile->stelle()));
}

QAccessibleInterface *zugangFuer(const QString &klasse, QObject *objekt)
{
    if (klasse != u"kalvaro::Baumansicht" || objekt == nullptr) {
        return nullptr;
    }
    return new Baumzugang(static_cast<Baumansicht *>(objekt));
}

} // namespace

QString hakenwort(const QModelIndex &index)
{
    const bool an = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return an ? u"angehakt"_s : u"nicht angehakt"_s;
}

void baumzugangAnmelden()
{
    QAccessible::installFactory(zugangFuer);
}

QAccessibleInterface *zeilenzugang(Baumansicht &ansicht, const QModelIndex &index)
{
    auto *const baum = dynamic_cast<Baumzugang *>(QAccessible::queryAccessibleInterface(&ansicht));
    return baum != nullptr ? baum->zeile(index) : nullptr;
}

} // namespace kalvaro
