#pragma once

#include <QString>

#include <memory>
#include <tl/expected.hpp>

class Dienst;

// Speaks HTTP/1.1 for a Dienst on 127.0.0.1, on threads of its own, one request per connection.
class Httpserver
{
public:
    // `dienst` must outlive this object.
    explicit Httpserver(Dienst &dienst);
    Httpserver(const Httpserver &) = delete;
    Httpserver &operator=(const Httpserver &) = delete;
    ~Httpserver(); // as beenden()

    // The port it listens on (`port`, or a free one for 0), or a German sentence. Once per object.
    [[nodiscard]] tl::expected<int, QString> starten(int port);
    // Returns when no thread is left; the Dienst must have been told to end before, or its waiting
    // calls are waited for.
    void beenden();

private:
    class Innen;
    std::unique_ptr<Innen> innen_;
};
