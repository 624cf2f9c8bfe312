#include "ui/knopfzugang.h"

#include "ui/knoepfe.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

class Verweiszugang final : public QAccessibleWidget
{
public:
    explicit Verweiszugang(Verweis *knopf)
        : QAccessibleWidget(knopf, QAccessible::Button)
    {
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State zustand = QAccessibleWidget::state();
        zustand.busy = knopf()->beschaeftigt();
        zustand.disabled = zustand.disabled || zustand.busy;
        zustand.pressed = knopf()->isDown();
        return zustand;
    }
    [[nodiscard]] QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &aktion) override
    {
        if (aktion != pressAction()) {
            QAccessibleWidget::doAction(aktion);
        } else if (!knopf()->beschaeftigt()) {
            knopf()->animateClick(); // as Qt presses the other buttons, so that order is kept
        }
    }

private:
    [[nodiscard]] Verweis *knopf() const { return static_cast<Verweis *>(widget()); }
};

QAccessibleInterface *zugangFuer(const QString &klasse, QObject *objekt)
{
    return klasse == u"kalvaro::Verweis" && objekt != nullptr
               ? new Verweiszugang(static_cast<Verweis *>(objekt))
               : nullptr;
}

} // namespace

void knopfzugangAnmelden()
{
    QAccessible::installFactory(zugangFuer);
}

void beschaeftigtMelden(Verweis &knopf)
{
    QAccessible::State geaendert;
    geaendert.busy = true;
    geaendert.disabled = true;
    QAccessibleStateChangeEvent ereignis(&knopf, geaendert);
    QAccessible::updateAccessibility(&ereignis);
}

} // namespace kalvaro
