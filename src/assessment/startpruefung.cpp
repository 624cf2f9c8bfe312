#include "assessment/startpruefung.h"

#include "assessment/aenderungstexte.h"
#include "foundation/protokoll.h"
#include "foundation/werte.h"
#include "server/inhalt.h"
#include "server/zentrale.h"

#include <QJsonArray>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

Auftrag standAnfragen(const QString &geraet)
{
    // RFC 3986, 3.4: what a query may hold as it is, beside letters, digits and "-._~".
    const QByteArray name = QUrl::toPercentEncoding(geraet, "!$&'()*+,;=:@/?");
    return {.pfad = u"/api/stand?geraet="_s + QString::fromLatin1(name), .zeit = Sekunden(8)};
}

Startpruefung standPruefen(const QJsonValue &stand)
{
    Startpruefung p;
    const QJsonArray andere = pfad(stand, u"andere").toArray();
    p.noetig = pfad(stand, u"ausstehend") == QJsonValue(true) ||
               std::any_of(andere.begin(), andere.end(), [](const QJsonValue &geraet) {
                   return pfad(geraet, u"laeuft") == QJsonValue(true);
               });
    p.hinweis = andereHinweise(stand);
    return p;
}

void startPruefen(Zentrale &zentrale, QObject *besitzer,
                  std::function<void(const Startpruefung &)> fertig)
{
    zentrale.anfrageLesen<Startpruefung>(
        standAnfragen(zentrale.konto().geraet), besitzer,
        [](const QByteArray &daten, const Abbruch &) {
            const auto stand = inhalt(daten);
            return stand ? std::optional(standPruefen(*stand)) : std::nullopt;
        },
        [fertig = std::move(fertig)](const tl::expected<Startpruefung, ZentraleFehler> &p) {
            if (!p) {
                protokoll(u"Startprüfung ohne Antwort: "_s + p.error().meldung);
                fertig({});
                return;
            }
            protokoll(u"Startprüfung: "_s + (p->noetig ? u"erst abgleichen"_s : u"Stand passt"_s) +
                      (p->hinweis ? u" | "_s + *p->hinweis : QString()));
            fertig(*p);
        });
}

} // namespace kalvaro
