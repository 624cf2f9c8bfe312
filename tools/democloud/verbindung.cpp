#include "verbindung.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int scheibe = 40;                        // ms between two looks at the end flag
constexpr int stilleFrist = 10'000;                // ms that a client may be silent
constexpr int schliessFrist = 400;                 // ms for the client to take its answer
constexpr std::string_view loopback = "127.0.0.1"; // the only address the server listens on

bool spaeter()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

int portVon(const sockaddr_in &adresse)
{
    return ntohs(adresse.sin_port);
}

} // namespace

Verbindung::Verbindung(socket_t socket, const std::atomic<bool> &ende)
    : socket_(socket)
    , ende_(ende)
{
    ::fcntl(socket_, F_SETFD, FD_CLOEXEC);
}

Verbindung::~Verbindung()
{
    ::shutdown(socket_, SHUT_WR);
    // Closing with unread bytes would reset the connection and destroy the answer on its way.
    for (int rest = schliessFrist; rest > 0 && warten(POLLIN, scheibe); rest -= scheibe) {
        if (::recv(socket_, puffer_.data(), puffer_.size(), MSG_DONTWAIT) <= 0) {
            break;
        }
    }
    ::close(socket_);
}

bool Verbindung::warten(short ereignisse, int millisekunden) const
{
    for (int rest = millisekunden; rest > 0; rest -= scheibe) {
        pollfd frage{.fd = socket_, .events = ereignisse, .revents = 0};
        if (::poll(&frage, 1, std::min(rest, scheibe)) > 0) {
            return true;
        }
        if (ende_) {
            return false;
        }
    }
    return false;
}

bool Verbindung::is_readable() const
{
    return gelesen_ < gefuellt_ || warten(POLLIN, stilleFrist);
}

bool Verbindung::is_writable() const
{
    return warten(POLLOUT, stilleFrist);
}

bool Verbindung::fuellen()
{
    for (;;) {
        const ssize_t neu = ::recv(socket_, puffer_.data(), puffer_.size(), MSG_DONTWAIT);
        if (neu >= 0) {
            gelesen_ = 0;
            gefuellt_ = static_cast<size_t>(neu);
            return true;
        }
        if (!spaeter() || !warten(POLLIN, stilleFrist)) {
            return false;
        }
    }
}

ssize_t Verbindung::read(char *ptr, size_t size)
{
    if (gelesen_ == gefuellt_ && !fuellen()) {
        return -1;
    }
    const size_t menge = std::min(size, gefuellt_ - gelesen_);
    std::memcpy(ptr, puffer_.data() + gelesen_, menge);
    gelesen_ += menge;
    return static_cast<ssize_t>(menge);
}

ssize_t Verbindung::write(const char *ptr, size_t size)
{
    size_t gesendet = 0;
    while (gesendet < size) {
        const ssize_t neu =
            ::send(socket_, ptr + gesendet, size - gesendet, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (neu >= 0) {
            gesendet += static_cast<size_t>(neu);
        } else if (!spaeter() || !warten(POLLOUT, stilleFrist)) {
            return -1;
        }
    }
    return static_cast<ssize_t>(size);
}

void Verbindung::get_remote_ip_and_port(std::string &ip, int &port) const
{
    sockaddr_in adresse{};
    socklen_t laenge = sizeof adresse;
    ::getpeername(socket_, reinterpret_cast<sockaddr *>(&adresse), &laenge);
    ip = loopback;
    port = portVon(adresse);
}

void Verbindung::get_local_ip_and_port(std::string &ip, int &port) const
{
    sockaddr_in adresse{};
    socklen_t laenge = sizeof adresse;
    ::getsockname(socket_, reinterpret_cast<sockaddr *>(&adresse), &laenge);
    ip = loopback;
    port = portVon(adresse);
}

socket_t Verbindung::socket() const
{
    return socket_;
}
