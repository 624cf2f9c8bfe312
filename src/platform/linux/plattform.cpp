#include "platform/plattform.h"

#include "platform/linux/anzeigewahl.h"
#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/dbusmitteilungen.h"
#include "platform/linux/endefrist.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxprozesse.h"
#include "platform/linux/linuxschreibtisch.h"
#include "platform/linux/signale.h"
#include "platform/linux/traystatusobjekt.h"
#include "platform/linux/xanzeige.h"
#include "platform/linux/xdganmeldestart.h"

#include <QCoreApplication>

#include <csignal>
#include <optional>

namespace kalvaro {

namespace {

constexpr int laengstesEnde = 700; // milliseconds

// Whoever reads from us or listens to us may go at any time: a write then fails, no more.
void abbruchUeberstehen()
{
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace

// All adapters but the one that decides whether there is anything to do for them.
struct Plattform::Geraete
{
    explicit Geraete(Uhr &uhr)
        : prozesse(uhr)
        , arbeitsplatz(uhr)
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
    std::optional<QString> mangel{};
    XAnzeige anzeige{}; // held until the toolkit has a connection of its own
};

Startlage::Startlage(const QString &plattform)
    : innen_(std::make_unique<Innen>())
{
    abbruchUeberstehen();
    sitzungsbusFestlegen();
    const auto angaben = Anzeigeangaben::derUmgebung(plattform);
    const Anzeigewahl wahl = anzeigeWaehlen(
        angaben,
        [&] {
            innen_->anzeige = xAnzeigeFragen(angaben.x11.toLocal8Bit());
            return innen_->anzeige.antwortet;
        },
        [&] { return waylandAntwortet(angaben.wayland); });
    innen_->mangel = wahl.mangel;
    if (!wahl.plattform.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", wahl.plattform.toLatin1());
    }
}

Startlage::~Startlage() = default;

const std::optional<QString> &Startlage::anzeigemangel() const
{
    return innen_->mangel;
}

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
    startlage.innen_->anzeige = {};
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
                     [] { endeErzwingen(laengstesEnde, 0); });
}

struct Rechnerauskunft::Innen
{
    Systemuhr uhr;
    const LinuxProzesse prozesse{uhr};
    const LinuxSchreibtisch schreibtisch{};
};

Rechnerauskunft::Rechnerauskunft()
    : innen_(std::make_unique<Innen>())
{
    abbruchUeberstehen();
}

Rechnerauskunft::~Rechnerauskunft() = default;

const Prozesse &Rechnerauskunft::prozesse() const
{
    return innen_->prozesse;
}

const Schreibtischauskunft &Rechnerauskunft::schreibtisch() const
{
    return innen_->schreibtisch;
}

void Rechnerauskunft::enden(int status)
{
    endeErzwingen(laengstesEnde, status);
    QCoreApplication::exit(status);
}

} // namespace kalvaro
