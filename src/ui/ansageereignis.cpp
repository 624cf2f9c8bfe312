// With a Qt that has an event for announcements.

#include "ui/ansage.h"

#include <QAccessible>
#include <QWidget>

namespace kalvaro {

void ansageAbgeben(QWidget &fenster, const QString &inhalt)
{
    QAccessibleAnnouncementEvent ereignis(&fenster, inhalt); // polite
    QAccessible::updateAccessibility(&ereignis);
}

bool zeilenSindZellen()
{
    return false;
}

} // namespace kalvaro
