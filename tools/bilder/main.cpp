// Draws the main window and the settings sheet in every state, light and dark, into a folder: the
// pictures of docs/.
//
// The states come from made-up answers and a clock that moves only here, so the pictures change
// only when the window does.

#include "ablauf/ablauf.h"
#include "doubles/testumgebung.h"
#include "mainwindow/bild.h"
#include "mainwindow/hauptfenster.h"
#include "settingswindow/einstellungenfenster.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTreeView>

#include <cstdio>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QByteArray zahlen = R"("betrieb":"scharf","statistik":{"titel":12345,"playlisten":321,
    "hot_cues":4567,"dateigroesse":123456000000,"analysiert":12001,"analysegroesse":52300000000,
    "stand":"2026-03-13 18:05:12"})";

struct Zustand
{
    QString name;
    QByteArray antwort; // to every request; "offline" for none, empty for silence
};

QList<Zustand> zustaende()
{
    QList<Zustand> alle{
        {u"gut"_s, R"({ZAHLEN,"ergebnis":{"zustand":"abgeglichen",
            "aendert_geraet":{"djmdContent":2500,"djmdPlaylist":1},
            "aendert_zentrale":{"djmdContent":3}}})"},
        {u"warn"_s, R"({ZAHLEN,"ergebnis":{"zustand":"verschoben",
            "hinweis":"die Musikplatte fehlt"},"andere":[{"name":"Studio","rekordbox_offen":true}]})"},
        {u"krit"_s, R"({ZAHLEN,"ergebnis":{"zustand":"angehalten"}})"},
        {u"aus"_s, R"({ZAHLEN,"ergebnis":{"zustand":"rekordbox_offen"}})"},
        {u"offline"_s, "offline"},
        {u"laedt"_s, ""},
        {u"update"_s, R"({ZAHLEN,"ergebnis":{"zustand":"aktuell"},
            "app":{"version":"1.10","url":"https://cloud.example/kalvaro"}})"},
    };
    for (Zustand &zustand : alle) {
        zustand.antwort.replace("ZAHLEN", zahlen);
    }
    return alle;
}

// Until colours no longer fade and everything that is posted is done.
void abwarten()
{
    QElapsedTimer seit;
    seit.start();
    while (seit.elapsed() < 250) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

QString bilddatei(const QDir &ziel, const Zustand &zustand, bool dunkel)
{
    return ziel.filePath(zustand.name + (dunkel ? u"-dunkel.png"_s : u"-hell.png"_s));
}

// 13 March 2026, 18:07, with two versions of rekordbox and a server that answers with the state.
struct Welt : Testumgebung
{
    Welt(const Zustand &zustand, bool dunkel)
        : Testumgebung({u"7.1.4"_s, u"6.8.5"_s})
        , ablauf({u"Studio-Mac"_s, u"studio-mac"_s, {}, {u"http://127.0.0.1"_s}}, umgebung)
    {
        const QByteArray antwort = zustand.antwort;
        netz.nach([antwort](const Netzanfrage &a) -> std::optional<Transport::Ergebnis> {
            if (antwort == "offline") {
                return Scripttransport::fehler(u"Der Server wurde nicht gefunden."_s);
            }
            const bool still = antwort.isEmpty() && a.url.path() != u"/api/status";
            return still ? std::nullopt : std::optional(Scripttransport::antwort(200, antwort));
        });
        QApplication::setPalette(eigenePalette(dunkel));
    }

    Ablauf ablauf;
};

bool zeichnen(const QDir &ziel, const Zustand &zustand, bool dunkel)
{
    Welt welt(zustand, dunkel);
    Hauptfenster fenster(welt.ablauf, Verbleib::Allein);
    fenster.starten();
    abwarten();
    if (zustand.antwort.isEmpty()) {
        welt.uhr.vor(Sekunden(3));
    }
    // The free space of this machine would change every picture each time.
    auto *const zeile = fenster.findChild<Beschriftung *>(u"lblZeile1"_s);
    static const QRegularExpression frei(u"(?<=Mac: ).*"_s);
    zeile->textSetzen(zeile->text().replace(frei, u"214 GB"_s));
    abwarten();
    return bildSpeichern(fenster.findChild<QWidget *>(u"ganz"_s), bilddatei(ziel, zustand, dunkel));
}

// The settings sheet, with what the server answers to the question for the playlists.
bool einstellungenZeichnen(const QDir &ziel, const Zustand &zustand, bool dunkel)
{
    Welt welt(zustand, dunkel);
    EinstellungenFenster blatt({welt.ablauf.zentrale, welt.ablauf.einst, welt.anmeldestart,
                                welt.rekordbox.installationen(), u"scharf"_s},
                               nullptr);
    blatt.show();
    blatt.laden();
    abwarten();
    blatt.findChild<QTreeView *>()->expandAll();
    abwarten();
    return bildSpeichern(&blatt, bilddatei(ziel, zustand, dunkel));
}

QList<Zustand> einstellungszustaende()
{
    return {
        {u"einstellungen"_s, R"({"lokal":["a","b","e"],"playlisten":[
            {"id":1,"uuid":"o1","name":"Sets 2026","ordner":true,"seq":1},
            {"id":2,"uuid":"a","name":"Warm-up","titel":124,"eltern":1,"seq":1},
            {"id":3,"uuid":"b","name":"Peak Time","titel":1208,"eltern":1,"seq":2},
            {"id":4,"uuid":"o2","name":"Genres","ordner":true,"seq":2},
            {"id":5,"uuid":"c","name":"House","titel":2341,"eltern":4,"seq":1},
            {"id":6,"uuid":"e","name":"Techno","titel":987,"eltern":4,"seq":2},
            {"id":7,"uuid":"f","name":"Neu eingetroffen","titel":58,"seq":3},
            {"id":8,"uuid":"g","name":"Wünsche","titel":19,"seq":4}]})"},
        {u"einstellungen-laedt"_s, ""},
        {u"einstellungen-offline"_s, "offline"},
    };
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("Aufruf: kalvaro-bilder ORDNER\n", stderr);
        return 2;
    }
    QApplication anwendung(argc, argv);
    erscheinungEinrichten(anwendung);
    const QDir ziel(QString::fromLocal8Bit(argv[1]));
    bool alle = true;
    for (const bool dunkel : {false, true}) {
        for (const Zustand &zustand : zustaende()) {
            alle = zeichnen(ziel, zustand, dunkel) && alle;
        }
        for (const Zustand &zustand : einstellungszustaende()) {
            alle = einstellungenZeichnen(ziel, zustand, dunkel) && alle;
        }
    }
    if (!alle) {
        std::fputs("Ein Bild ließ sich nicht schreiben.\n", stderr);
    }
    return alle ? 0 : 1;
}
