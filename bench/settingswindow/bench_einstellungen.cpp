// The settings sheet with a large library, through the program's own client of the server and over
// a real connection. One run for each process, offscreen; bench/tafel.py starts it.
//
//   kalvaro-bench-einstellungen FILE [NUMBER]
//
// FILE is the answer with NUMBER playlists that bench/antworten.py writes. Prints "NAME
// MILLISECONDS" for
//
//   blatt       the first byte of the answer leaves the server, until the sheet is filled and drawn
//   taste       the slowest keystroke of a search, until its result is drawn
//   haken       checking the folder that holds everything, drawn
//   aufklappen  opening all folders, drawn
//   seite       scrolling by a page, drawn
//
// Without NUMBER it only loads and shows, for counting instructions.
#include "foundation/einstellungen.h"
#include "foundation/uhr.h"
#include "platform/anmeldestart.h"
#include "server/netztransport.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/einstellungenfenster.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <thread>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Zeit = std::chrono::steady_clock;

double seit(Zeit::time_point anfang)
{
    return std::chrono::duration<double, std::milli>(Zeit::now() - anfang).count();
}

class KeinAnmeldestart final : public Anmeldestart
{
public:
    [[nodiscard]] bool an() const override { return false; }
    void setzen(bool) override {}
};

// Answers requests on a thread of its own: the playlists with the file, anything else with "{}".
class Cloud
{
public:
    explicit Cloud(const char *datei)
        : datei_(open(datei, O_RDONLY | O_CLOEXEC))
        , horcher_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in ort = {};
        ort.sin_family = AF_INET;
        ort.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t laenge = sizeof ort;
        auto *const adresse = reinterpret_cast<sockaddr *>(&ort);
        struct stat lage = {};
        if (fstat(datei_, &lage) != 0 || bind(horcher_, adresse, laenge) != 0 ||
            listen(horcher_, 8) != 0 || getsockname(horcher_, adresse, &laenge) != 0) {
            std::perror("kalvaro-bench-einstellungen");
            std::exit(1);
        }
        bytes_ = size_t(lage.st_size);
        port_ = ntohs(ort.sin_port);
        std::thread([this] { dienen(); }).detach();
    }

    [[nodiscard]] QString adresse() const { return u"http://127.0.0.1:%1"_s.arg(port_); }

    // When the first byte of the playlists left.
    [[nodiscard]] Zeit::time_point begonnen() const { return begonnen_.load(); }

private:
    void dienen()
    {
        for (;;) {
            const int weg = accept(horcher_, nullptr, nullptr);
            std::string anfrage;
            char stueck[4096];
            while (anfrage.find("\r\n\r\n") == std::string::npos) {
                const ssize_t n = read(weg, stueck, sizeof stueck);
                if (n <= 0) {
                    break;
                }
                anfrage.append(stueck, size_t(n));
            }
            antworten(weg, anfrage.find("/api/playlisten") != std::string::npos);
            close(weg);
        }
    }

    void antworten(int weg, bool playlisten)
    {
        const std::string kopf = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nConnection: "
                                 "close\r\nContent-Length: " +
                                 std::to_string(playlisten ? bytes_ : 2) + "\r\n\r\n" +
                                 (playlisten ? "" : "{}");
        if (playlisten) {
            begonnen_ = Zeit::now();
        }
        if (send(weg, kopf.data(), kopf.size(), MSG_NOSIGNAL) < 0 || !playlisten) {
            return;
        }
        off_t ab = 0;
        while (size_t(ab) < bytes_ && sendfile(weg, datei_, &ab, bytes_ - size_t(ab)) > 0) {
        }
    }

    const int datei_;
    const int horcher_;
    size_t bytes_ = 0;
    int port_ = 0;
    std::atomic<Zeit::time_point> begonnen_{};
};

void zeichnen(QWidget &fenster)
{
    QCoreApplication::processEvents();
    fenster.repaint();
    QCoreApplication::processEvents();
}

template<typename Werk>
double dauer(QWidget &fenster, const Werk &werk)
{
    const auto anfang = Zeit::now();
    werk();
    zeichnen(fenster);
    return seit(anfang);
}

template<typename Bedingung>
void bis(const Bedingung &bedingung)
{
    while (!bedingung()) { // asleep meanwhile, so that waiting counts no instructions
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void drucken(const char *name, double ms)
{
    std::printf("%s %.3f\n", name, ms);
}

// The rows that a search for playlists whose number begins with `ziffer` leaves, all of them open:
// those of bench/antworten.py, with a folder for each hundred and one around all.
int trefferzeilen(int anzahl, const QString &ziffer)
{
    int zeilen = 1;
    int ordner = -1;
    for (int i = 0; i < anzahl; ++i) {
        if (QString::number(i).startsWith(ziffer)) {
            zeilen += i / 100 == ordner ? 1 : 2;
            ordner = i / 100;
        }
    }
    return zeilen;
}

void tippen(QWidget &feld, const QString &zeichen)
{
    QKeyEvent taste(QEvent::KeyPress, zeichen.isEmpty() ? Qt::Key_Backspace : 0, Qt::NoModifier,
                    zeichen);
    QApplication::sendEvent(&feld, &taste);
}

double suchen(EinstellungenFenster &fenster, Baumansicht &baum, int anzahl)
{
    auto &feld = *fenster.findChild<QLineEdit *>(u"suchfeld"_s);
    const int alle = trefferzeilen(anzahl, u""_s);
    double laengste = 0;
    QString wort;
    const auto messen = [&](const QString &zeichen, int zeilen) {
        laengste = std::max(laengste, dauer(fenster, [&] {
                                tippen(feld, zeichen);
                                bis([&] { return baum.zeilenzahl() == zeilen; });
                            }));
    };
    for (const QChar zeichen : u"\u00dcbung 9"_s) {
        messen(zeichen, zeichen == u'9' ? trefferzeilen(anzahl, u"9"_s) : alle);
    }
    messen({}, alle);
    feld.selectAll();
    messen({}, 1); // the tree as it was, closed
    return laengste;
}

void bedienen(EinstellungenFenster &fenster, int anzahl)
{
    auto &baum = *fenster.findChild<Baumansicht *>();
    drucken("taste", suchen(fenster, baum, anzahl));
    drucken("haken", dauer(fenster, [&] {
                baum.modell().setData(baum.modell().index(0, 0), Qt::Checked, Qt::CheckStateRole);
            }));
    drucken("aufklappen", dauer(fenster, [&] { baum.alleAufklappen(); }));
    baum.verticalScrollBar()->setValue(baum.verticalScrollBar()->maximum() / 2);
    drucken("seite", dauer(fenster, [&] {
                baum.verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd);
            }));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fputs("kalvaro-bench-einstellungen FILE [NUMBER]\n", stderr);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication programm(argc, argv);
    erscheinungEinrichten(programm);
    Cloud cloud(argv[1]);
    Systemuhr uhr;
    Netztransport transport(uhr);
    Zentrale zentrale(Konto{u"Bench"_s, u"bench"_s, u"schluessel"_s, {cloud.adresse()}}, transport);
    Einstellungen einst;
    KeinAnmeldestart anmeldestart;
    EinstellungenFenster fenster({zentrale, einst, anmeldestart, {}, {}}, nullptr);
    fenster.open();
    zeichnen(fenster);
    fenster.laden();
    auto &feld = *fenster.findChild<QLineEdit *>(u"suchfeld"_s);
    auto &baum = *fenster.findChild<Baumansicht *>();
    bis([&] { return feld.isEnabled() && baum.zeilenzahl() > 0; });
    zeichnen(fenster);
    drucken("blatt", seit(cloud.begonnen()));
    if (argc > 2) {
        bedienen(fenster, std::atoi(argv[2]));
    }
    std::fflush(stdout);
    _exit(0); // the cloud's thread waits for another request
}
