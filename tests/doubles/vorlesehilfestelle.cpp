// With a Qt that has no event for announcements: they are notifications that appear.
#include "doubles/vorlesehilfe.h"

namespace kalvaro {

std::optional<QString> ansageIn(QAccessibleEvent &ereignis)
{
    if (ereignis.type() != QAccessible::ObjectShow) {
        return {};
    }
    QAccessibleInterface *const zugang = ereignis.accessibleInterface();
    if (zugang == nullptr || zugang->role() != QAccessible::Notification) {
        return {};
    }
    // Orca passes by what is neither valid nor to be seen.
    const QAccessible::State stand = zugang->state();
    const bool gilt = zugang->isValid() && !stand.invisible && !stand.invalid;
    return gilt ? zugang->text(QAccessible::Name) : QString();
}

} // namespace kalvaro
