#include "platform/plattform.h"

#include "foundation/datenordner.h"
#include "foundation/uhr.h"
#include "platform/macos/anzeigesitzung.h"
#include "platform/macos/endesignale.h"
#include "platform/macos/hellesaussehen.h"
#include "platform/macos/laufendebuendel.h"
#include "platform/macos/launchagent.h"
#include "platform/macos/leistenobjekt.h"
#include "platform/macos/macarbeitsplatz.h"
#include "platform/macos/macfarbschema.h"
#include "platform/macos/macmitteilungen.h"
#include "platform/macos/macprozesse.h"
#include "platform/macos/macschreibtisch.h"
#include "platform/macos/ordnereinzelinstanz.h"
#include "platform/macos/resteentfernen.h"
#include "platform/macos/systemzertifikate.h"
#include "platform/macos/wiederoeffnen.h"

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
void startOrdnen()
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
    systemzertifikateNehmen();
}

} // namespace

struct Startlage::Innen
{
    Farben farben;
    std::optional<QString> mangel{};
};

// A platform that draws where nobody sees it was asked for by whoever wants that.
Startlage::Startlage(const QString &plattform, Farben farben)
    : innen_(new Innen{farben})
{
    startOrdnen();
    const QString gewollt =
        plattform.isEmpty() ? qEnvironmentVariable("QT_QPA_PLATFORM") : plattform;
    if ((gewollt.isEmpty() || gewollt == u"cocoa") && !anzeigesitzungDa()) {
        innen_->mangel = u"Niemand ist am Bildschirm dieses Macs angemeldet."_s;
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

Startlage::~Startlage() = default;

const std::optional<QString> &Startlage::anzeigemangel() const
{
    return innen_->mangel;
}

// All adapters but the one that decides whether there is anything to do for them.
struct Plattform::Geraete
{
    explicit Geraete(Uhr &uhr)
        : prozesse(uhr, laufendeBuendel)
        , arbeitsplatz(Arbeitsplatzzugang::desSystems())
        , anmeldestart(QCoreApplication::applicationFilePath())
        , mitteilungen(Mitteilungszugang::desSystems())
    {
    }

    const MacProzesse prozesse;
    MacArbeitsplatz arbeitsplatz;
    LaunchAgent anmeldestart;
    MacMitteilungen mitteilungen;
    Leistenobjekt statusobjekt;
};

struct Plattform::Innen
{
    Uhr &uhr;
    OrdnerEinzelinstanz einzelinstanz{};
    std::shared_ptr<void> wiederoeffnen{};
    std::optional<MacFarbschema> farbschema{};
    std::optional<Geraete> geraete{};
    std::optional<Endesignale> signale{};
};

Plattform::Plattform(const Startlage &startlage, Uhr &uhr)
    : innen_(new Innen{uhr})
{
    if (startlage.innen_->farben == Startlage::Farben::Eigene && !startlage.innen_->mangel) {
        hellesAussehen();
    }
}

Plattform::~Plattform() = default;

Einzelinstanz &Plattform::einzelinstanz()
{
    return innen_->einzelinstanz;
}

Farbschema &Plattform::farbschema()
{
    if (!innen_->farbschema) {
        innen_->farbschema.emplace();
    }
    return *innen_->farbschema;
}

Plattform::Anschluesse Plattform::anschluesse()
{
    if (!innen_->geraete) {
        innen_->geraete.emplace(innen_->uhr);
        // Whoever only draws or looks changes nothing, and leaves clicks to the one that runs.
        if (OrdnerEinzelinstanz &einzelinstanz = innen_->einzelinstanz; einzelinstanz.belegt()) {
            innen_->geraete->anmeldestart.nachfuehren();
            resteEntfernen(datei(u"einstellungen.json"_s), innen_->uhr.jetzt());
            resteEntfernen(agentpfad(), innen_->uhr.jetzt());
            innen_->geraete->mitteilungen.empfangen();
            QMetaObject::invokeMethod(
                &einzelinstanz,
                [this] {
                    innen_->wiederoeffnen = wiederoeffnenHoeren([&ziel = innen_->einzelinstanz] {
                        [[maybe_unused]] const bool nimmt = ziel.bitten(Wunsch::Oeffnen);
                    });
                },
                Qt::QueuedConnection);
        }
    }
    Geraete &g = *innen_->geraete;
    return {g.prozesse, g.arbeitsplatz, g.anmeldestart, g.mitteilungen, g.statusobjekt};
}

void Plattform::beiEnde(std::function<void()> enden)
{
    innen_->signale.emplace(std::move(enden));
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp,
                     [] { spaetestensEnden(laengstesEnde, 0); });
}

struct Rechnerauskunft::Innen
{
    Systemuhr uhr;
    const MacProzesse prozesse{uhr, laufendeBuendel};
    const MacSchreibtisch schreibtisch{anzeigesitzungDa};
};

Rechnerauskunft::Rechnerauskunft()
    : innen_(std::make_unique<Innen>())
{
    startOrdnen();
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
    spaetestensEnden(laengstesEnde, status);
    QCoreApplication::exit(status);
}

} // namespace kalvaro
