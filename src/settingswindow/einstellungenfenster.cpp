#include "settingswindow/einstellungenfenster.h"

#include "foundation/einstellungen.h"
#include "foundation/protokoll.h"
#include "platform/anmeldestart.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/beschriftung.h"
#include "ui/karte.h"
#include "ui/knoepfe.h"
#include "ui/schrift.h"
#include "ui/stapel.h"

#include <QComboBox>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int fensterbreite = 480;
constexpr int rand = 22;
constexpr int baumhoehe = 280;
constexpr int zeilenhoehe = 28; // of fields and buttons
constexpr int umbruchbreite = 400;

const QString ueberschrift = u"Playlisten lokal speichern"_s;
const QString erklaerung =
    u"Angehakte Playlisten werden auf diesen Mac kopiert und spielen dann auch ohne Verbindung "
    "zur Musikplatte. Ein Ordner nimmt alle seine Playlisten mit."_s;

// A length that grows with the system's font.
int mass(int punkte)
{
    return qRound(punkte * schriftfaktor());
}

// The text of a set of playlists does not depend on their order.
QSet<QString> alsMenge(const QStringList &uuids)
{
    return {uuids.begin(), uuids.end()};
}

} // namespace

EinstellungenFenster::EinstellungenFenster(Umfeld bedarf, QWidget *eltern)
    : QDialog(eltern, Qt::Sheet)
    , umfeld(std::move(bedarf))
    , modell(new PlaylistenModell(this))
    , eingaben(new QWidget)
    , popVersion(new QComboBox)
    , cbAuto(new Haken(u"Beim Öffnen von kalvaro automatisch starten\n"
                       "(5 Sekunden, nachdem der Abgleich fertig ist)"_s))
    , cbAnmeldung(new Haken(u"kalvaro beim Anmelden im Hintergrund starten\n"
                            "(Symbol in der Menüleiste – gleicht nach rekordbox sofort ab)"_s))
    , suchfeld(new QLineEdit)
    , baum(new Baumansicht(*modell))
    , lblInfo(beschriftung(u"Playlisten werden geladen …"_s, 12, QFont::Normal, Farbe::sekundaer,
                           mass(fensterbreite - 2 * rand)))
    , knAbbrechen(new QPushButton(u"Abbrechen"_s))
    , knSichern(new QPushButton(u"Sichern"_s))
{
    setObjectName(u"einstellungen"_s);
    setWindowTitle(u"Einstellungen"_s);
    setWindowModality(Qt::WindowModal);
    aufbauen();
}

void EinstellungenFenster::aufbauen()
{
    baumAufbauen();
    auto *const oben = new QVBoxLayout(eingaben);
    oben->setContentsMargins({});
    oben->setSpacing(12);
    oben->addWidget(versionszeile());
    oben->addWidget(optionen());
    oben->addWidget(new Haarlinie(Qt::Horizontal));
    oben->addWidget(listenkopf());
    oben->addWidget(suchfeld);
    oben->addWidget(baum);

    // Two lines, so that the sheet keeps its height when a longer text comes.
    lblInfo->setObjectName(u"lblInfo"_s);
    lblInfo->setMinimumHeight(2 * lblInfo->sizeHint().height());
    lblInfo->setSchrumpfen(0.9);

    auto *const ganz = new QVBoxLayout(this);
    ganz->setContentsMargins(rand, 20, rand, 18);
    ganz->setSpacing(12);
    ganz->setSizeConstraint(QLayout::SetFixedSize);
    ganz->addWidget(eingaben);
    ganz->addWidget(lblInfo);
    ganz->addWidget(tastenzeile());
    eingaben->setFixedWidth(mass(fensterbreite) - 2 * rand);
    tabfolge();
}

QWidget *EinstellungenFenster::versionszeile()
{
    const QList<Installation> &liste = umfeld.installationen;
    popVersion->setObjectName(u"popVersion"_s);
    popVersion->setAccessibleName(u"Diese Version starten"_s);
    popVersion->setFont(systemschrift(13));
    popVersion->setMinimumHeight(mass(zeilenhoehe));
    popVersion->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    popVersion->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    popVersion->addItem(liste.isEmpty()
                            ? u"Immer die neueste"_s
                            : QString(u"Immer die neueste ("_s + liste.first().version + u')'));
    for (const Installation &installation : liste) {
        popVersion->addItem(u"rekordbox "_s + installation.version);
    }
    for (qsizetype i = liste.size(); i-- > 0;) {
        if (!umfeld.einst.version.isEmpty() && liste[i].version == umfeld.einst.version) {
            popVersion->setCurrentIndex(static_cast<int>(i) + 1);
        }
    }
    auto *const titel = beschriftung(u"Diese Version starten:"_s, 13);
    titel->setBuddy(popVersion);
    titel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return stapel({titel, popVersion}, Qt::Horizontal, 10);
}

QWidget *EinstellungenFenster::optionen()
{
    cbAuto->setObjectName(u"cbAuto"_s);
    cbAuto->setChecked(umfeld.einst.autostart);
    cbAnmeldung->setObjectName(u"cbAnmeldung"_s);
    cbAnmeldung->setChecked(umfeld.anmeldestart.an());
    return stapel({cbAuto, cbAnmeldung}, Qt::Vertical, 8);
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
    suchfeld->setObjectName(u"suchfeld"_s);
    suchfeld->setAccessibleName(u"Playlisten suchen"_s);
    suchfeld->setPlaceholderText(u"Playlisten suchen"_s);
    suchfeld->setFont(systemschrift(13));
    suchfeld->setMinimumHeight(mass(zeilenhoehe));
    suchfeld->setClearButtonEnabled(true);
    suchfeld->setEnabled(false); // until there is something to find
    suchfeld->installEventFilter(this);
    connect(suchfeld, &QLineEdit::textChanged, baum, &Baumansicht::filtern);

    baum->setObjectName(u"baum"_s);
    baum->setAccessibleName(ueberschrift);
    baum->setAccessibleDescription(erklaerung);
    baum->setFixedHeight(mass(baumhoehe));
    connect(baum, &Baumansicht::getippt, this, [this](const QString &zeichen) {
        suchfeld->setFocus();
        suchfeld->insert(zeichen);
    });
    connect(modell, &PlaylistenModell::hakenGeaendert, this, &EinstellungenFenster::zusammenfassen);
}

QWidget *EinstellungenFenster::tastenzeile()
{
    for (QPushButton *const knopf : {knAbbrechen, knSichern}) {
        knopf->setFont(systemschrift(13, knopf == knSichern ? QFont::DemiBold : QFont::Normal));
        knopf->setMinimumHeight(mass(zeilenhoehe));
        // Return always means "Sichern", also with the keyboard on another button.
        knopf->setAutoDefault(false);
    }
    knAbbrechen->setObjectName(u"knAbbrechen"_s);
    knSichern->setObjectName(u"knSichern"_s);
    knSichern->setDefault(true);
    connect(knAbbrechen, &QPushButton::clicked, this, &EinstellungenFenster::abbrechen);
    connect(knSichern, &QPushButton::clicked, this, &EinstellungenFenster::sichern);
    auto *const luecke = new QWidget;
    luecke->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return stapel({luecke, knAbbrechen, knSichern}, Qt::Horizontal, 10);
}

void EinstellungenFenster::tabfolge()
{
    const QList<QWidget *> folge{popVersion, cbAuto,      cbAnmeldung, suchfeld,
                                 baum,       knAbbrechen, knSichern};
    for (qsizetype i = 1; i < folge.size(); ++i) {
        setTabOrder(folge[i - 1], folge[i]);
    }
}

void EinstellungenFenster::laden()
{
    if (zustand != Zustand::Neu && zustand != Zustand::Ladefehler) {
        return;
    }
    zustand = Zustand::Laedt;
    melden(u"Playlisten werden geladen …"_s, Farbe::sekundaer);
    umfeld.zentrale.anfrage({.pfad = u"/api/playlisten"_s}, this,
                            [this](const Zentrale::Antwort &antwort) { geladen(antwort); });
}

void EinstellungenFenster::geladen(const Zentrale::Antwort &antwort)
{
    if (zustand != Zustand::Laedt) {
        return;
    }
    if (!antwort) {
        zustand = Zustand::Ladefehler;
        melden(u"Playlisten nicht ladbar: "_s + antwort.error().meldung, Farbe::warn);
        return;
    }
    zustand = Zustand::Geladen;
    Knotenliste alle = baumAus(*antwort);
    vorher = alsMenge(auswahl(alle));
    modell->setKnoten(std::move(alle));
    suchfeld->setEnabled(true);
    zusammenfassen();
}

void EinstellungenFenster::zusammenfassen()
{
    melden(zusammenfassung(modell->alle(), umfeld.betrieb), Farbe::sekundaer);
}

void EinstellungenFenster::sichern()
{
    if (zustand == Zustand::Sichert || zustand == Zustand::Beendet) {
        return;
    }
    optionenSichern();
    const QStringList uuids = auswahl(modell->alle());
    if (zustand == Zustand::Geladen && alsMenge(uuids) != vorher) {
        uebertragen(uuids);
    } else {
        done(Accepted);
    }
}

void EinstellungenFenster::optionenSichern()
{
    const int gewaehlt = popVersion->currentIndex();
    umfeld.einst.autostart = cbAuto->isChecked();
    umfeld.einst.version = gewaehlt > 0 ? umfeld.installationen[gewaehlt - 1].version : QString();
    umfeld.einst.speichern();
    if (cbAnmeldung->isChecked() != umfeld.anmeldestart.an()) {
        umfeld.anmeldestart.setzen(cbAnmeldung->isChecked());
    }
}

void EinstellungenFenster::uebertragen(const QStringList &uuids)
{
    zustand = Zustand::Sichert;
    eingabenSperren(true);
    melden(u"Wird an die Cloud übertragen …"_s, Farbe::sekundaer);
    const QJsonObject body{{u"geraet"_s, umfeld.zentrale.konto().geraet},
                           {u"lokal"_s, QJsonArray::fromStringList(uuids)}};
    umfeld.zentrale.anfrage({.pfad = u"/api/einstellungen"_s, .methode = "POST", .body = body},
                            this, [this, anzahl = uuids.size()](const Zentrale::Antwort &antwort) {
                                uebertragen(antwort, anzahl);
                            });
}

void EinstellungenFenster::uebertragen(const Zentrale::Antwort &antwort, qsizetype anzahl)
{
    if (zustand != Zustand::Sichert) {
        return;
    }
    if (!antwort) {
        zustand = Zustand::Geladen;
        eingabenSperren(false);
        melden(u"Nicht gespeichert: "_s + antwort.error().meldung, Farbe::warn);
        return;
    }
    protokoll(u"lokal gespeicherte Playlisten: "_s + QString::number(anzahl));
    done(Accepted);
}

void EinstellungenFenster::abbrechen()
{
    done(Rejected);
}

void EinstellungenFenster::done(int ergebnis)
{
    if (zustand != Zustand::Beendet) {
        zustand = Zustand::Beendet;
        QDialog::done(ergebnis);
    }
}

void EinstellungenFenster::melden(const QString &meldung, Farbton farbe)
{
    lblInfo->setFarbe(farbe);
    lblInfo->setText(meldung);
}

// While the choice is under way it must not change: the sheet ends with what was sent. The sheet
// itself takes the keyboard meanwhile, so that no key lands on "Abbrechen" by accident.
void EinstellungenFenster::eingabenSperren(bool sperren)
{
    if (sperren) {
        vorSperre = focusWidget();
        setFocus();
    }
    eingaben->setEnabled(!sperren);
    knSichern->setEnabled(!sperren);
    if (!sperren && vorSperre) {
        vorSperre->setFocus();
    }
}

// The arrow key leads from the search field to what it found.
bool EinstellungenFenster::eventFilter(QObject *objekt, QEvent *event)
{
    if (objekt == suchfeld && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
        baum->setFocus();
        baum->zeileWaehlen();
        return true;
    }
    return QDialog::eventFilter(objekt, event);
}

} // namespace kalvaro
