#pragma once

#include "anfrage.h"

#include <functional>
#include <future>
#include <memory>
#include <tl/expected.hpp>

namespace httplib {
class Server;
}

namespace kalvaro::democloud {

// Speaks HTTP/1.1 on 127.0.0.1, on threads of its own, one request per connection.
class Httpserver
{
public:
    // `antworten` is called from many threads at once and may block them.
    explicit Httpserver(std::function<Antwort(const Anfrage &)> antworten);
    Httpserver(const Httpserver &) = delete;
    Httpserver &operator=(const Httpserver &) = delete;
    // Waits for every `antworten` under way, lets the answers leave and cuts the clients that keep
    // it waiting.
    ~Httpserver();

    // The port it listens on (`port`, or a free one for 0), or a German sentence. Once per object.
    [[nodiscard]] tl::expected<int, QString> starten(int port);

private:
    const std::function<Antwort(const Anfrage &)> antworten_;
    const std::unique_ptr<httplib::Server> server_;
    int port_ = 0;
    std::future<void> lauf_; // the loop that accepts; valid once started
};

} // namespace kalvaro::democloud
