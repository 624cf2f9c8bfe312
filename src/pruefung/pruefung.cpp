#include "pruefung/pruefung.h"

#include "foundation/datenordner.h"
#include "foundation/uhr.h"
#include "pruefung/rechnerlage.h"
#include "rekordbox/rekordbox.h"
#include "server/zentrale.h"

#include <QSysInfo>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString systemname()
{
    return QSysInfo::prettyProductName() + u", "_s + QSysInfo::kernelType() + u' ' +
           QSysInfo::kernelVersion() + u' ' + QSysInfo::currentCpuArchitecture();
}

} // namespace

Pruefung::Pruefung(Pruefumgebung umgebung)
    : umgebung_(std::move(umgebung))
{
}

Pruefung::~Pruefung() = default;

void Pruefung::beginnen(Rueckruf fertig)
{
    fertig_ = std::move(fertig);
    zaehlen();
}

void Pruefung::zaehlen()
{
    const Rekordbox &rekordbox = umgebung_.rekordbox;
    rekordbox.hauptLaeuft(this, [this](bool laeuft) {
        haupt_ = laeuft;
        gezaehlt();
    });
    rekordbox.anzahl(u"rekordboxAgent"_s, this, [this](qsizetype anzahl) {
        agent_ = anzahl > 0;
        gezaehlt();
    });
}

void Pruefung::gezaehlt()
{
    if (!haupt_ || !agent_) {
        return;
    }
    // What takes the processor or blocks comes before the network, whose times are measured.
    oertliches();
    konto_ = Kontolage::lesen();
    if (konto_.konto) {
        fragen(*konto_.konto);
    } else {
        fertigstellen();
    }
}

void Pruefung::oertliches()
{
    const Rekordbox &rekordbox = umgebung_.rekordbox;
    const Schreibtischauskunft &schreibtisch = umgebung_.schreibtisch;
    const bool bus = schreibtisch.sitzungsbus();
    rechner_ = {
        datenordnerbefund(ordnerlage(appOrdner(), {u"kalvaro.log"_s, u"einstellungen.json"_s})),
        rekordboxbefund(rekordbox.installationen(), umgebung_.programmordner),
        prozessbefund(*haupt_, *agent_),
        sitzungsbusbefund(bus),
        mitteilungsbefund(bus ? schreibtisch.mitteilungsdienst()
                              : Schreibtischauskunft::Mitteilungsdienst(),
                          bus),
        leistenbefund(schreibtisch.leiste()),
        anmeldebefund(schreibtisch.anmeldeeintrag()),
        versionsbefund(QString::fromLatin1(qVersion()), systemname())};
}

void Pruefung::fragen(const Konto &konto)
{
    zentrale_ = std::make_unique<Zentrale>(konto, umgebung_.transport);
    QStringList adressen = konto.server;
    adressen.removeDuplicates();
    adressen_.resize(static_cast<size_t>(adressen.size()));
    for (size_t i = 0; i < adressen_.size(); ++i) {
        adresseProben(adressen[static_cast<qsizetype>(i)], *zentrale_, umgebung_.uhr,
                      umgebung_.namenssuche, this, [this, i](const Adresslage &lage) {
                          adressen_[i] = lage;
                          if (std::all_of(adressen_.begin(), adressen_.end(),
                                          [](const auto &a) { return a.has_value(); })) {
                              fertigstellen();
                          }
                      });
    }
}

void Pruefung::fertigstellen()
{
    const Konto konto = konto_.konto.value_or(Konto());
    QList<Befund> befunde{kontobefund(konto_)};
    if (konto_.istDatei && konto_.lesbar) {
        befunde.append(rechtebefund(konto_));
    }
    const Adressangaben angaben{konto.geraet, konto.schluessel, konto_.pfad, umgebung_.uhr.jetzt()};
    for (const auto &adresse : adressen_) {
        befunde.append(adressbefund(*adresse, angaben));
    }
    // Also the key of a file that makes no account.
    const QString schluessel = schluesselAus(konto_.felder.value_or(QJsonObject()));
    fertig_(bereinigt(befunde + rechner_, schluessel));
}

} // namespace kalvaro
