#include "buehne.h"
#include "szenen.h"

#include "doubles/ereignisse.h"
#include "ui/knoepfe.h"
#include "ui/schrift.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr auto ruhe = Zustand::Ruhe;
constexpr auto fokus = Zustand::Fokus;
constexpr auto gesperrt = Zustand::Gesperrt;
const QList<Zustand> alleZustaende{ruhe, Zustand::Ueberfahren, Zustand::Gedrueckt, fokus, gesperrt};

QWidget *druckknopf(bool haupt)
{
    auto *const knopf = new QPushButton(haupt ? u"Sichern"_s : u"Abbrechen"_s);
    knopf->setFont(systemschrift(13, haupt ? QFont::DemiBold : QFont::Normal));
    knopf->setMinimumHeight(28);
    knopf->setAutoDefault(false);
    knopf->setDefault(haupt);
    return knopf;
}

QWidget *haken(const QString &titel, bool an)
{
    auto *const kasten = new Haken(titel);
    kasten->setChecked(an);
    return kasten;
}

QComboBox *auswahl()
{
    auto *const feld = new QComboBox;
    feld->setFont(systemschrift(13));
    feld->setMinimumHeight(28);
    feld->addItems({u"Immer die neueste (7.1.4)"_s, u"rekordbox 7.1.4"_s, u"rekordbox 6.8.5"_s});
    return feld;
}

QLineEdit *suchfeld(const QString &inhalt)
{
    auto *const feld = new QLineEdit(inhalt);
    feld->setFont(systemschrift(13));
    feld->setMinimumHeight(28);
    feld->setPlaceholderText(u"Playlisten suchen"_s);
    feld->setClearButtonEnabled(true);
    return feld;
}

QImage startknoepfe()
{
    const auto mit = [](const QString &titel) {
        return [titel]() -> QWidget * { return new Startknopf(titel); };
    };
    const auto wirkungslos = []() -> QWidget * {
        auto *const knopf = new Startknopf(u"ohne Wirkung"_s);
        knopf->setWirkungslos(u"Der Abgleich läuft noch."_s);
        return knopf;
    };
    return zustandsbogen({{mit(u"starten"_s), {200, 0}},
                          {mit(u"rekordbox 7.1.4-beta starten"_s), {120, 0}},
                          {wirkungslos, {200, 0}}},
                         alleZustaende);
}

QImage verweise()
{
    const auto frei = []() -> QWidget * { return new Verweis(u"Jetzt abgleichen"_s); };
    const auto beschaeftigt = []() -> QWidget * {
        auto *const link = new Verweis(u"Jetzt abgleichen"_s);
        link->setBeschaeftigt(u"Der Abgleich läuft noch."_s);
        return link;
    };
    return zustandsbogen({{frei, {}}, {beschaeftigt, {}}}, alleZustaende);
}

QImage hakenAlle()
{
    const QString zweizeilig = u"Bei jedem Öffnen\n(sofort)"_s;
    const auto mit = [](const QString &titel, bool an) {
        return [titel, an] { return haken(titel, an); };
    };
    return zustandsbogen({{mit(u"Beim Anmelden"_s, false), {}},
                          {mit(u"Beim Anmelden"_s, true), {}},
                          {mit(zweizeilig, true), {}},
                          {mit(zweizeilig, false), {100, 0}}},
                         alleZustaende);
}

QImage druckknoepfe()
{
    return zustandsbogen(
        {{[] { return druckknopf(false); }, {}}, {[] { return druckknopf(true); }, {}}},
        alleZustaende);
}

QImage auswahlfelder()
{
    return zustandsbogen(
        {{[] { return auswahl(); }, {260, 0}}, {[] { return auswahl(); }, {120, 0}}},
        {ruhe, Zustand::Ueberfahren, fokus, gesperrt});
}

QImage auswahlliste()
{
    QComboBox *const feld = auswahl();
    feld->setCurrentIndex(1);
    Buehne buehne(feld, {260, 0});
    feld->showPopup();
    ereignisseAbarbeiten();
    const QImage liste = feld->view()->window()->grab().toImage();
    feld->hidePopup();
    return liste;
}

QImage suchfelder()
{
    return zustandsbogen(
        {{[] { return suchfeld({}); }, {240, 0}}, {[] { return suchfeld(u"Techno"_s); }, {240, 0}}},
        {ruhe, fokus, gesperrt});
}

} // namespace

QList<Szene> bedienszenen()
{
    return {{u"startknopf"_s, startknoepfe},
            {u"verweis"_s, verweise, alles | Ansicht::Krumm},
            {u"haken"_s, hakenAlle, alles | Ansicht::Riesig | Ansicht::Krumm},
            {u"druckknopf"_s, druckknoepfe, alles | Ansicht::Krumm},
            {u"auswahl"_s, auswahlfelder},
            {u"auswahlliste"_s, auswahlliste},
            {u"suchfeld"_s, suchfelder}};
}

} // namespace kalvaro
