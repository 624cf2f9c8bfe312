#include "httpserver.h"

#include "antworten.h"

#include <chrono>
#include <thread>

#include <httplib.h>
#include <sys/socket.h>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t threads = 32;                         // requests that may wait at the same time
constexpr size_t groessterInhalt = 32UL * 1024 * 1024; // bytes
constexpr std::chrono::milliseconds nachfrist(400);    // for answers that leave at the end
constexpr const char *adresse = "127.0.0.1";

// With the parameter, the library does not recognise the type as one to compress: that would take
// seconds for a large list, for nothing on loopback.
constexpr const char *json = "application/json; charset=utf-8";

Anfrage uebersetzt(const httplib::Request &req)
{
    Anfrage anfrage{.methode = QByteArray::fromStdString(req.method),
                    .pfad = QString::fromStdString(req.path),
                    .inhalt = QByteArray::fromStdString(req.body)};
    if (const auto frage = req.target.find('?'); frage != std::string::npos) {
        anfrage.abfrage = QByteArray::fromStdString(req.target.substr(frage + 1));
    }
    for (const auto &[name, wert] : req.headers) {
        // The library adds addresses and ports under names that no client sends.
        if (!name.starts_with("REMOTE_") && !name.starts_with("LOCAL_")) {
            anfrage.kopf.insert(QByteArray::fromStdString(name).toLower(),
                                QByteArray::fromStdString(wert));
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

// Gives a body to the errors that the library answers on its own.
void bibliotheksfehler(const httplib::Request & /*req*/, httplib::Response &res)
{
    if (res.has_header("Cache-Control")) {
        return;
    }
    const QString text = res.status == 413   ? u"Die Anfrage ist zu groß."_s
                         : res.status == 414 ? u"Die Adresse der Anfrage ist zu lang."_s
                                             : u"Die Anfrage ist nicht verständlich."_s;
    uebertragen(fehlerAntwort(res.status, text), res);
}

// Without SO_REUSEPORT, which the library sets by default and which would let two clouds share one
// port in silence.
void socketVorbereiten(int socket)
{
    const int an = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &an, sizeof an);
}

// Cuts the connections that this process has accepted on `port`. The library would wait for silent
// clients for seconds and tells nobody its sockets; it waits with select(), so all of them lie
// below FD_SETSIZE.
void trennen(int port)
{
    for (int datei = 0; datei < FD_SETSIZE; ++datei) {
        sockaddr_in hier{};
        socklen_t groesse = sizeof hier;
        if (::getsockname(datei, reinterpret_cast<sockaddr *>(&hier), &groesse) == 0 &&
            hier.sin_family == AF_INET && ntohs(hier.sin_port) == port) {
            ::shutdown(datei, SHUT_RDWR);
        }
    }
}

} // namespace

Httpserver::Httpserver(std::function<Antwort(const Anfrage &)> antworten)
    : antworten_(std::move(antworten))
    , server_(std::make_unique<httplib::Server>())
{
    const auto antworter = [this](const httplib::Request &req, httplib::Response &res) {
        uebertragen(antworten_(uebersetzt(req)), res);
    };
    server_->new_task_queue = [] { return new httplib::ThreadPool(threads); };
    server_->set_socket_options(socketVorbereiten);
    server_->set_tcp_nodelay(true);
    server_->set_keep_alive_max_count(1);
    server_->set_payload_max_length(groessterInhalt);
    server_->set_error_handler(bibliotheksfehler);
    // Only a POST that announces its body goes on to a route, for which the library reads it;
    // without a length it would read until the client closes.
    server_->set_pre_routing_handler(
        [antworter](const httplib::Request &req, httplib::Response &res) {
            const bool mitInhalt =
                req.has_header("Content-Length") || req.has_header("Transfer-Encoding");
            if (req.method == "POST" && mitInhalt) {
                return httplib::Server::HandlerResponse::Unhandled;
            }
            antworter(req, res);
            return httplib::Server::HandlerResponse::Handled;
        });
    server_->Post(".*", antworter);
}

Httpserver::~Httpserver()
{
    if (lauf_.valid()) {
        server_->stop();
        while (lauf_.wait_for(nachfrist) == std::future_status::timeout) {
            trennen(port_);
        }
    }
}

tl::expected<int, QString> Httpserver::starten(int port)
{
    if (port == 0) {
        port_ = server_->bind_to_any_port(adresse);
    } else {
        port_ = server_->bind_to_port(adresse, port) ? port : -1;
    }
    if (port_ < 0) {
        return tl::unexpected(
            port == 0
                ? u"Auf 127.0.0.1 ist kein freier Port zu bekommen."_s
                : u"Port %1 ist auf 127.0.0.1 nicht zu bekommen (belegt oder nicht erlaubt)."_s.arg(
                      port));
    }
    lauf_ = std::async(std::launch::async, [this] { server_->listen_after_bind(); });
    while (!server_->is_running()) { // before that, stop() would be lost
        std::this_thread::yield();
    }
    return port_;
}

} // namespace kalvaro::democloud
