#include "platform/plattform.h"

#include "foundation/datenordner.h"
#include "platform/linux/anzeigewahl.h"
#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/dbusmitteilungen.h"
#include "platform/linux/endefrist.h"
#include "platform/linux/farbportal.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxfarbschema.h"
#include "platform/linux/linuxprozesse.h"
#include "platform/linux/linuxschreibtisch.h"
#include "platform/linux/sicherungsreste.h"
#include "platform/linux/signale.h"
#include "platform/linux/traystatusobjekt.h"
#include "platform/linux/vorlesebus.h"
#include "platform/linux/xanzeige.h"
#include "platform/linux/xdganmeldestart.h"

#include <QCoreApplication>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int laengstesEnde = 700; // milliseconds

// What whoever started us may have left behind. Whoever reads from us may go at any time, and a
// file may be as long as it is allowed to be: a write then fails, no more. What we open must not
// become standard output. And the signals to end must come through.
void startlageOrdnen()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    while (true) {
        const int fd = ::open("/dev/null", O_RDWR);
        if (fd < 0 || fd > STDERR_FILENO) {
            ::close(fd);
            break;
        }
    }
    sigset_t ende = {};
    sigemptyset(&ende);
    for (const int nummer : {SIGTERM, SIGINT, SIGHUP, SIGALRM}) {
        sigaddset(&ende, nummer);
    }
    ::sigprocmask(SIG_UNBLOCK, &ende, nullptr);
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
        vorlesebusEinrichten();
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
    std::optional<Farbfrage> farbfrage{};
    std::optional<QString> mangel{};
    XAnzeige anzeige{}; // held until the toolkit has a connection of its own
};

Startlage::Startlage(const QString &plattform, Farben farben)
    : innen_(std::make_unique<Innen>())
{
    startlageOrdnen();
    sitzungsbusFestlegen();
    if (farben == Farben::Desktop) {
        innen_->farbfrage.emplace(sitzungsbusAdresse());
    }
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
    std::optional<Farbfrage> &farbfrage;
    Uhr &uhr;
    std::optional<LinuxFarbschema> farbschema{};
    std::optional<Geraete> geraete{};
    std::optional<Signale> signale{};
};

Plattform::Plattform(const Startlage &startlage, Uhr &uhr)
    : innen_(new Innen{DBusEinzelinstanz(startlage.innen_->aktivierung),
                       startlage.innen_->farbfrage, uhr})
{
    startlage.innen_->anzeige = {};
}

Plattform::~Plattform() = default;

Einzelinstanz &Plattform::einzelinstanz()
{
    return innen_->einzelinstanz;
}

Farbschema &Plattform::farbschema()
{
    if (!innen_->farbschema) {
        const auto antwort = innen_->farbfrage ? innen_->farbfrage->antwort() : std::nullopt;
        innen_->farbfrage.reset();
        innen_->farbschema.emplace(sitzungsbus(), antwort);
    }
    return *innen_->farbschema;
}

Plattform::Anschluesse Plattform::anschluesse()
{
    if (!innen_->geraete) {
        innen_->geraete.emplace(innen_->uhr);
        // Whoever only draws or looks changes nothing.
        if (innen_->einzelinstanz.belegt()) {
            innen_->geraete->anmeldestart.nachfuehren();
            sicherungsresteEntfernen(datei(u"einstellungen.json"_s));
            sicherungsresteEntfernen(autostartdatei());
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
    startlageOrdnen();
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
