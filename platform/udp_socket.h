// udp_socket.h - datagrams over IPv4
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// A datagram with its sender. Addresses are numbers: 127.0.0.1 is 0x7F000001.
struct Datagram {
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    std::vector<std::uint8_t> data;
};

/// A UDP socket that may send broadcasts. The destructor closes it. One thread at a time.
class UdpSocket {
public:
    UdpSocket();
    ~UdpSocket();
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    /// Binds to an address of this machine, 0 for all of them, and to a port, 0 for a free one.
    /// Sockets of different addresses may share a port. On failure returns false and stores the
    /// system's message in `error` (unless null). Call once per object.
    bool Open(std::uint32_t address, std::uint16_t port, std::string* error = nullptr);
    /// The port that it is bound to; 0 when it is not open.
    std::uint16_t Port() const;
    bool Send(std::uint32_t address, std::uint16_t port, const std::vector<std::uint8_t>& data);
    /// Waits up to `timeoutMs` milliseconds for a datagram. Of a longer one than 64 KiB nothing is
    /// received; nullopt also when the system fails.
    std::optional<Datagram> Receive(std::uint32_t timeoutMs);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
