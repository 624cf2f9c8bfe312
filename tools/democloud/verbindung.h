#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <httplib.h>

// One accepted connection. The library's own stream waits for seconds on a silent client; this one
// also watches `ende`, so that the server can end within a fraction of a second. Writes what fits
// even at the end, so that answers under way still leave.
class Verbindung : public httplib::Stream
{
public:
    // Takes over `socket`; `ende` must outlive this object.
    Verbindung(socket_t socket, const std::atomic<bool> &ende);
    Verbindung(const Verbindung &) = delete;
    Verbindung &operator=(const Verbindung &) = delete;
    // Closes so that the client can still read an answer sent before its request was read whole.
    ~Verbindung() override;

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char *ptr, size_t size) override;
    ssize_t write(const char *ptr, size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    [[nodiscard]] socket_t socket() const override;

private:
    // Waits for the poll events; false after `millisekunden` or at the end.
    [[nodiscard]] bool warten(short ereignisse, int millisekunden) const;
    [[nodiscard]] bool fuellen();

    const socket_t socket_;
    const std::atomic<bool> &ende_;
    std::array<char, 16384> puffer_{};
    size_t gelesen_ = 0; // bytes of the buffer already handed out
    size_t gefuellt_ = 0;
};
