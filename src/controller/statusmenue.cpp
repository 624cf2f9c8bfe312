#include "controller/statusmenue.h"

#include "ui/knoepfe.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

Statusmenue::Statusmenue()
    : kopf_(addAction(u"kalvaro"_s))
    , updatePunkt_(addAction(u"Neue Version herunterladen …"_s, this, &Statusmenue::update))
{
    kopf_->setObjectName(u"kopf"_s);
    kopf_->setEnabled(false);
    updatePunkt_->setObjectName(u"updatePunkt"_s);
    updatePunkt_->setVisible(false);
    addSeparator();
    addAction(u"kalvaro öffnen"_s, this, &Statusmenue::oeffnen);
    addAction(u"Jetzt abgleichen"_s, this, &Statusmenue::abgleichen);
    addAction(u"rekordbox starten"_s, this, &Statusmenue::rekordbox);
    addSeparator();
    anmeldungPunkt_ = addAction(u"Beim Anmelden starten"_s, this, &Statusmenue::anmeldung);
    anmeldungPunkt_->setObjectName(u"anmeldung"_s);
    anmeldungPunkt_->setCheckable(true);
    addSeparator();
    addAction(u"kalvaro beenden"_s, this, &Statusmenue::beenden);
}

void Statusmenue::kopfSetzen(const QString &zeile)
{
    kopf_->setText(knopftext(zeile));
}

void Statusmenue::anmeldungSetzen(bool an)
{
    anmeldungPunkt_->setChecked(an);
}

void Statusmenue::updateZeigen(const QString &version)
{
    updatePunkt_->setText(knopftext(u"Version "_s + version + u" herunterladen …"_s));
    updatePunkt_->setVisible(true);
}

} // namespace kalvaro
