#include "platform/macos/leistenobjekt.h"

#include "platform/macos/leistenzeichen.h"

namespace kalvaro {

void Leistenobjekt::symbolSetzen(const QString &name)
{
    eintrag_.setIcon(leistenzeichen(name));
    eintrag_.show();
}

// What the toolkit hands on here is plain text.
void Leistenobjekt::hinweisSetzen(const QString &hinweis)
{
    eintrag_.setToolTip(hinweis);
}

void Leistenobjekt::menueSetzen(QMenu *menue)
{
    eintrag_.setContextMenu(menue);
}

bool Leistenobjekt::erreichbar() const
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void Leistenobjekt::beiWechsel(std::function<void()> /*gewechselt*/)
{
}

} // namespace kalvaro
