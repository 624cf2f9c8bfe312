#include "settingswindow/einstellungenfenster.h"

#include "foundation/einstellungen.h"
#include "foundation/protokoll.h"
#include "platform/anmeldestart.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/ansage.h"
#include "ui/beschriftung.h"
#include "ui/knoepfe.h"

#include <QAccessible>
#include <QComboBox>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionComboBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The text of a set of playlists does not depend on their order.
QSet<QString> alsMenge(const QStringList &uuids)
{
    return {uuids.begin(), uuids.end()};
}

bool passtInAuswahl(const QComboBox &auswahl, const QString &titel)
{
    QStyleOptionComboBox option;
    option.initFrom(&auswahl);
    const QRect platz = auswahl.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                        QStyle::SC_ComboBoxEditField, &auswahl);
    return auswahl.fontMetrics().horizontalAdvance(titel) <= platz.width() - 2;
}

} // namespace

void EinstellungenFenster::laden()
{
    if (zustand_ != Zustand::Neu && zustand_ != Zustand::Ladefehler) {
        return;
    }
    zustand_ = Zustand::Laedt;
    melden(u"Playlisten werden geladen …"_s, Farbe::sekundaer);
    vorgaben_.zentrale.anfrage({.pfad = u"/api/playlisten"_s}, this,
                               [this](const Zentrale::Antwort &antwort) { geladen(antwort); });
}

void EinstellungenFenster::geladen(const Zentrale::Antwort &antwort)
{
    if (zustand_ != Zustand::Laedt) {
        return;
    }
    if (!antwort) {
        zustand_ = Zustand::Ladefehler;
        klagen(u"Playlisten nicht ladbar: "_s + antwort.error().meldung);
        return;
    }
    zustand_ = Zustand::Geladen;
    Knotenliste alle = baumAus(*antwort);
    vorher_ = alsMenge(auswahl(alle));
    modell_->setKnoten(std::move(alle));
    suchfeld_->setEnabled(true);
    zusammenfassen();
}

void EinstellungenFenster::zusammenfassen()
{
    melden(zusammenfassung(modell_->alle(), vorgaben_.betrieb), Farbe::sekundaer);
}

void EinstellungenFenster::sichern()
{
    if (zustand_ == Zustand::Sichert || zustand_ == Zustand::Beendet) {
        return;
    }
    optionenSichern();
    const QStringList uuids = auswahl(modell_->alle());
    if (zustand_ == Zustand::Geladen && alsMenge(uuids) != vorher_) {
        auswahlSenden(uuids);
    } else {
        done(Accepted);
    }
}

void EinstellungenFenster::optionenSichern()
{
    const int gewaehlt = popVersion_->currentIndex();
    vorgaben_.einst.autostart = cbAuto_->isChecked();
    vorgaben_.einst.version =
        gewaehlt > 0 ? vorgaben_.installationen[gewaehlt - 1].version : QString();
    vorgaben_.einst.speichern();
    if (cbAnmeldung_->isChecked() != vorgaben_.anmeldestart.an()) {
        vorgaben_.anmeldestart.setzen(cbAnmeldung_->isChecked());
    }
}

void EinstellungenFenster::auswahlSenden(const QStringList &uuids)
{
    zustand_ = Zustand::Sichert;
    eingabenSperren(true);
    melden(u"Wird an die Cloud übertragen …"_s, Farbe::sekundaer);
    const QJsonObject body{{u"geraet"_s, vorgaben_.zentrale.konto().geraet},
                           {u"lokal"_s, QJsonArray::fromStringList(uuids)}};
    vorgaben_.zentrale.anfrage({.pfad = u"/api/einstellungen"_s, .methode = "POST", .body = body},
                               this,
                               [this, anzahl = uuids.size()](const Zentrale::Antwort &antwort) {
                                   auswahlBeantwortet(antwort, anzahl);
                               });
}

void EinstellungenFenster::auswahlBeantwortet(const Zentrale::Antwort &antwort, qsizetype anzahl)
{
    if (zustand_ != Zustand::Sichert) {
        return;
    }
    if (!antwort) {
        zustand_ = Zustand::Geladen;
        eingabenSperren(false);
        klagen(u"Nicht gespeichert: "_s + antwort.error().meldung);
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
    if (zustand_ != Zustand::Beendet) {
        zustand_ = Zustand::Beendet;
        QDialog::done(ergebnis);
    }
}

void EinstellungenFenster::melden(const QString &meldung, Farbton farbe)
{
    lblInfo_->setFarbe(farbe);
    lblInfo_->textSetzen(meldung);
}

// A failure, which screen readers say as well.
void EinstellungenFenster::klagen(const QString &meldung)
{
    melden(meldung, Farbe::warn);
    ansagen(*this, lblInfo_->accessibleName());
}

// While the choice is under way it must not change: the sheet ends with what was sent. The sheet
// itself takes the keyboard meanwhile, so that no key lands on "Abbrechen" by accident.
void EinstellungenFenster::eingabenSperren(bool sperren)
{
    if (sperren) {
        vorSperre_ = focusWidget();
        setFocus();
    }
    eingaben_->setEnabled(!sperren);
    knSichern_->setEnabled(!sperren);
    if (!sperren && vorSperre_) {
        vorSperre_->setFocus(Qt::ActiveWindowFocusReason); // its ring as it was
    }
}

// What gets the keyboard comes in sight, but not below a pointer that has just pressed it. The
// arrow key leads from the search field to what it found. The wheel scrolls the sheet; it does not
// choose another version on the way. And an empty field does not select its text for those who come
// with the keyboard: Orca would take that for a movement of the cursor and not say where it is.
bool EinstellungenFenster::eventFilter(QObject *objekt, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        const auto *const teil = static_cast<QWidget *>(objekt);
        const auto grund = static_cast<QFocusEvent *>(event)->reason();
        if (grund != Qt::MouseFocusReason && grund != Qt::ActiveWindowFocusReason &&
            grund != Qt::PopupFocusReason && eingaben_->isAncestorOf(teil)) {
            inSichtRollen(*teil);
        }
    }
    if (objekt == suchfeld_ && event->type() == QEvent::FocusIn && QAccessible::isActive() &&
        suchfeld_->text().isEmpty() &&
        static_cast<QFocusEvent *>(event)->reason() != Qt::OtherFocusReason) {
        QFocusEvent still(QEvent::FocusIn, Qt::OtherFocusReason);
        return suchfeld_->event(&still);
    }
    if (objekt == suchfeld_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
        baum_->setFocus();
        baum_->zeileWaehlen();
        return true;
    }
    if (objekt == popVersion_ && event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    if (objekt == popVersion_ && event->type() == QEvent::ToolTip) {
        const QString titel = popVersion_->currentText();
        popVersion_->setToolTip(passtInAuswahl(*popVersion_, titel) ? QString()
                                                                    : alsHinweis(titel));
    }
    return QDialog::eventFilter(objekt, event);
}

} // namespace kalvaro
