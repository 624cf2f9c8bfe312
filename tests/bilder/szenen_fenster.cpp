#include "buehne.h"
#include "szenen.h"

#include "app/hauptmenue.h"
#include "mainwindow/fensterwelt.h"
#include "ui/beschriftung.h"

#include <QJsonArray>
#include <QMenuBar>
#include <QRegularExpression>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int umgebung = 14; // around a card: its shadow

void ersetzen(const Fensterwelt &welt, const QString &label, const QRegularExpression &was,
              const QString &durch)
{
    auto *const zeile = welt.teil<Beschriftung>(label);
    zeile->textSetzen(zeile->text().replace(was, durch));
}

// What this machine and this version would change each time.
void festlegen(const Fensterwelt &welt)
{
    static const QRegularExpression frei(u"(?<=Mac: ).*"_s);
    static const QRegularExpression nummer(u"(?<=Version ).*"_s);
    Fensterwelt::ruhe();
    ersetzen(welt, u"lblZeile1"_s, frei, u"214 GB"_s);
    ersetzen(welt, u"lblVersion"_s, nummer, u"1.0"_s);
    Fensterwelt::ruhe();
}

QImage aufnahme(const Fensterwelt &welt)
{
    festlegen(welt);
    return welt.fenster->grab().toImage();
}

// The window from the upper edge of `von` to the lower edge of `bis`.
QImage aufnahme(const Fensterwelt &welt, const QString &von, const QString &bis)
{
    festlegen(welt);
    QWidget &fenster = *welt.fenster;
    const auto platz = [&](const QString &name) {
        const QWidget *const teil = welt.teil(name);
        return QRect(teil->mapTo(&fenster, QPoint()), teil->size());
    };
    const int oben = platz(von).top() - umgebung;
    const int unten = platz(bis).bottom() + umgebung;
    return fenster.grab(QRect(0, oben, fenster.width(), unten - oben)).toImage();
}

QImage karte(const Fensterwelt &welt)
{
    return aufnahme(welt, u"karteStatus"_s, u"karteStatus"_s);
}

QImage startbereich(const Fensterwelt &welt)
{
    return aufnahme(welt, u"knStart"_s, u"lnkAbgleich"_s);
}

QJsonObject ergebnis(const QString &zustand, const QJsonObject &mehr = {})
{
    QJsonObject inhalt{{u"zustand"_s, zustand}};
    for (auto i = mehr.begin(); i != mehr.end(); ++i) {
        inhalt.insert(i.key(), i.value());
    }
    return {{u"ergebnis"_s, inhalt}};
}

const QJsonObject anzahlen{{u"djmdContent"_s, 2500}, {u"djmdPlaylist"_s, 1}};

Transport::Ergebnis gut()
{
    return Fensterwelt::antwort(u"abgeglichen"_s,
                                ergebnis(u"abgeglichen"_s, {{u"aendert_geraet"_s, anzahlen}}));
}

Transport::Ergebnis warnung()
{
    QJsonObject mehr = ergebnis(u"verschoben"_s, {{u"hinweis"_s, u"die Musikplatte fehlt"_s}});
    mehr.insert(u"andere"_s,
                QJsonArray{QJsonObject{{u"name"_s, u"Studio"_s}, {u"rekordbox_offen"_s, true}}});
    return Fensterwelt::antwort(u"verschoben"_s, mehr);
}

Transport::Ergebnis offline()
{
    return Scripttransport::fehler(u"Der Server wurde nicht gefunden."_s);
}

// The whole window after a sync with this outcome.
QImage nach(const Transport::Ergebnis &antwort)
{
    Fensterwelt welt;
    welt.abgeglichen(antwort);
    return aufnahme(welt);
}

// Each thing that the window may tell.
QImage zustaende()
{
    Bogen bogen;
    {
        Fensterwelt welt;
        welt.fenster->show();
        bogen.dazu(u"verbindet"_s, karte(welt));
        welt.fenster->oeffnen(true);
        welt.vor(3);
        bogen.dazu(u"lädt seit 3 s"_s, karte(welt));
        welt.beantworten(gut());
        bogen.dazu(u"gut"_s, karte(welt));
        welt.stand.reset(); // hangs
        welt.knopf(u"knStart"_s)->click();
        bogen.dazu(u"letzter Blick"_s, karte(welt));
    }
    Fensterwelt welt;
    welt.abgeglichen(warnung());
    bogen.dazu(u"Warnung"_s, karte(welt));
    welt.abgeglichen(Fensterwelt::antwort(u"angehalten"_s));
    bogen.dazu(u"kritisch"_s, karte(welt));
    welt.abgeglichen(Fensterwelt::gut({{u"betrieb"_s, u"schatten"_s}}));
    bogen.dazu(u"Probebetrieb"_s, karte(welt));
    welt.abgeglichen(offline());
    bogen.dazu(u"offline"_s, karte(welt));
    welt.rekordboxGestartet();
    bogen.dazu(u"rekordbox läuft"_s, karte(welt));
    welt.rekordboxBeendet();
    bogen.dazu(u"überträgt"_s, karte(welt));
    return bogen.bild();
}

// What stands below the cards.
QImage start()
{
    Bogen bogen;
    Fensterwelt::Aufbau aufbau;
    aufbau.autostart = true;
    {
        Fensterwelt welt(aufbau);
        welt.fenster->oeffnen(true);
        bogen.dazu(u"gleicht ab"_s, startbereich(welt));
        welt.beantworten(gut());
        welt.vor(2);
        bogen.dazu(u"Countdown"_s, startbereich(welt));
        welt.stand.reset(); // hangs
        welt.knopf(u"knStart"_s)->click();
        bogen.dazu(u"letzter Blick"_s, startbereich(welt));
    }
    {
        Fensterwelt welt;
        welt.abgeglichen();
        welt.rekordboxGestartet();
        bogen.dazu(u"rekordbox läuft"_s, startbereich(welt));
    }
    aufbau.versionen.clear();
    Fensterwelt welt(aufbau);
    welt.abgeglichen();
    bogen.dazu(u"nicht gefunden"_s, startbereich(welt));
    return bogen.bild();
}

// The countdown scrolls into view where the window is higher than the screen.
QImage countdownUnten()
{
    Fensterwelt::Aufbau aufbau;
    aufbau.autostart = true;
    Fensterwelt welt(aufbau);
    welt.fenster->oeffnen(true);
    QJsonObject mehr = angebot(u"1.10"_s);
    mehr.insert(u"betrieb"_s, u"schatten"_s);
    welt.beantworten(Fensterwelt::gut(mehr));
    welt.vor(2);
    return aufnahme(welt);
}

QImage lang()
{
    Fensterwelt::Aufbau aufbau;
    aufbau.name = u"Studio-Mac im hinteren Raum neben dem großen Saal unter dem Dach"_s;
    aufbau.versionen = {u"7.1.4-beta-mit-einem-sehr-langen-Namen-und-noch-mehr-davon"_s};
    Fensterwelt welt(aufbau);
    QJsonObject mehr = angebot(u"1.10.2-beta-mit-einem-sehr-langen-Namen-und-noch-mehr"_s);
    mehr.insert(u"statistik"_s, QJsonObject{{u"titel"_s, 123456789},
                                            {u"playlisten"_s, 1234567},
                                            {u"hot_cues"_s, 987654321},
                                            {u"dateigroesse"_s, 123456789000000.0},
                                            {u"analysiert"_s, 123456789},
                                            {u"analysegroesse"_s, 987654000000.0},
                                            {u"stand"_s, u"2025-12-31 23:59:59"_s}});
    const QString hinweis = u"die Musikplatte fehlt und ohne sie geht es nicht; "_s.repeated(12);
    mehr.insert(u"ergebnis"_s,
                QJsonObject{{u"zustand"_s, u"verschoben"_s}, {u"hinweis"_s, hinweis}});
    welt.abgeglichen(Fensterwelt::antwort(u"verschoben"_s, mehr));
    return aufnahme(welt);
}

QImage update()
{
    Fensterwelt welt;
    welt.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    return aufnahme(welt, u"karteUpdate"_s, u"karteUpdate"_s);
}

QImage blattOffen()
{
    Fensterwelt welt;
    welt.abgeglichen();
    welt.knopf(u"lnkEinstellungen"_s)->click();
    return aufnahme(welt);
}

// The keyboard goes round; each place shows that it has it.
QImage tasten()
{
    Fensterwelt welt;
    welt.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    festlegen(welt);
    return tastenrunde(*welt.fenster);
}

QImage menueleiste()
{
    Fensterwelt welt;
    menueBauen(*welt.fenster);
    welt.abgeglichen();
    festlegen(welt);
    return welt.fenster->grab(QRect(0, 0, welt.fenster->width(), 110)).toImage();
}

} // namespace

QList<Szene> fensterszenen()
{
    return {
        {u"fenster-gut"_s, [] { return nach(gut()); }, alles | Ansicht::Riesig | Ansicht::Krumm},
        {u"fenster-offline"_s, [] { return nach(offline()); }, Ansicht::Hell},
        {u"fenster-lang"_s, lang, alles | Ansicht::Riesig},
        {u"fenster-blatt"_s, blattOffen, Ansicht::Hell},
        {u"fenster-zustaende"_s, zustaende, farben},
        {u"fenster-start"_s, start, farben | Ansicht::Gross},
        {u"fenster-countdown"_s, countdownUnten, Ansicht::Riesig},
        {u"fenster-update"_s, update, farben | anordnung},
        {u"fenster-tasten"_s, tasten, farben | anordnung},
        {u"fenster-menueleiste"_s, menueleiste, farben | anordnung}};
}

} // namespace kalvaro
