#include "controller/statusmenue.h"

#include "ui/knoepfe.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

Statusmenue::Statusmenue()
    : kopf(addAction(u"kalvaro"_s))
    , updatePunkt(addAction(u"Neue Version herunterladen …"_s, this, &Statusmenue::update))
{
    kopf->setObjectName(u"kopf"_s);
    kopf->setEnabled(false);
    updatePunkt->setObjectName(u"updatePunkt"_s);
    updatePunkt->setVisible(false);
    addSeparator();
    addAction(u"kalvaro öffnen"_s, this, &Statusmenue::oeffnen);
    addAction(u"Jetzt abgleichen"_s, this, &Statusmenue::abgleichen);
    addAction(u"rekordbox starten"_s, this, &Statusmenue::rekordbox);
    addSeparator();
    anmeldungPunkt = addAction(u"Beim Anmelden starten"_s, this, &Statusmenue::anmeldung);
    anmeldungPunkt->setObjectName(u"anmeldung"_s);
    anmeldungPunkt->setCheckable(true);
    addSeparator();
    addAction(u"kalvaro beenden"_s, this, &Statusmenue::beenden);
}

void Statusmenue::kopfSetzen(const QString &zeile)
{
    kopf->setText(knopftext(zeile));
}

void Statusmenue::anmeldungSetzen(bool an)
{
    anmeldungPunkt->setChecked(an);
}

void Statusmenue::updateZeigen(const QString &version)
{
    updatePunkt->setText(knopftext(u"Version "_s + version + u" herunterladen …"_s));
    updatePunkt->setVisible(true);
}

} // namespace kalvaro
