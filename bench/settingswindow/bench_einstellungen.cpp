// Measures the settings sheet with libraries of 1,000, 10,000 and 100,000 playlists: the answer to
// a usable sheet, the longest that the event loop stood still meanwhile, checking a folder that
// holds everything, filtering, scrolling, closing, memory. Prints one line each and, for the
// largest, the growth from the smallest: 100 means in proportion. Times are those of the
// processor, of the main thread alone but for the answer, which another one reads.
#include "doubles/datenordner.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/scripttransport.h"
#include "foundation/einstellungen.h"
#include "foundation/nebenarbeit.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/baumleser.h"
#include "settingswindow/einstellungenfenster.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>

#include <malloc.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int jeOrdner = 100;

QByteArray bibliothek(int anzahl)
{
    QJsonArray liste{QJsonObject{{u"id"_s, u"alles"_s},
                                 {u"uuid"_s, u"u-alles"_s},
                                 {u"name"_s, u"Alles"_s},
                                 {u"ordner"_s, true},
                                 {u"eltern"_s, u"root"_s}}};
    for (int i = 0; i < anzahl; ++i) {
        const int nummer = i / jeOrdner;
        const QString eltern = u"o%1"_s.arg(nummer);
        if (i % jeOrdner == 0) {
            liste.append(QJsonObject{{u"id"_s, eltern},
                                     {u"uuid"_s, u"0412871e-64cf-b103-9bf8-%1"_s.arg(nummer)},
                                     {u"name"_s, u"Ordner %1"_s.arg(nummer)},
                                     {u"ordner"_s, true},
                                     {u"titel"_s, 0},
                                     {u"eltern"_s, u"alles"_s},
                                     {u"seq"_s, nummer}});
        }
        liste.append(QJsonObject{{u"id"_s, QString::number(3'000'000 + i)},
                                 {u"uuid"_s, u"6e73e372-e233-8aca-16b1-%1"_s.arg(i, 12)},
                                 {u"name"_s, u"Playliste für Übung %1"_s.arg(i)},
                                 {u"ordner"_s, false},
                                 {u"titel"_s, i % 500},
                                 {u"eltern"_s, eltern},
                                 {u"seq"_s, i % jeOrdner}});
    }
    return QJsonDocument(QJsonObject{{u"playlisten"_s, liste}, {u"lokal"_s, QJsonArray{}}})
        .toJson(QJsonDocument::Compact);
}

size_t belegt()
{
    malloc_trim(0);
    return mallinfo2().uordblks + mallinfo2().hblkhd;
}

// What the process has of the machine's memory, in KiB.
double arbeitsspeicher()
{
    QFile datei(u"/proc/self/status"_s);
    if (!datei.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray alles = datei.readAll();
    const qsizetype ab = alles.indexOf("VmRSS:") + 6;
    return alles.sliced(ab, alles.indexOf("kB", ab) - ab).trimmed().toDouble();
}

struct Messung
{
    double lesen = 0;      // bytes of the answer to the tree, ms
    double sichtbar = 0;   // answer to the sheet drawn, with that, all threads, ms
    double halt = 0;       // the longest pass of the event loop meanwhile, ms
    double haken = 0;      // the root with its summary, and drawn, ms
    double hakenOffen = 0; // the same with every folder open, ms
    double taste = 0;      // the slowest keystroke of a filter, with drawing, ms
    double aufklappen = 0; // all folders, with drawing, ms
    double rollen = 0;     // one page, with drawing, ms
    double sichern = 0;    // with everything checked, ms
    double zu = 0;         // the sheet gone, ms
    double bytes = 0;      // per playlist
    double offen = 0;      // more memory of the machine with the sheet, after all of that, KiB
    double danach = 0;     // and when it has gone
};

double prozessor(clockid_t wessen = CLOCK_THREAD_CPUTIME_ID)
{
    timespec jetzt = {};
    clock_gettime(wessen, &jetzt);
    return double(jetzt.tv_sec) * 1e3 + double(jetzt.tv_nsec) / 1e6;
}

template<typename Werk>
double dauer(const Werk &werk)
{
    const double vorher = prozessor();
    werk();
    return prozessor() - vorher;
}

void zeichnen(EinstellungenFenster &fenster)
{
    QCoreApplication::processEvents();
    fenster.repaint();
    QCoreApplication::processEvents();
}

double anhaken(EinstellungenFenster &fenster, Qt::CheckState zustand)
{
    auto &baum = *fenster.findChild<Baumansicht *>();
    return dauer([&] {
        baum.modell().setData(baum.modell().index(0, 0), zustand, Qt::CheckStateRole);
        zeichnen(fenster);
    });
}

void bedienen(EinstellungenFenster &fenster, Messung &m)
{
    auto &baum = *fenster.findChild<Baumansicht *>();
    auto &suchfeld = *fenster.findChild<QLineEdit *>(u"suchfeld"_s);
    m.haken = anhaken(fenster, Qt::Checked);
    m.aufklappen = dauer([&] {
        baum.alleAufklappen();
        zeichnen(fenster);
    });
    m.hakenOffen = anhaken(fenster, Qt::Unchecked);
    baum.verticalScrollBar()->setValue(baum.verticalScrollBar()->maximum() / 2);
    constexpr int seiten = 50;
    m.rollen = dauer([&] {
                   for (int i = 0; i < seiten; ++i) {
                       baum.verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd);
                       zeichnen(fenster);
                   }
               }) /
               seiten;
    for (const QString &wort : {u"u"_s, u"ub"_s, u"ubu"_s, u"ubun"_s, u"ubung 9"_s, u""_s}) {
        m.taste = std::max(m.taste, dauer([&] {
                               suchfeld.setText(wort);
                               zeichnen(fenster);
                           }));
    }
}

Messung messen(int anzahl)
{
    const QByteArray daten = bibliothek(anzahl);
    Messung m;
    {
        m.lesen = dauer([&] { (void)baumLesen(daten, [] { return false; }); });
    }
    Scripttransport weg;
    Zentrale zentrale(Konto{u"D"_s, u"d"_s, {}, {u"http://cloud"_s}}, weg);
    Einstellungen einst;
    FakeAnmeldestart anmeldestart;
    auto fensterHalter = std::make_unique<EinstellungenFenster>(
        EinstellungenFenster::Vorgaben{zentrale, einst, anmeldestart, {}, {}}, nullptr);
    EinstellungenFenster &fenster = *fensterHalter;
    fenster.open();
    weg.dann(Scripttransport::antwort(200, "{}"));
    fenster.laden();
    while (weg.haengend() == 0) {
        QCoreApplication::processEvents();
    }
    const size_t vorher = belegt();
    const double rss = arbeitsspeicher();
    const double anfang = prozessor(CLOCK_PROCESS_CPUTIME_ID);
    weg.beantworten(Scripttransport::antwort(200, daten));
    while (!fenster.findChild<QLineEdit *>(u"suchfeld"_s)->isEnabled()) {
        m.halt = std::max(
            m.halt, dauer([] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }));
    }
    m.halt = std::max(m.halt, dauer([&] { zeichnen(fenster); }));
    m.sichtbar = prozessor(CLOCK_PROCESS_CPUTIME_ID) - anfang;
    m.bytes = double(belegt() - vorher) / anzahl;
    bedienen(fenster, m);
    anhaken(fenster, Qt::Checked);
    m.sichern = dauer([&] {
        fenster.sichern();
        QCoreApplication::processEvents();
    });
    m.offen = arbeitsspeicher() - rss;
    m.zu = dauer([&] {
        fensterHalter.reset();
        QCoreApplication::processEvents();
    });
    bool aufgeraeumt = false;
    QObject besitzer;
    new Nebenarbeit<int>([](const Abbruch &) { return 0; }, &besitzer,
                         [&](int) { aufgeraeumt = true; });
    while (!aufgeraeumt) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    m.danach = arbeitsspeicher() - rss;
    return m;
}

// The best of three: other programs slow a run down, nothing speeds one up.
Messung beste(int anzahl)
{
    Messung m = messen(anzahl);
    for (int i = 0; i < 2; ++i) {
        const Messung n = messen(anzahl);
        for (double Messung::*feld :
             {&Messung::lesen, &Messung::sichtbar, &Messung::halt, &Messung::sichern, &Messung::zu,
              &Messung::haken, &Messung::hakenOffen, &Messung::taste, &Messung::aufklappen,
              &Messung::rollen, &Messung::bytes, &Messung::offen, &Messung::danach}) {
            m.*feld = std::min(m.*feld, n.*feld);
        }
    }
    return m;
}

void drucken(int anzahl, const Messung &m)
{
    std::printf("%7d playlists: read %.1f ms, answer to sheet %.1f ms, event loop held %.1f ms, "
                "check root %.1f ms (all open %.1f ms), keystroke %.1f ms, open all %.1f ms, page "
                "%.2f ms, save all %.1f ms, close %.1f ms, %.0f bytes each, "
                "%.1f MiB with the sheet, %.1f MiB after it\n",
                anzahl, m.lesen, m.sichtbar, m.halt, m.haken, m.hakenOffen, m.taste, m.aufklappen,
                m.rollen, m.sichern, m.zu, m.bytes, m.offen / 1024, m.danach / 1024);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication programm(argc, argv);
    const Datenordner ordner;
    erscheinungEinrichten(programm);
    (void)messen(1'000); // warms fonts and code up

    const Messung klein = beste(1'000);
    drucken(1'000, klein);
    drucken(10'000, beste(10'000));
    const Messung gross = beste(100'000);
    drucken(100'000, gross);
    std::printf("growth 1,000 to 100,000: read x%.0f, memory per playlist x%.2f\n",
                gross.lesen / klein.lesen, gross.bytes / klein.bytes);
    std::printf(
        "share of the budget at 100,000: answer to sheet %.2f of 200 ms, event loop held %.2f "
        "of 30 ms, keystroke %.2f of 16 ms, check root %.2f of 50 ms\n",
        gross.sichtbar / 200, gross.halt / 30, gross.taste / 16, gross.haken / 50);
    return 0;
}
