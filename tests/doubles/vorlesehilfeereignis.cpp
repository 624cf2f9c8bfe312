// With a Qt that has an event for announcements.
#include "doubles/vorlesehilfe.h"

namespace kalvaro {

std::optional<QString> ansageIn(QAccessibleEvent &ereignis)
{
    if (ereignis.type() != QAccessible::Announcement) {
        return {};
    }
    return static_cast<QAccessibleAnnouncementEvent &>(ereignis).message();
}

} // namespace kalvaro
