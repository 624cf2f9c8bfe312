#include "ansichten.h"
#include "buehne.h"
#include "szenen.h"

#include "doubles/testuhr.h"
#include "ui/beschriftung.h"
#include "ui/karte.h"
#include "ui/pille.h"
#include "ui/rad.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/symbole.h"
#include "ui/tabellenzahl.h"

#include <QDir>
#include <QFileInfo>
#include <QVBoxLayout>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

struct Fuellung
{
    QString name;
    Farbton schrift;
    Farbton grund;
};

const QList<Fuellung> fuellungen{{u"ohne"_s, Farbe::schrift, Farbe::durchsichtig},
                                 {u"gut"_s, Farbe::gut, Farbe::gutWeich},
                                 {u"Warnung"_s, Farbe::warn, Farbe::warnWeich},
                                 {u"kritisch"_s, Farbe::krit, Farbe::kritWeich}};

QImage pillen()
{
    Bogen bogen;
    for (const Fuellung &f : fuellungen) {
        auto *const pille = new Pille;
        pille->setzen(u"Probebetrieb"_s, f.schrift, f.grund);
        bogen.dazu(f.name, Buehne(pille).bild());
    }
    return bogen.bild();
}

// A card on its ground, which draws the shadow, with contents and lines between them.
QImage karten()
{
    Bogen bogen;
    for (const Fuellung &f : fuellungen) {
        auto *const grund = new Grund;
        auto *const karte = new Karte(grund);
        karte->setFuellung(f.grund);
        QWidget *const reihe = stapel(
            {beschriftung(u"eins"_s, 13), new Haarlinie(Qt::Vertical), beschriftung(u"zwei"_s, 13)},
            Qt::Horizontal, 8);
        karte->einsetzen(stapel({reihe, new Haarlinie(Qt::Horizontal),
                                 beschriftung(u"darunter"_s, 12, QFont::Normal, f.schrift)},
                                Qt::Vertical, 8));
        karte->setGeometry({QPoint(14, 12), karte->sizeHint()});
        bogen.dazu(f.name, Buehne(grund, karte->size() + QSize(28, 26)).bild());
    }
    return bogen.bild();
}

QImage stapelbilder()
{
    Bogen bogen;
    const auto teile = [](Qt::Orientation linie) {
        return QList<QWidget *>{beschriftung(u"lang genug"_s, 13), new Haarlinie(linie),
                                beschriftung(u"kurz"_s, 18)};
    };
    const auto untereinander = [&] { return teile(Qt::Horizontal); };
    const auto nebeneinander = [&] { return teile(Qt::Vertical); };
    const auto ohneLinie = [] {
        return QList<QWidget *>{beschriftung(u"lang genug"_s, 13), beschriftung(u"kurz"_s, 18)};
    };
    bogen.dazu(u"senkrecht"_s, Buehne(stapel(untereinander(), Qt::Vertical)).bild());
    bogen.dazu(u"senkrecht, mittig"_s,
               Buehne(stapel(ohneLinie(), Qt::Vertical, 3, Qt::AlignHCenter)).bild());
    bogen.dazu(u"waagrecht"_s, Buehne(stapel(nebeneinander(), Qt::Horizontal)).bild());
    bogen.dazu(u"waagrecht, unten"_s,
               Buehne(stapel(ohneLinie(), Qt::Horizontal, 12, Qt::AlignBottom)).bild());
    return bogen.bild();
}

QWidget *zahlenreihe(const QStringList &texte, QList<Tabellenzahl *> &reihe)
{
    QList<QWidget *> felder;
    for (const QString &text : texte) {
        auto *const zahl = new Tabellenzahl(text);
        zahl->setFont(systemschrift(22, QFont::DemiBold));
        reihe.append(zahl);
        felder.append(zahl);
    }
    for (Tabellenzahl *const zahl : std::as_const(reihe)) {
        zahl->setReihe(&reihe);
    }
    return stapel(felder, Qt::Horizontal, 12);
}

QImage zahlen()
{
    Bogen bogen;
    const QList<QStringList> faelle{{u"12.345"_s, u"321"_s, u"1.111"_s},
                                    {u"–"_s, u"0"_s, u"123,5 GB"_s},
                                    {u"123.456.789"_s, u"321"_s, u"1,5 TB"_s}};
    for (const QStringList &texte : faelle) {
        QList<Tabellenzahl *> reihe;
        bogen.dazu(texte.first(), Buehne(zahlenreihe(texte, reihe), {330, 0}).bild());
    }
    QList<Tabellenzahl *> reihe;
    bogen.dazu(u"enger"_s, Buehne(zahlenreihe(faelle.last(), reihe), {250, 0}).bild());
    return bogen.bild();
}

QImage texte()
{
    const QString lang = u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch, "
                         "sobald die Cloud wieder zu erreichen ist: 12 s später."_s;
    const auto umbrochen = [&](int breite, int zeilen) {
        Beschriftung *const text = beschriftung(lang, 12, QFont::Normal, Farbe::sekundaer, breite);
        text->setUmbruch(breite, zeilen);
        return text;
    };
    Beschriftung *const weit = umbrochen(260, 12);
    weit->setZeilenhoehe(24);
    const QString zahlen =
        u"Analysiert: 12.001 Titel   ·   Analysedaten: 52,3 GB   ·   Frei: 214 GB"_s;
    Beschriftung *const enger = beschriftung(zahlen, 11.5);
    const int knapp = enger->sizeHint().width() * 95 / 100;
    enger->setUmbruch(knapp, 3);
    enger->setSchrumpfen(0.9);
    Beschriftung *const punkte = beschriftung(zahlen, 11.5, QFont::Normal, Farbe::schrift, 300);
    auto *const aufGrau = new Pille;
    aufGrau->setzen(u"Kontrast"_s, Farbe::warn, [](const QPalette &) { return QColor(0x808080); });

    Bogen bogen;
    bogen.dazu(u"fett, 26"_s, Buehne(beschriftung(u"kalvaro"_s, 26, QFont::Bold)).bild());
    bogen.dazu(u"gekürzt"_s, Buehne(beschriftung(lang, 13), {200, 0}).bild());
    bogen.dazu(u"umbrochen"_s, Buehne(umbrochen(260, 12), {260, 0}).bild());
    bogen.dazu(u"zwei Zeilen"_s, Buehne(umbrochen(200, 2), {200, 0}).bild());
    bogen.dazu(u"Zeilenhöhe 24"_s, Buehne(weit, {260, 0}).bild());
    bogen.dazu(u"geschrumpft"_s, Buehne(enger, {knapp, 0}).bild());
    bogen.dazu(u"an Punkten"_s, Buehne(punkte, {300, 0}).bild());
    bogen.dazu(u"hebräisch"_s,
               Buehne(beschriftung(u"תקליטייה 12, חדר ראשון"_s, 13), {260, 0}).bild());
    bogen.dazu(u"hebräisch, gekürzt"_s,
               Buehne(beschriftung(u"תקליטייה 12, חדר ראשון"_s, 13), {120, 0}).bild());
    bogen.dazu(u"gemischt"_s,
               Buehne(beschriftung(u"Studio-Mac · תקליטייה 12"_s, 13), {260, 0}).bild());
    bogen.dazu(u"auf Grau"_s, Buehne(aufGrau).bild());
    for (const auto &[name, ton] : {std::pair{u"gut"_s, &Farbe::gut},
                                    {u"warn"_s, &Farbe::warn},
                                    {u"krit"_s, &Farbe::krit},
                                    {u"tertiär"_s, &Farbe::tertiaer},
                                    {u"Verweis"_s, &Farbe::verweis}}) {
        bogen.dazu(name, Buehne(beschriftung(u"Bibliothek"_s, 13, QFont::Normal, ton)).bild());
    }
    return bogen.bild();
}

QImage raeder()
{
    const Bewegung bewegung;
    Testuhr uhr;
    auto *const rad = new Rad(uhr);
    Buehne buehne(rad, {44, 44});
    Bogen bogen;
    bogen.dazu(u"am Anfang"_s, buehne.bild());
    rad->drehen();
    for (const double zeit : {0.1, 0.25, 0.4}) {
        uhr.vor(Sekunden(zeit));
        bogen.dazu(u"%1 s weiter"_s.arg(zeit), buehne.bild());
    }
    rad->anhalten();
    uhr.vor(Sekunden(0.3));
    bogen.dazu(u"angehalten"_s, buehne.bild());
    return bogen.bild();
}

QImage zeichen()
{
    (void)programmsymbol(); // loads the drawings
    Bogen bogen;
    const QStringList dateien =
        QDir(u":/kalvaro/symbole"_s).entryList({u"*.zeichnung"_s}, QDir::Files);
    for (const QString &datei : dateien) {
        const QString name = QFileInfo(datei).completeBaseName();
        if (name == u"de.kalvaro.kalvaro"_s) {
            continue; // never shown in one colour
        }
        QList<QWidget *> bilder;
        for (const auto &[groesse, ton] : {std::pair{16, &Farbe::schrift},
                                           {22, &Farbe::systemGruen},
                                           {32, &Farbe::systemOrange},
                                           {44, &Farbe::systemRot},
                                           {44, &Farbe::akzent}}) {
            auto *const bild = new Zeichen(groesse);
            bild->setzen(name, ton, name);
            bilder.append(bild);
        }
        bogen.dazu(name, Buehne(stapel(bilder, Qt::Horizontal)).bild());
    }
    return bogen.bild();
}

QImage programmzeichen()
{
    Bogen bogen;
    for (const int groesse : {16, 24, 48, 64, 128}) {
        QLabel *const bild = new QLabel;
        bild->setPixmap(programmsymbol().pixmap(QSize(groesse, groesse), bild->devicePixelRatio()));
        bogen.dazu(QString::number(groesse), Buehne(bild).bild());
    }
    return bogen.bild();
}

} // namespace

QList<Szene> anzeigeszenen()
{
    return {{u"pille"_s, pillen, farben | Ansicht::Gross},
            {u"karte"_s, karten, alles | Ansicht::Krumm},
            {u"stapel"_s, stapelbilder, anordnung},
            {u"zahlen"_s, zahlen, alles | Ansicht::Krumm},
            {u"texte"_s, texte},
            {u"rad"_s, raeder, farben | massstab},
            {u"zeichen"_s, zeichen, farben | massstab},
            {u"programmzeichen"_s, programmzeichen, massstab}};
}

} // namespace kalvaro
