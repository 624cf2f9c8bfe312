// The doubles of the ports keep to the same contracts.

#include "doubles/fakeanmeldestart.h"
#include "doubles/fakearbeitsplatz.h"
#include "doubles/fakefarbschema.h"
#include "doubles/fakemitteilungen.h"
#include "doubles/fakeprozesse.h"
#include "doubles/fakestatusobjekt.h"
#include "prueflinge.h"

#include <QMenu>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString wer = u"double"_s;

struct Startpruefling final : Anmeldestartpruefling
{
    Anmeldestart &start() override { return fake; }
    void verhindern() override { fake.verweigern(); }

    FakeAnmeldestart fake;
};
const Vertrag<Anmeldestartpruefling> anmeldestart(wer, std::make_unique<Startpruefling>);

struct Sitzungspruefling final : Arbeitsplatzpruefling
{
    Arbeitsplatz &arbeitsplatz() override { return fake; }
    QString gutes() override
    {
        fake.fehler.reset();
        return u"/A/gut.app"_s;
    }
    QString kaputtes() override
    {
        fake.fehler = u"geht nicht"_s;
        return u"/A/kaputt.app"_s;
    }
    [[nodiscard]] int starts() const override
    {
        return static_cast<int>(fake.starts.count(u"/A/gut.app"_s));
    }
    [[nodiscard]] QList<QUrl> geoeffnet() const override { return fake.adressen; }
    void wecken() override
    {
        if (const auto ruf = fake.geweckt) {
            ruf();
        }
    }

    FakeArbeitsplatz fake;
};
const Vertrag<Arbeitsplatzpruefling> arbeitsplatz(wer, std::make_unique<Sitzungspruefling>);

struct Schemapruefling final : Farbpruefling
{
    Farbschema &schema() override { return fake; }
    void wechseln(Helligkeit helligkeit) override { fake.wechseln({.ausdruecklich = helligkeit}); }

    FakeFarbschema fake;
};
const Vertrag<Farbpruefling> farbschema(wer, std::make_unique<Schemapruefling>);

struct Postpruefling final : Mitteilungspruefling
{
    Mitteilungen &mitteilungen() override { return fake; }
    [[nodiscard]] QList<Mitteilung> gezeigt() const override { return fake.alle; }
    void klicken(qsizetype nummer) override { fake.klicken(nummer); }
    bool verweigern() override { return false; }

    FakeMitteilungen fake;
};
const Vertrag<Mitteilungspruefling> mitteilungen(wer, std::make_unique<Postpruefling>);

struct Tabellenpruefling final : Prozesspruefling
{
    [[nodiscard]] const Prozesse &prozesse() const override { return fake; }
    void laufen(const QString &name, int anzahl) override { fake.laufend[name] = anzahl; }
    void buendel(const QStringList &orte) override { fake.buendelliste = orte; }
    bool ohneZaehlung() override { return false; }
    bool zaehlungHaengt() override { return false; }

    FakeProzesse fake;
};
const Vertrag<Prozesspruefling> prozesse(wer, std::make_unique<Tabellenpruefling>);

struct Zeichenpruefling final : Statuspruefling
{
    Statusobjekt &objekt() override { return fake; }
    bool sichtbar() override { return fake.leisteDa && !fake.symbole.isEmpty(); }
    QString hinweis() override { return fake.hinweis(); }
    void menueOeffnen() override { Q_EMIT fake.menue->aboutToShow(); }
    bool leiste(bool da) override
    {
        fake.leiste(da);
        return true;
    }

    FakeStatusobjekt fake;
};
const Vertrag<Statuspruefling> statusobjekt(wer, std::make_unique<Zeichenpruefling>);

} // namespace

} // namespace kalvaro
