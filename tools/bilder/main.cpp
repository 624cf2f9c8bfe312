// Draws the main window and the settings sheet in every state, light and dark, into a folder: the
// pictures of docs/.
//
// The states come from made-up answers and a clock that stands still, so the pictures change only
// when the window does.

#include "foundation/einstellungen.h"
#include "foundation/konto.h"
#include "mainwindow/bild.h"
#include "mainwindow/hauptfenster.h"
#include "platform/anmeldestart.h"
#include "platform/arbeitsplatz.h"
#include "platform/prozesse.h"
#include "rekordbox/rekordbox.h"
#include "server/zentrale.h"
#include "settingswindow/einstellungenfenster.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTreeView>

#include <cstdio>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// 13 March 2026, 18:07; nothing is ever due, but what waits a second can be called at once.
class Standuhr final : public Uhr
{
public:
    [[nodiscard]] QDateTime jetzt() const override { return stand_; }
    [[nodiscard]] Weckruf nach(Sekunden, std::function<void()>) override { return {}; }
    [[nodiscard]] Weckruf alle(Sekunden abstand, std::function<void()> ruf) override
    {
        if (abstand == Sekunden(1)) {
            takte_.append(std::move(ruf));
        }
        return {};
    }

    void sekundenVergehen(int sekunden)
    {
        stand_ = stand_.addSecs(sekunden);
        takte_.last()();
    }

private:
    QDateTime stand_{QDate(2026, 3, 13), QTime(18, 7)};
    QList<std::function<void()>> takte_;
};

// Answers every request with one body, or with silence while it is empty, or not at all.
class Skriptnetz final : public Transport
{
public:
    explicit Skriptnetz(QByteArray inhalt)
        : antwort_(std::move(inhalt))
    {
    }

    void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) override
    {
        const bool offline = antwort_ == "offline";
        if (antwort_.isEmpty() && anfrage.url.path() != u"/api/status") {
            return;
        }
        const Ergebnis ergebnis =
            offline
                ? Ergebnis(tl::unexpected(Netzfehler{false, u"Der Server wurde nicht gefunden."_s}))
                : Ergebnis(Netzantwort{200, antwort_});
        QMetaObject::invokeMethod(
            besitzer, [=] { fertig(ergebnis); }, Qt::QueuedConnection);
    }

private:
    const QByteArray antwort_;
};

class Keinprozess final : public Prozesse
{
public:
    [[nodiscard]] qsizetype anzahl(const QString &) const override { return 0; }
    [[nodiscard]] QStringList buendel() const override { return {}; }
};

class Stillplatz final : public Arbeitsplatz
{
public:
    void starten(const QString &, QObject *, std::function<void(std::optional<QString>)>) override
    {
    }
    void oeffnen(const QUrl &) override {}
    void auftreten(Auftritt) override {}
};

class Keinstart final : public Anmeldestart
{
public:
    [[nodiscard]] bool an() const override { return false; }
    void setzen(bool) override {}
};

const QByteArray zahlen = R"("betrieb":"scharf","statistik":{"titel":12345,"playlisten":321,
    "hot_cues":4567,"dateigroesse":123456000000,"analysiert":12001,"analysegroesse":52300000000,
    "stand":"2026-03-13 18:05:12"})";

struct Zustand
{
    QString name;
    QByteArray antwort; // see Skriptnetz
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

bool zeichnen(const QDir &ziel, const Zustand &zustand, bool dunkel)
{
    Standuhr uhr;
    Skriptnetz netz(zustand.antwort);
    const Keinprozess prozesse;
    Stillplatz arbeitsplatz;
    Keinstart anmeldestart;
    const Rekordbox rekordbox(prozesse, qEnvironmentVariable("KALVARO_APPLICATIONS"));
    Zentrale zentrale({u"Studio-Mac"_s, u"studio-mac"_s, {}, {u"http://127.0.0.1"_s}}, netz);
    Einstellungen einst;

    QApplication::setPalette(eigenePalette(dunkel));
    Hauptfenster fenster({zentrale, einst, uhr, rekordbox, arbeitsplatz, anmeldestart}, {},
                         nullptr);
    fenster.starten();
    abwarten();
    if (zustand.antwort.isEmpty()) {
        uhr.sekundenVergehen(3);
    }
    // The free space of this machine would change every picture each time.
    auto *const zeile = fenster.findChild<Beschriftung *>(u"lblZeile1"_s);
    static const QRegularExpression frei(u"(?<=Mac: ).*"_s);
    zeile->textSetzen(zeile->text().replace(frei, u"214 GB"_s));
    abwarten();
    const QString pfad = ziel.filePath(zustand.name + (dunkel ? u"-dunkel.png"_s : u"-hell.png"_s));
    return bildSpeichern(fenster.findChild<QWidget *>(u"ganz"_s), pfad);
}

// The settings sheet, with what the server answers to the question for the playlists.
bool einstellungenZeichnen(const QDir &ziel, const Zustand &zustand, bool dunkel)
{
    Skriptnetz netz(zustand.antwort);
    Keinstart anmeldestart;
    const Keinprozess prozesse;
    const Rekordbox rekordbox(prozesse, qEnvironmentVariable("KALVARO_APPLICATIONS"));
    Zentrale zentrale({u"Studio-Mac"_s, u"studio-mac"_s, {}, {u"http://127.0.0.1"_s}}, netz);
    Einstellungen einst;

    QApplication::setPalette(eigenePalette(dunkel));
    EinstellungenFenster blatt(
        {zentrale, einst, anmeldestart, rekordbox.installationen(), u"scharf"_s}, nullptr);
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
    const QTemporaryDir daten;
    qputenv("XDG_DATA_HOME", daten.path().toLocal8Bit());
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
