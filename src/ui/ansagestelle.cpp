// Announcements with a Qt that has no event for them: a notification appears among the accessible
// objects, which Orca speaks. It is nowhere to be seen.

#include "ui/ansage.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QCoreApplication>
#include <QWidget>

namespace kalvaro {

namespace {

// Screen readers ask for what it says after the event, in their own time; so the last few stay.
constexpr qsizetype bleibende = 4;

// Belongs to the window that it is said in.
class Ansagestelle final : public QObject
{
    Q_OBJECT

public:
    Ansagestelle(QWidget &fenster, const QString &inhalt)
        : QObject(&fenster)
        , inhalt_(inhalt)
    {
    }

    [[nodiscard]] const QString &inhalt() const { return inhalt_; }

private:
    const QString inhalt_;
};

class Ansagezugang final : public QAccessibleObject
{
public:
    explicit Ansagezugang(Ansagestelle *stelle)
        : QAccessibleObject(stelle)
    {
    }

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Notification; }
    [[nodiscard]] QAccessible::State state() const override { return {}; }
    [[nodiscard]] QString text(QAccessible::Text art) const override
    {
        return art == QAccessible::Name && isValid() ? stelle()->inhalt() : QString();
    }
    // Not the window: Orca would read a whole dialogue along with it.
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(qApp);
    }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }

private:
    [[nodiscard]] Ansagestelle *stelle() const { return static_cast<Ansagestelle *>(object()); }
};

QAccessibleInterface *zugangFuer(const QString &, QObject *objekt)
{
    auto *const stelle = qobject_cast<Ansagestelle *>(objekt);
    return stelle != nullptr ? new Ansagezugang(stelle) : nullptr;
}

} // namespace

void ansageAbgeben(QWidget &fenster, const QString &inhalt)
{
    QAccessible::installFactory(zugangFuer); // once, however often
    const auto alte = fenster.findChildren<Ansagestelle *>(Qt::FindDirectChildrenOnly);
    if (alte.size() >= bleibende) {
        delete alte.first();
    }
    auto *const stelle = new Ansagestelle(fenster, inhalt);
    QAccessibleEvent ereignis(stelle, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&ereignis);
}

bool zeilenSindZellen()
{
    return true;
}

} // namespace kalvaro

#include "ansagestelle.moc"
