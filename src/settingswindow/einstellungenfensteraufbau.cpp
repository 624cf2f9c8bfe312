// How the settings sheet is built.

#include "settingswindow/einstellungenfenster.h"

#include "foundation/einstellungen.h"
#include "platform/anmeldestart.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/blattmasse.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/beschriftung.h"
#include "ui/eingabe.h"
#include "ui/karte.h"
#include "ui/knoepfe.h"
#include "ui/schrift.h"
#include "ui/stapel.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;
using namespace blattmasse;

namespace {

constexpr int zeilenhoehe = 28; // of fields and buttons
constexpr int umbruchbreite = 400;

const QString ueberschrift = u"Playlisten lokal speichern"_s;
const QString erklaerung =
    u"Angehakte Playlisten werden auf diesen Mac kopiert und spielen dann auch ohne Verbindung "
    "zur Musikplatte. Ein Ordner nimmt alle seine Playlisten mit."_s;

} // namespace

EinstellungenFenster::EinstellungenFenster(Vorgaben vorgaben, QWidget *eltern)
    : QDialog(eltern, Qt::Sheet)
    , vorgaben_(std::move(vorgaben))
    , modell_(new PlaylistenModell(this))
    , eingaben_(new QWidget)
    , popVersion_(new QComboBox)
    , cbAuto_(new Haken(u"Beim Öffnen von kalvaro automatisch starten\n"
                        "(5 Sekunden, nachdem der Abgleich fertig ist)"_s))
    , cbAnmeldung_(new Haken(u"kalvaro beim Anmelden im Hintergrund starten\n"
                             "(Symbol in der Menüleiste – gleicht nach rekordbox sofort ab)"_s))
    , suchfeld_(new QLineEdit)
    , baum_(new Baumansicht(*modell_))
    , lblInfo_(beschriftung(u"Playlisten werden geladen …"_s, 12, QFont::Normal, Farbe::sekundaer,
                            mass(fensterbreite - 2 * rand)))
    , knAbbrechen_(new QPushButton(u"Abbrechen"_s))
    , knSichern_(new QPushButton(u"Sichern"_s))
    , rollbereich_(new QScrollArea)
    , fuss_(stapel({lblInfo_, tastenzeile()}, Qt::Vertical, abstand))
{
    setObjectName(u"einstellungen"_s);
    setWindowTitle(u"Einstellungen"_s);
    setWindowModality(Qt::WindowModal);
    aufbauen();
}

void EinstellungenFenster::aufbauen()
{
    baumAufbauen();
    auto *const oben = new QVBoxLayout(eingaben_);
    oben->addWidget(versionszeile());
    oben->addWidget(optionen());
    oben->addWidget(new Haarlinie(Qt::Horizontal));
    oben->addWidget(listenkopf());
    oben->addWidget(suchfeld_);
    oben->addWidget(baum_);

    rollbereich_->setFrameShape(QFrame::NoFrame);
    rollbereich_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rollbereich_->setWidgetResizable(true);
    rollbereich_->setFocusPolicy(Qt::NoFocus);
    rollbereich_->setWidget(eingaben_);

    // Two lines, so that the sheet keeps its height when a longer text comes.
    lblInfo_->setObjectName(u"lblInfo"_s);
    lblInfo_->setMinimumHeight(2 * lblInfo_->sizeHint().height());
    lblInfo_->setSchrumpfen(0.9);

    auto *const ganz = new QVBoxLayout(this);
    ganz->setContentsMargins({});
    ganz->setSpacing(0);
    ganz->addWidget(rollbereich_, 1);
    ganz->addWidget(fuss_);
    tabfolge();
    new Eingabe(*this, *knSichern_);
    groesseFestlegen();
}

QWidget *EinstellungenFenster::versionszeile()
{
    const QList<Installation> &liste = vorgaben_.installationen;
    popVersion_->setObjectName(u"popVersion"_s);
    popVersion_->setAccessibleName(u"Diese Version starten"_s);
    popVersion_->setFont(systemschrift(13));
    popVersion_->setMinimumHeight(mass(zeilenhoehe));
    popVersion_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    popVersion_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    popVersion_->addItem(liste.isEmpty()
                             ? u"Immer die neueste"_s
                             : QString(u"Immer die neueste ("_s + liste.first().version + u')'));
    for (const Installation &installation : liste) {
        popVersion_->addItem(u"rekordbox "_s + installation.version);
    }
    for (qsizetype i = liste.size(); i-- > 0;) {
        if (!vorgaben_.einst.version.isEmpty() && liste[i].version == vorgaben_.einst.version) {
            popVersion_->setCurrentIndex(static_cast<int>(i) + 1);
        }
    }
    // Screen readers leave out what a box with a name has chosen, but not what describes it.
    const auto beschreiben = [this] {
        popVersion_->setAccessibleDescription(popVersion_->currentText());
    };
    beschreiben();
    connect(popVersion_, &QComboBox::currentIndexChanged, this, beschreiben);
    auto *const titel = beschriftung(u"Diese Version starten:"_s, 13);
    titel->setBuddy(popVersion_);
    titel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return stapel({titel, popVersion_}, Qt::Horizontal, 10);
}

QWidget *EinstellungenFenster::optionen()
{
    cbAuto_->setObjectName(u"cbAuto"_s);
    cbAuto_->setChecked(vorgaben_.einst.autostart);
    cbAnmeldung_->setObjectName(u"cbAnmeldung"_s);
    cbAnmeldung_->setChecked(vorgaben_.anmeldestart.an());
    return stapel({cbAuto_, cbAnmeldung_}, Qt::Vertical, 8);
}

QWidget *EinstellungenFenster::listenkopf()
{
    auto *const titel = beschriftung(ueberschrift, 13, QFont::DemiBold);
    auto *const text =
        beschriftung(erklaerung, 12, QFont::Normal, Farbe::sekundaer, mass(umbruchbreite));
    return stapel({titel, text}, Qt::Vertical, 4);
}

void EinstellungenFenster::baumAufbauen()
{
    suchfeld_->setObjectName(u"suchfeld"_s);
    suchfeld_->setAccessibleName(u"Playlisten suchen"_s);
    suchfeld_->setPlaceholderText(u"Playlisten suchen"_s);
    suchfeld_->setFont(systemschrift(13));
    suchfeld_->setMinimumHeight(mass(zeilenhoehe));
    suchfeld_->setClearButtonEnabled(true);
    suchfeld_->setEnabled(false); // until there is something to find
    connect(suchfeld_, &QLineEdit::textChanged, baum_, &Baumansicht::filtern);

    baum_->setObjectName(u"baum"_s);
    baum_->setAccessibleName(ueberschrift);
    baum_->setAccessibleDescription(erklaerung);
    connect(baum_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (baum_->hasFocus() && baum_->mitTasten()) {
            inSichtRollen(*baum_);
        }
    });
    connect(baum_, &Baumansicht::getippt, this, [this](const QString &zeichen) {
        suchfeld_->setFocus();
        suchfeld_->insert(zeichen);
    });
    connect(modell_, &PlaylistenModell::hakenGeaendert, this,
            &EinstellungenFenster::zusammenfassen);
}

QWidget *EinstellungenFenster::tastenzeile()
{
    for (QPushButton *const knopf : {knAbbrechen_, knSichern_}) {
        knopf->setFont(systemschrift(13, knopf == knSichern_ ? QFont::DemiBold : QFont::Normal));
        knopf->setMinimumHeight(mass(zeilenhoehe));
        knopf->setAutoDefault(false); // "Sichern" stays the default button, and looks like it
    }
    knAbbrechen_->setObjectName(u"knAbbrechen"_s);
    knSichern_->setObjectName(u"knSichern"_s);
    knSichern_->setDefault(true);
    connect(knAbbrechen_, &QPushButton::clicked, this, &EinstellungenFenster::abbrechen);
    connect(knSichern_, &QPushButton::clicked, this, &EinstellungenFenster::sichern);
    auto *const luecke = new QWidget;
    luecke->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return stapel({luecke, knAbbrechen_, knSichern_}, Qt::Horizontal, 10);
}

void EinstellungenFenster::tabfolge()
{
    const QList<QWidget *> folge{popVersion_, cbAuto_,      cbAnmeldung_, suchfeld_,
                                 baum_,       knAbbrechen_, knSichern_};
    for (qsizetype i = 1; i < folge.size(); ++i) {
        setTabOrder(folge[i - 1], folge[i]);
    }
    for (QWidget *const teil : folge) {
        teil->installEventFilter(this);
    }
}

} // namespace kalvaro
