#include "einzelinstanzteile.h"
#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/signale.h"

#include <optional>

namespace kalvaro {

namespace {

std::optional<Aktivierung> &eigene()
{
    static std::optional<Aktivierung> diese;
    return diese;
}

} // namespace

void vorbereiten()
{
    eigene() = Aktivierung::desStarts();
    sitzungsbusFestlegen();
}

std::unique_ptr<Einzelinstanz> einzelinstanzAnlegen()
{
    return std::make_unique<DBusEinzelinstanz>(*eigene());
}

std::shared_ptr<void> endeHoeren(std::function<void()> ende)
{
    return std::make_shared<Signale>(std::move(ende));
}

QByteArray beigaben()
{
    return ' ' + qgetenv("XDG_ACTIVATION_TOKEN") + ' ' + qgetenv("DESKTOP_STARTUP_ID");
}

} // namespace kalvaro
