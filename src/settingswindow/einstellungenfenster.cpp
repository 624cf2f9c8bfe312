#include "settingswindow/einstellungenfenster.h"

#include "foundation/einstellungen.h"
#include "foundation/protokoll.h"
#include "platform/anmeldestart.h"
#include "server/inhalt.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/baumleser.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/ansage.h"
#include "ui/beschriftung.h"
#include "ui/knoepfe.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionComboBox>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

bool passtInAuswahl(const QComboBox &auswahl, const QString &titel)
{
    QStyleOptionComboBox option;
    option.initFrom(&auswahl);
    const QRect platz = auswahl.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                        QStyle::SC_ComboBoxEditField, &auswahl);
    return auswahl.fontMetrics().horizontalAdvance(titel) <= platz.width() - 2;
}

} // namespace

// A large tree's memory goes back to the system once all of the sheet is gone.
EinstellungenFenster::~EinstellungenFenster()
{
    constexpr size_t gross = 10'000;
    if (modell_->alle().size() >= gross) {
        QMetaObject::invokeMethod(qApp, aufraeumen, Qt::QueuedConnection);
    }
}

void EinstellungenFenster::laden()
{
    if (zustand_ != Zustand::Neu && zustand_ != Zustand::Ladefehler) {
        return;
    }
    zustand_ = Zustand::Laedt;
    melden(u"Playlisten werden geladen …"_s, Farbe::sekundaer);
    vorgaben_.zentrale.anfrageLesen<Knotenliste>(
        {.pfad = u"/api/playlisten"_s}, this, baumLesen,
        [this](tl::expected<Knotenliste, ZentraleFehler> antwort) { geladen(std::move(antwort)); });
}

void EinstellungenFenster::geladen(tl::expected<Knotenliste, ZentraleFehler> antwort)
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
    vorher_ = gewaehlte(*antwort);
    modell_->setKnoten(*std::move(antwort));
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
    if (zustand_ == Zustand::Geladen && gewaehlte(modell_->alle()) != vorher_) {
        auswahlSenden();
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

void EinstellungenFenster::auswahlSenden()
{
    zustand_ = Zustand::Sichert;
    eingabenSperren(true);
    melden(u"Wird an die Cloud übertragen …"_s, Farbe::sekundaer);
    const QByteArray geraet =
        QJsonDocument(QJsonObject{{u"geraet"_s, vorgaben_.zentrale.konto().geraet}})
            .toJson(QJsonDocument::Compact);
    const QByteArray text = geraet.chopped(1) + R"(,"lokal":)" + auswahl(modell_->alle()) + '}';
    const std::vector<bool> menge = gewaehlte(modell_->alle());
    // What the server answers does not matter, as long as it is not too much.
    vorgaben_.zentrale.anfrageLesen<bool>(
        {.pfad = u"/api/einstellungen"_s, .methode = "POST", .text = text}, this,
        [](const QByteArray &daten, const Abbruch &) {
            return inhalt(daten) ? std::optional(true) : std::nullopt;
        },
        [this, anzahl = std::count(menge.begin(), menge.end(), true)](
            const tl::expected<bool, ZentraleFehler> &antwort) {
            auswahlBeantwortet(antwort, anzahl);
        });
}

void EinstellungenFenster::auswahlBeantwortet(const tl::expected<bool, ZentraleFehler> &antwort,
                                              qsizetype anzahl)
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
