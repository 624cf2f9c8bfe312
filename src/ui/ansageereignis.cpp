// Announcements with a Qt that has an event for them.

#include "ui/ansage.h"

#include <QAccessible>
#include <QWidget>

namespace kalvaro {

void ansageAbgeben(QWidget &fenster, const QString &inhalt)
{
    QAccessibleAnnouncementEvent ereignis(&fenster, inhalt); // polite
    QAccessible::updateAccessibility(&ereignis);
}

} // namespace kalvaro
