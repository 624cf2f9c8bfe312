#include "mainwindow/statuskarte.h"

#include "ui/ansage.h"
#include "ui/beschriftung.h"
#include "ui/pille.h"
#include "ui/rad.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/symbole.h"

#include <QBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int zeichengroesse = 44;
constexpr int detailbreite = 360;
constexpr int detailzeilen = 12;
constexpr int titelzeilen = 3;
constexpr int mindesthoehe = 96;

struct Aussehen
{
    QString symbol;
    Farbton toenung;
    Farbton fuellung;
    Farbton schrift;
};

Aussehen aussehen(Art art)
{
    switch (art) {
    case Art::Gut:
        return {u"checkmark.circle.fill"_s, Farbe::systemGruen, Farbe::gutWeich, Farbe::gut};
    case Art::Warn:
        return {u"exclamationmark.circle.fill"_s, Farbe::systemOrange, Farbe::warnWeich,
                Farbe::warn};
    case Art::Krit:
        return {u"exclamationmark.octagon.fill"_s, Farbe::systemRot, Farbe::kritWeich, Farbe::krit};
    case Art::Aus:
        return {u"play.circle.fill"_s, Farbe::akzent, Farbe::durchsichtig, Farbe::schrift};
    }
    Q_UNREACHABLE();
}

} // namespace

Statuskarte::Statuskarte(Uhr &uhr, QWidget *parent)
    : Karte(parent)
    , uhr_(uhr)
    , bildZeichen_(new Zeichen(mass(zeichengroesse)))
    , rad_(new Rad(uhr))
    , lblTitel_(beschriftung({}, 17, QFont::DemiBold))
    , lblDetail_(beschriftung({}, 12, QFont::Normal, Farbe::sekundaer, mass(detailbreite)))
    , pille_(new Pille)
{
    setObjectName(u"karteStatus"_s);
    bildZeichen_->setObjectName(u"bildZeichen"_s);
    rad_->setObjectName(u"rad"_s);
    rad_->setFixedSize(bildZeichen_->size());
    rad_->setAccessibleName(u"Vorgang läuft"_s);
    lblTitel_->setObjectName(u"lblTitel"_s);
    lblTitel_->setUmbruch(QWIDGETSIZE_MAX, titelzeilen);
    lblDetail_->setObjectName(u"lblDetail"_s);
    lblDetail_->setUmbruch(mass(detailbreite), detailzeilen);
    lblDetail_->setZeilenhoehe(mass(17));
    pille_->setObjectName(u"pille"_s);

    auto *const kopf = new QHBoxLayout;
    kopf->setSpacing(10);
    kopf->addWidget(lblTitel_, 1);
    kopf->addWidget(pille_, 0, Qt::AlignTop);
    auto *const texte = new QVBoxLayout;
    texte->setSpacing(3);
    texte->addLayout(kopf);
    texte->addWidget(lblDetail_);
    texte->addStretch();

    auto *const inhalt = new QWidget;
    auto *const zeile = new QHBoxLayout(inhalt);
    zeile->setContentsMargins(0, 0, 0, 0);
    zeile->setSpacing(16);
    zeile->addWidget(bildZeichen_, 0, Qt::AlignTop);
    zeile->addWidget(rad_, 0, Qt::AlignTop);
    zeile->addLayout(texte, 1);
    einsetzen(inhalt);
    setKnapp(false);
}

void Statuskarte::zeige(Art art, const QString &titel, const QString &detail)
{
    const Aussehen neu = aussehen(art);
    art_ = art;
    ladeUhr_.reset();
    rad_->anhalten();
    bildZeichen_->setzen(neu.symbol, neu.toenung, titel);
    setzen(titel, detail, neu.schrift, neu.fuellung);
}

void Statuskarte::laden(const QString &titel, const QString &detail)
{
    art_.reset();
    rad_->drehen();
    ladeText_ = detail;
    ladeBeginn_ = uhr_.laufzeit();
    ladeUhr_ = uhr_.alle(Sekunden(1), [this] { ladetakt(); });
    setzen(titel, detail, Farbe::schrift, Farbe::durchsichtig);
}

void Statuskarte::setzen(const QString &titel, const QString &detail, Farbton schrift,
                         Farbton grund)
{
    setFuellung(grund);
    lblTitel_->setFarbe(schrift);
    bildZeichen_->setVisible(art_.has_value());
    rad_->setVisible(!art_);
    lblTitel_->textSetzen(titel);
    lblDetail_->textSetzen(detail);

    // Once for each state; the seconds that follow stay silent.
    const QString punkt = detail.isEmpty() || titel.endsWith(u'…') ? u" "_s : u". "_s;
    setAccessibleName((titel + punkt + lblDetail_->accessibleName()).trimmed());
}

void Statuskarte::vorlesen()
{
    ansagen(*this, accessibleName());
}

void Statuskarte::ladetakt()
{
    const qint64 sekunden = (uhr_.laufzeit() - ladeBeginn_) / std::chrono::seconds(1);
    lblDetail_->textLautlosSetzen(ladeText_ + u"  (%1 s)"_s.arg(sekunden));
}

void Statuskarte::betriebZeigen(const QString &betrieb)
{
    if (betrieb == u"schatten"_s) {
        pille_->setzen(u"Probebetrieb"_s, Farbe::warn, Farbe::warnWeich);
    } else if (betrieb == u"scharf"_s) {
        pille_->setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    }
}

void Statuskarte::setKnapp(bool knapp)
{
    setMinimumHeight(knapp ? 0 : mass(mindesthoehe));
}

int Statuskarte::ersparnis(int breite) const
{
    return std::max(0, mass(mindesthoehe) - layout()->totalHeightForWidth(breite));
}

} // namespace kalvaro
