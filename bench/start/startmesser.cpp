// Starts a program and tells how long its window takes to appear, how much memory it then uses and
// how much processor it takes at rest.
//
//   startmesser COMMAND ARGUMENTS…
//
// Prints "milliseconds PSS-in-KiB processor-milliseconds-in-5-s". The window counts from the moment
// that the X server maps it; memory is read 3 s later, when a first sync is over.

#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

namespace {

using Zeit = std::chrono::steady_clock;

struct Frei
{
    void operator()(void *zeiger) const { std::free(zeiger); }
};

void aufFensterWarten(xcb_connection_t *x)
{
    for (;;) {
        const std::unique_ptr<xcb_generic_event_t, Frei> ereignis(xcb_wait_for_event(x));
        if (!ereignis) {
            std::exit(1);
        }
        if ((ereignis->response_type & 0x7f) != XCB_MAP_NOTIFY) {
            continue;
        }
        const auto *const da = reinterpret_cast<const xcb_map_notify_event_t *>(ereignis.get());
        const std::unique_ptr<xcb_get_geometry_reply_t, Frei> mass(
            xcb_get_geometry_reply(x, xcb_get_geometry(x, da->window), nullptr));
        if (mass && mass->width >= 400) {
            return;
        }
    }
}

long kibVon(const std::string &datei, const std::string &feld)
{
    std::ifstream ein(datei);
    for (std::string wort; ein >> wort;) {
        if (wort == feld) {
            long wert = 0;
            ein >> wert;
            return wert;
        }
    }
    return -1;
}

// Processor time of the process so far, in clock ticks (proc(5), "stat", fields 14 and 15).
long prozessorticks(pid_t kind)
{
    std::ifstream ein("/proc/" + std::to_string(kind) + "/stat");
    std::string wort;
    long summe = 0;
    for (int feld = 1; feld <= 15 && ein >> wort; ++feld) {
        if (feld >= 14) {
            summe += std::stol(wort);
        }
    }
    return summe;
}

} // namespace

int main(int argc, char *argv[])
{
    xcb_connection_t *const x = xcb_connect(nullptr, nullptr);
    if (argc < 2 || xcb_connection_has_error(x) != 0) {
        std::fputs("startmesser: needs a command and an X server\n", stderr);
        return 2;
    }
    const xcb_window_t wurzel = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const uint32_t maske = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, wurzel, XCB_CW_EVENT_MASK, &maske);
    xcb_flush(x);

    const auto anfang = Zeit::now();
    const pid_t kind = fork();
    if (kind == 0) {
        execv(argv[1], argv + 1);
        _exit(127);
    }
    aufFensterWarten(x);
    const std::chrono::duration<double, std::milli> dauer = Zeit::now() - anfang;
    std::this_thread::sleep_for(std::chrono::seconds(3));
    const long pss = kibVon("/proc/" + std::to_string(kind) + "/smaps_rollup", "Pss:");
    const long vorher = prozessorticks(kind);
    std::this_thread::sleep_for(std::chrono::seconds(5));
    const long ticks = prozessorticks(kind) - vorher;
    std::printf("%.1f %ld %ld\n", dauer.count(), pss, ticks * 1000 / sysconf(_SC_CLK_TCK));
    kill(kind, SIGTERM);
    waitpid(kind, nullptr, 0);
    xcb_disconnect(x);
    return 0;
}
