#include "httpserver.h"

#include "antworten.h"
#include "dienst.h"
#include "verbindung.h"

#include <array>
#include <atomic>
#include <string_view>
#include <thread>

#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t threads = 32;                         // requests that may wait at the same time
constexpr size_t groessterInhalt = 32UL * 1024 * 1024; // bytes

// Added to the headers by the library itself; no client sent them.
bool vonDerBibliothek(std::string_view name)
{
    constexpr std::array<std::string_view, 4> namen{"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR",
                                                    "LOCAL_PORT"};
    return std::find(namen.begin(), namen.end(), name) != namen.end();
}

// With the parameter, the library does not recognise the type as one to compress: that would take
// seconds for a large list, for nothing on loopback.
constexpr const char *json = "application/json; charset=utf-8";

Anfrage uebersetzt(const httplib::Request &req)
{
    Anfrage anfrage{.methode = QByteArray::fromStdString(req.method),
                    .pfad = QString::fromStdString(req.path),
                    .inhalt = QByteArray::fromStdString(req.body)};
    const auto frage = req.target.find('?');
    if (frage != std::string::npos) {
        anfrage.abfrage = QByteArray::fromStdString(req.target.substr(frage + 1));
    }
    for (const auto &[name, wert] : req.headers) {
        if (!vonDerBibliothek(name)) {
            anfrage.kopf.append({QByteArray::fromStdString(name), QByteArray::fromStdString(wert)});
        }
    }
    return anfrage;
}

void uebertragen(const Antwort &antwort, httplib::Response &res)
{
    res.status = antwort.status;
    res.set_header("Cache-Control", "no-store");
    if (!antwort.erlaubt.isEmpty()) {
        res.set_header("Allow", antwort.erlaubt.toStdString());
    }
    res.set_content(antwort.inhalt.toStdString(), json);
}

// Gives a body to the answers that the library makes on its own.
void bibliotheksfehler(const httplib::Request & /*req*/, httplib::Response &res)
{
    if (res.has_header("Cache-Control")) {
        return;
    }
    const QString text = res.status == 413   ? u"Die Anfrage ist zu groß."_s
                         : res.status == 414 ? u"Die Adresse der Anfrage ist zu lang."_s
                                             : u"Die Anfrage ist nicht verständlich."_s;
    res.set_content(alsJson(fehlerAntwort(text)).toStdString(), json);
}

bool hatInhalt(const httplib::Request &req)
{
    return req.has_header("Content-Length") || req.has_header("Transfer-Encoding");
}

// Without SO_REUSEPORT, which the library sets by default and which would let two clouds share one
// port in silence.
void socketVorbereiten(socket_t socket)
{
    const int an = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &an, sizeof an);
}

} // namespace

class Httpserver::Innen : public httplib::Server
{
public:
    explicit Innen(Dienst &dienst);

    std::atomic<bool> ende = false;
    std::thread lauscher;

private:
    bool process_and_close_socket(socket_t socket) override;
    HandlerResponse vorab(const httplib::Request &req, httplib::Response &res);

    Dienst &dienst_;
};

Httpserver::Innen::Innen(Dienst &dienst)
    : dienst_(dienst)
{
    new_task_queue = [] { return new httplib::ThreadPool(threads); };
    set_socket_options(socketVorbereiten);
    set_tcp_nodelay(true);
    set_payload_max_length(groessterInhalt);
    set_error_handler(bibliotheksfehler);
    set_pre_routing_handler(
        [this](const httplib::Request &req, httplib::Response &res) { return vorab(req, res); });
    const auto mitInhalt = [this](const httplib::Request &req, httplib::Response &res) {
        uebertragen(dienst_.antworten(uebersetzt(req)), res);
    };
    Post("/api/abgleich", mitInhalt);
    Post("/api/einstellungen", mitInhalt);
}

bool Httpserver::Innen::process_and_close_socket(socket_t socket)
{
    Verbindung verbindung(socket, ende);
    bool geschlossen = false;
    return process_request(verbindung, true, geschlossen, nullptr);
}

// Answers everything that needs no body, before the library reads one.
httplib::Server::HandlerResponse Httpserver::Innen::vorab(const httplib::Request &req,
                                                          httplib::Response &res)
{
    const Anfrage anfrage = uebersetzt(req);
    if (hatInhalt(req) && dienst_.brauchtInhalt(anfrage)) {
        return HandlerResponse::Unhandled;
    }
    uebertragen(dienst_.antworten(anfrage), res);
    return HandlerResponse::Handled;
}

Httpserver::Httpserver(Dienst &dienst)
    : innen_(std::make_unique<Innen>(dienst))
{
}

Httpserver::~Httpserver()
{
    beenden();
}

tl::expected<int, QString> Httpserver::starten(int port)
{
    constexpr const char *adresse = "127.0.0.1";
    const bool frei = port == 0;
    const int gebunden = frei                                  ? innen_->bind_to_any_port(adresse)
                         : innen_->bind_to_port(adresse, port) ? port
                                                               : -1;
    if (gebunden < 0) {
        return tl::unexpected(
            frei
                ? u"Auf 127.0.0.1 ist kein freier Port zu bekommen."_s
                : u"Port %1 ist auf 127.0.0.1 nicht zu bekommen (belegt oder nicht erlaubt)."_s.arg(
                      port));
    }
    innen_->lauscher = std::thread([this] { innen_->listen_after_bind(); });
    // stop() is lost on a server whose loop has not begun.
    while (!innen_->is_running()) {
        std::this_thread::yield();
    }
    return gebunden;
}

void Httpserver::beenden()
{
    if (!innen_->lauscher.joinable()) {
        return;
    }
    innen_->ende = true;
    innen_->stop();
    innen_->lauscher.join();
}
