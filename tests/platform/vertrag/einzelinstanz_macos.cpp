#include "einzelinstanzteile.h"
#include "platform/macos/endesignale.h"
#include "platform/macos/ordnereinzelinstanz.h"

namespace kalvaro {

void vorbereiten()
{
}

std::unique_ptr<Einzelinstanz> einzelinstanzAnlegen()
{
    return std::make_unique<OrdnerEinzelinstanz>();
}

std::shared_ptr<void> endeHoeren(std::function<void()> ende)
{
    return std::make_shared<Endesignale>(std::move(ende));
}

QByteArray beigaben()
{
    return {};
}

} // namespace kalvaro
