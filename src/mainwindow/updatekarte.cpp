#include "mainwindow/updatekarte.h"

#include "ui/beschriftung.h"
#include "ui/schrift.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace kalvaro {

using namespace Qt::StringLiterals;

Updatekarte::Updatekarte(QWidget *parent)
    : Karte(parent)
    , lblUpdate_(beschriftung({}, 13.5, QFont::DemiBold, Farbe::verweis))
{
    setObjectName(u"karteUpdate"_s);
    lblUpdate_->setObjectName(u"lblUpdate"_s);
    auto *const knUpdate = new QPushButton(u"Herunterladen"_s);
    knUpdate->setObjectName(u"knUpdate"_s);
    knUpdate->setFont(systemschrift(13));
    knUpdate->setAutoDefault(true); // Return presses it while it has the focus
    connect(knUpdate, &QPushButton::clicked, this, [this] {
        if (updateAdresse_) {
            Q_EMIT gedrueckt(*updateAdresse_);
        }
    });

    auto *const inhalt = new QWidget;
    auto *const zeile = new QHBoxLayout(inhalt);
    zeile->setContentsMargins(0, 0, 0, 0);
    zeile->setSpacing(12);
    zeile->addWidget(lblUpdate_, 1);
    zeile->addWidget(knUpdate);
    einsetzen(inhalt, 18, 11);
    hide();
}

void Updatekarte::zeige(const QString &version, const QString &adresse)
{
    updateAdresse_ = adresse;
    lblUpdate_->textSetzen(u"Neue Version "_s + version + u" verfügbar"_s);
    show();
}

} // namespace kalvaro
