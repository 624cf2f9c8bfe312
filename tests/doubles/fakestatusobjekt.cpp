#include "doubles/fakestatusobjekt.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

void FakeStatusobjekt::symbolSetzen(const QString &name)
{
    symbole.append(name);
    verlauf.append(u"Symbol "_s + name);
}

void FakeStatusobjekt::hinweisSetzen(const QString &hinweis)
{
    hinweise.append(hinweis);
    verlauf.append(u"Hinweis "_s + hinweis);
}

void FakeStatusobjekt::menueSetzen(QMenu *menu)
{
    menue = menu;
    verlauf.append(u"Menü"_s);
}

void FakeStatusobjekt::leiste(bool da)
{
    leisteDa = da;
    if (gewechselt) {
        gewechselt();
    }
}

} // namespace kalvaro
