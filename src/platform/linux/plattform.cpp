#include "platform/plattform.h"

#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/dbusmitteilungen.h"
#include "platform/linux/endefrist.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxprozesse.h"
#include "platform/linux/signale.h"
#include "platform/linux/traystatusobjekt.h"
#include "platform/linux/xdganmeldestart.h"

#include <QCoreApplication>

#include <optional>

namespace kalvaro {

namespace {

constexpr int laengstesEnde = 700; // milliseconds

// Without a display the program can still draw its picture and say what is wrong.
void anzeigeWaehlen()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

} // namespace

// All adapters but the one that decides whether there is anything to do for them.
struct Plattform::Geraete
{
    explicit Geraete(Uhr &uhr)
        : arbeitsplatz(uhr)
        , statusobjekt(uhr)
    {
    }

    const LinuxProzesse prozesse;
    LinuxArbeitsplatz arbeitsplatz;
    XdgAnmeldestart anmeldestart;
    DBusMitteilungen mitteilungen;
    TrayStatusobjekt statusobjekt;
};

struct Startlage::Innen
{
    const Aktivierung aktivierung = Aktivierung::desStarts();
};

Startlage::Startlage()
    : innen_(std::make_unique<Innen>())
{
    sitzungsbusFestlegen();
    anzeigeWaehlen();
}

Startlage::~Startlage() = default;

struct Plattform::Innen
{
    DBusEinzelinstanz einzelinstanz;
    Uhr &uhr;
    std::optional<Geraete> geraete{};
    std::optional<Signale> signale{};
};

Plattform::Plattform(const Startlage &startlage, Uhr &uhr)
    : innen_(new Innen{DBusEinzelinstanz(startlage.innen_->aktivierung), uhr})
{
}

Plattform::~Plattform() = default;

Einzelinstanz &Plattform::einzelinstanz()
{
    return innen_->einzelinstanz;
}

Plattform::Anschluesse Plattform::anschluesse()
{
    if (!innen_->geraete) {
        innen_->geraete.emplace(innen_->uhr);
        // Whoever only draws or looks changes nothing.
        if (innen_->einzelinstanz.belegt()) {
            innen_->geraete->anmeldestart.nachfuehren();
        }
    }
    Geraete &g = *innen_->geraete;
    return {g.prozesse, g.arbeitsplatz, g.anmeldestart, g.mitteilungen, g.statusobjekt};
}

void Plattform::beiEnde(std::function<void()> enden)
{
    innen_->signale.emplace(std::move(enden));
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp,
                     [] { endeErzwingen(laengstesEnde); });
}

} // namespace kalvaro
