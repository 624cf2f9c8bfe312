// Starts a program and watches its window from outside.
//
//   fenstermesser COMMAND ARGUMENTS…
//
// Prints "fenster MILLISECONDS PID" when the X server has mapped a window of at least 200 × 100,
// counted from the moment before the program's start. Then it takes lines on standard input:
//
//   takt   begins to ask the window whether it lives (_NET_WM_PING), which its event loop answers:
//          again 2 ms after each answer
//   halt   ends that and prints "halt MILLISECONDS RAW COUNT": the longest wait for an answer, less
//   what
//          the program's main thread waited for a processor meanwhile, and as it was; the answers
//
// The end of standard input ends the program with SIGTERM.

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

namespace {

using Uhr = std::chrono::steady_clock;
using Millisekunden = std::chrono::duration<double, std::milli>;

struct Frei
{
    void operator()(void *zeiger) const { std::free(zeiger); }
};

template<typename T>
using Antwort = std::unique_ptr<T, Frei>;

// How long the main thread has waited for a processor so far, in ms (proc(5), "schedstat").
double wartezeit(pid_t kind)
{
    std::ifstream ein("/proc/" + std::to_string(kind) + "/schedstat");
    double gerechnet = 0;
    double gewartet = 0;
    ein >> gerechnet >> gewartet;
    return gewartet / 1e6;
}

class Messer
{
public:
    Messer(xcb_connection_t *x, pid_t kind, Uhr::time_point anfang)
        : x_(x)
        , kind_(kind)
        , anfang_(anfang)
        , protokolle_(atom("WM_PROTOCOLS"))
        , ruf_(atom("_NET_WM_PING"))
    {
    }

    void laufen()
    {
        for (;;) {
            pollfd auf[] = {{xcb_get_file_descriptor(x_), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
            if (poll(auf, 2, taktet_ && !gerufen_ ? 2 : -1) == 0) {
                rufen();
            }
            ereignisse();
            if ((auf[1].revents & (POLLIN | POLLHUP)) != 0 && !zeile()) {
                return;
            }
        }
    }

private:
    xcb_atom_t atom(const char *name) const
    {
        const auto frage = xcb_intern_atom(x_, 0, uint16_t(std::strlen(name)), name);
        const Antwort<xcb_intern_atom_reply_t> antwort(xcb_intern_atom_reply(x_, frage, nullptr));
        return antwort ? antwort->atom : 0;
    }

    void rufen()
    {
        xcb_client_message_event_t ruf = {};
        ruf.response_type = XCB_CLIENT_MESSAGE;
        ruf.format = 32;
        ruf.window = fenster_;
        ruf.type = protokolle_;
        ruf.data.data32[0] = ruf_;
        ruf.data.data32[2] = fenster_;
        gewartetVor_ = wartezeit(kind_);
        gerufen_ = Uhr::now();
        xcb_send_event(x_, 0, fenster_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<char *>(&ruf));
        xcb_flush(x_);
    }

    void geantwortet()
    {
        const double dauer = Millisekunden(Uhr::now() - *gerufen_).count();
        roh_ = std::max(roh_, dauer);
        laengste_ = std::max(laengste_, dauer - (wartezeit(kind_) - gewartetVor_));
        ++antworten_;
        gerufen_.reset();
        if (haelt_) {
            berichten();
        }
    }

    void erschienen(xcb_window_t fenster)
    {
        const Antwort<xcb_get_geometry_reply_t> mass(
            xcb_get_geometry_reply(x_, xcb_get_geometry(x_, fenster), nullptr));
        if (fenster_ != 0 || !mass || mass->width < 200 || mass->height < 100) {
            return;
        }
        fenster_ = fenster;
        std::printf("fenster %.1f %d\n", Millisekunden(Uhr::now() - anfang_).count(), int(kind_));
        std::fflush(stdout);
    }

    void ereignisse()
    {
        while (const Antwort<xcb_generic_event_t> ereignis{xcb_poll_for_event(x_)}) {
            const int art = ereignis->response_type & 0x7f;
            if (art == XCB_MAP_NOTIFY) {
                erschienen(reinterpret_cast<xcb_map_notify_event_t *>(ereignis.get())->window);
            } else if (art == XCB_CLIENT_MESSAGE && gerufen_) {
                const auto *const da =
                    reinterpret_cast<xcb_client_message_event_t *>(ereignis.get());
                if (da->type == protokolle_ && da->data.data32[0] == ruf_) {
                    geantwortet();
                }
            }
        }
        if (xcb_connection_has_error(x_) != 0) {
            std::exit(1);
        }
    }

    void berichten()
    {
        std::printf("halt %.2f %.2f %d\n", laengste_, roh_, antworten_);
        std::fflush(stdout);
        haelt_ = false;
    }

    // A command of standard input; false at its end.
    bool zeile()
    {
        char wort[16] = {};
        if (read(STDIN_FILENO, wort, sizeof(wort) - 1) <= 0) {
            return false;
        }
        taktet_ = std::strncmp(wort, "takt", 4) == 0;
        if (taktet_) {
            laengste_ = roh_ = 0;
            antworten_ = 0;
            rufen();
        } else if (gerufen_) {
            haelt_ = true; // what still hangs counts
        } else {
            berichten();
        }
        return true;
    }

    xcb_connection_t *const x_;
    const pid_t kind_;
    const Uhr::time_point anfang_;
    const xcb_atom_t protokolle_;
    const xcb_atom_t ruf_;
    xcb_window_t fenster_ = 0;

    bool taktet_ = false;
    bool haelt_ = false; // to report with the next answer
    std::optional<Uhr::time_point> gerufen_;
    double gewartetVor_ = 0;
    double laengste_ = 0;
    double roh_ = 0;
    int antworten_ = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    xcb_connection_t *const x = xcb_connect(nullptr, nullptr);
    if (argc < 2 || xcb_connection_has_error(x) != 0) {
        std::fputs("fenstermesser: needs a command and an X server\n", stderr);
        return 2;
    }
    const xcb_window_t wurzel = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    // Windows are told of by the one, answers by the other.
    const uint32_t maske = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, wurzel, XCB_CW_EVENT_MASK, &maske);
    xcb_flush(x);

    const auto anfang = Uhr::now();
    const pid_t kind = fork();
    if (kind == 0) {
        execvp(argv[1], argv + 1);
        _exit(127);
    }
    Messer(x, kind, anfang).laufen();
    kill(kind, SIGTERM);
    waitpid(kind, nullptr, 0);
    xcb_disconnect(x);
    return 0;
}
