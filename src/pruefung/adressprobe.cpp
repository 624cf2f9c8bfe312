#include "pruefung/adressprobe.h"

#include "assessment/startpruefung.h"
#include "foundation/einmalruf.h"
#include "foundation/uhr.h"
#include "server/zentrale.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QUrl>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

class Adressprobe final : public Einmalruf<Adresslage>
{
public:
    Adressprobe(Zentrale &zentrale, const Uhr &uhr, QObject *besitzer, Ruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , zentrale_(zentrale)
        , uhr_(uhr)
    {
    }

    void beginnen(const QString &adresse, const Namenssuche &suchen)
    {
        lage_.adresse = adresse;
        const QString host = QUrl(adresse).host();
        if (!QHostAddress(host).isNull()) {
            lage_.name = Adresslage::Name::Gefunden; // asking would tell the name server
        } else if (!host.isEmpty()) {
            suchen(host, this, [this](bool bekannt) {
                lage_.name = bekannt ? Adresslage::Name::Gefunden : Adresslage::Name::Unbekannt;
            });
        }
        const auto anfang = uhr_.laufzeit();
        zentrale_.roh(adresse + statusAnfragen().pfad, statusAnfragen(), this,
                      [this, anfang](const Adresslage::Antwort &antwort) {
                          lage_.status = antwort;
                          lage_.dauer = uhr_.laufzeit() - anfang;
                          weiter();
                      });
    }

private:
    void weiter()
    {
        if (!lage_.status) {
            antworten(lage_);
            return;
        }
        const Auftrag stand = standAnfragen(zentrale_.konto().geraet);
        zentrale_.roh(lage_.adresse + stand.pfad, stand, this,
                      [this](const Adresslage::Antwort &antwort) {
                          lage_.stand = antwort;
                          antworten(lage_);
                      });
    }

    Zentrale &zentrale_;
    const Uhr &uhr_;
    Adresslage lage_;
};

} // namespace

void namenSuchen(const QString &host, QObject *besitzer, std::function<void(bool)> fertig)
{
    QHostInfo::lookupHost(host, besitzer, [fertig = std::move(fertig)](const QHostInfo &ergebnis) {
        fertig(ergebnis.error() == QHostInfo::NoError);
    });
}

void adresseProben(const QString &adresse, Zentrale &zentrale, const Uhr &uhr,
                   const Namenssuche &suchen, QObject *besitzer,
                   std::function<void(const Adresslage &)> fertig)
{
    (new Adressprobe(zentrale, uhr, besitzer, std::move(fertig)))->beginnen(adresse, suchen);
}

} // namespace kalvaro
