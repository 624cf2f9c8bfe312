#include "mainwindow/statuskarte.h"

#include "ui/beschriftung.h"
#include "ui/pille.h"
#include "ui/rad.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/symbole.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QEvent>

#include <algorithm>

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
    QString art;
    QString symbol;
    Farbton toenung;
    Farbton fuellung;
    Farbton schrift;
};

const Aussehen &aussehen(const QString &art)
{
    static const Aussehen arten[] = {
        {u"gut"_s, u"checkmark.circle.fill"_s, Farbe::systemGruen, Farbe::gutWeich, Farbe::gut},
        {u"warn"_s, u"exclamationmark.circle.fill"_s, Farbe::systemOrange, Farbe::warnWeich,
         Farbe::warn},
        {u"krit"_s, u"exclamationmark.octagon.fill"_s, Farbe::systemRot, Farbe::kritWeich,
         Farbe::krit},
        {u"aus"_s, u"play.circle.fill"_s, Farbe::akzent, Farbe::durchsichtig, Farbe::schrift},
    };
    static const Aussehen sonst{{}, {}, Farbe::schrift, Farbe::durchsichtig, Farbe::schrift};
    const auto *const gefunden = std::find_if(std::begin(arten), std::end(arten),
                                              [&](const Aussehen &a) { return a.art == art; });
    return gefunden == std::end(arten) ? sonst : *gefunden;
}

} // namespace

Statuskarte::Statuskarte(Uhr &zeit, QWidget *parent)
    : Karte(parent)
    , uhr(zeit)
    , bildZeichen(new Zeichen(zeichengroesse))
    , rad(new Rad(zeit))
    , lblTitel(beschriftung({}, 17, QFont::DemiBold))
    , lblDetail(beschriftung({}, 12, QFont::Normal, Farbe::sekundaer, detailbreite))
    , pille(new Pille)
{
    setObjectName(u"karteStatus"_s);
    bildZeichen->setObjectName(u"bildZeichen"_s);
    rad->setObjectName(u"rad"_s);
    rad->setFixedSize(zeichengroesse, zeichengroesse);
    rad->setAccessibleName(u"Vorgang läuft"_s);
    lblTitel->setObjectName(u"lblTitel"_s);
    lblTitel->setUmbruch(QWIDGETSIZE_MAX, titelzeilen);
    lblDetail->setObjectName(u"lblDetail"_s);
    lblDetail->setUmbruch(detailbreite, detailzeilen);
    lblDetail->setZeilenhoehe(17);
    pille->setObjectName(u"pille"_s);

    auto *const kopf = new QHBoxLayout;
    kopf->setSpacing(10);
    kopf->addWidget(lblTitel, 1);
    kopf->addWidget(pille, 0, Qt::AlignTop);
    auto *const texte = new QVBoxLayout;
    texte->setSpacing(3);
    texte->addLayout(kopf);
    texte->addWidget(lblDetail);
    texte->addStretch();

    auto *const inhalt = new QWidget;
    auto *const zeile = new QHBoxLayout(inhalt);
    zeile->setContentsMargins(0, 0, 0, 0);
    zeile->setSpacing(16);
    zeile->addWidget(bildZeichen, 0, Qt::AlignTop);
    zeile->addWidget(rad, 0, Qt::AlignTop);
    zeile->addLayout(texte, 1);
    einsetzen(inhalt);
    setMinimumHeight(qRound(mindesthoehe * schriftfaktor()));
}

void Statuskarte::zeige(const QString &art, const QString &titel, const QString &detail)
{
    const Aussehen &neu = aussehen(art);
    const bool laedt = art == u"laden"_s;
    art_ = art;
    setFuellung(neu.fuellung);
    lblTitel->setFarbe(neu.schrift);
    hintergrundMelden();

    ladeUhr.reset();
    bildZeichen->setVisible(!laedt);
    rad->setVisible(laedt);
    if (laedt) {
        rad->drehen();
        ladeText = detail;
        ladeBeginn = uhr.jetzt();
        ladeUhr = uhr.alle(Sekunden(1), [this] { ladetakt(); });
    } else {
        rad->anhalten();
        bildZeichen->setzen(neu.symbol, neu.toenung, titel);
    }
    lblTitel->setText(titel);
    lblDetail->setText(detail);

    // Told once for each state; the seconds that follow stay silent.
    const QString punkt = detail.isEmpty() || titel.endsWith(u'…') ? u" "_s : u". "_s;
    setAccessibleName((titel + punkt + lblDetail->accessibleName()).trimmed());
    QAccessibleEvent ansage(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&ansage);
}

void Statuskarte::ladetakt()
{
    const qint64 sekunden = std::max<qint64>(0, ladeBeginn.msecsTo(uhr.jetzt()) / 1000);
    lblDetail->setTextLautlos(ladeText + u"  (%1 s)"_s.arg(sekunden));
}

void Statuskarte::betriebZeigen(const QString &betrieb)
{
    if (betrieb == u"schatten"_s) {
        pille->setzen(u"Probebetrieb"_s, Farbe::warn, Farbe::warnWeich);
    } else if (betrieb == u"scharf"_s) {
        pille->setzen(u"Aktiv"_s, Farbe::gut, Farbe::gutWeich);
    }
}

// The texts stay readable on the card's colour.
void Statuskarte::hintergrundMelden()
{
    lblTitel->setGrund(grundfarbe());
    lblDetail->setGrund(grundfarbe());
    pille->setUnterlage(grundfarbe());
}

void Statuskarte::changeEvent(QEvent *event)
{
    Karte::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        hintergrundMelden();
    }
}

} // namespace kalvaro
