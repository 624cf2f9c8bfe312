#include "mainwindow/zahlenkarte.h"

#include "foundation/formate.h"
#include "foundation/werte.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/tabellenzahl.h"

#include <QBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int zeilenbreite = 436;
constexpr int zeilenhoehe = 18;

const QString trenner = u"   ·   "_s;

Beschriftung *figurenzeile(const QString &name, Farbton farbe)
{
    Beschriftung *const zeile = beschriftung({}, 11.5, QFont::Normal, farbe, mass(zeilenbreite));
    zeile->setObjectName(name);
    zeile->setUmbruch(mass(zeilenbreite), 3);
    zeile->setZeilenhoehe(mass(zeilenhoehe));
    zeile->setSchrumpfen(0.9);
    return zeile;
}

} // namespace

Zahlenkarte::Zahlenkarte(QWidget *parent)
    : Karte(parent)
    , lblZeile1_(figurenzeile(u"lblZeile1"_s, Farbe::schrift))
    , lblZeile2_(figurenzeile(u"lblZeile2"_s, Farbe::sekundaer))
{
    setObjectName(u"karteZahlen"_s);
    Beschriftung::gemeinsamSchrumpfen(*lblZeile1_, *lblZeile2_);
    QWidget *const zeilen = stapel({lblZeile1_, lblZeile2_}, Qt::Vertical, 0);
    einsetzen(stapel({kachelreihe(), new Haarlinie(Qt::Horizontal), zeilen}, Qt::Vertical, 11));
}

QWidget *Zahlenkarte::kachelreihe()
{
    auto *const reihe = new QWidget;
    auto *const layout = new QHBoxLayout(reihe);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const QStringList unterschriften{u"Titel"_s, u"Playlisten"_s, u"Hot Cues"_s, u"Musik"_s};
    for (const QString &unterschrift : unterschriften) {
        if (!zahlen_.isEmpty()) {
            layout->addWidget(new Haarlinie(Qt::Vertical));
        }
        auto *const zahlenfeld = new Tabellenzahl(u"–"_s);
        zahlenfeld->setFont(systemschrift(22, QFont::DemiBold));
        zahlenfeld->setObjectName(u"zahlen%1"_s.arg(zahlen_.size()));
        zahlenfeld->setReihe(&zahlen_);
        QWidget *const inhalt =
            stapel({zahlenfeld, beschriftung(unterschrift, 11, QFont::Normal, Farbe::sekundaer)},
                   Qt::Vertical, 0);
        QWidget *const kachel = stapel({}, Qt::Horizontal, 0);
        auto *const raender = qobject_cast<QBoxLayout *>(kachel->layout());
        raender->addSpacing(zahlen_.isEmpty() ? 0 : 13); // margins would not change sides
        raender->addWidget(inhalt, 1);
        raender->addSpacing(4);
        layout->addWidget(kachel, 1);
        zahlen_.append(zahlenfeld);
        unterschriften_.append(unterschrift);
        zahlSetzen(zahlen_.size() - 1, zahlenfeld->text());
    }
    return reihe;
}

// A figure says what it counts, since screen readers come upon it alone.
void Zahlenkarte::zahlSetzen(qsizetype stelle, const QString &inhalt)
{
    zahlen_[stelle]->textSetzen(inhalt);
    zahlen_[stelle]->setAccessibleName(unterschriften_[stelle] + u": "_s + inhalt);
}

void Zahlenkarte::zeige(const QJsonValue &antwort, std::optional<double> frei,
                        const QDateTime &jetzt)
{
    const QJsonValue s = pfad(antwort, u"statistik");
    const QString platz = u"Frei auf dem Mac: "_s + fGB(frei);
    if (pfad(s, u"titel").isUndefined()) {
        lblZeile1_->textSetzen(platz);
        lblZeile2_->textSetzen(
            u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s);
        return;
    }
    zahlSetzen(0, fZahl(zahl(s, u"titel")));
    zahlSetzen(1, fZahl(zahl(s, u"playlisten")));
    zahlSetzen(2, fZahl(zahl(s, u"hot_cues")));
    zahlSetzen(3, fGB(zahl(s, u"dateigroesse")));
    for (Tabellenzahl *feld : zahlen_) {
        feld->update(); // its neighbours may have changed its size
    }
    lblZeile1_->textSetzen(u"Analysiert: "_s + fZahl(zahl(s, u"analysiert")) + u" Titel"_s +
                           trenner + u"Analysedaten: "_s + fGB(zahl(s, u"analysegroesse")) +
                           trenner + platz);
    lblZeile2_->textSetzen(u"Stand der Cloud: "_s + fZeit(text(s, u"stand"), jetzt) + trenner +
                           u"geprüft "_s + fZeit(jetzt, jetzt));
}

} // namespace kalvaro
