// udp_socket.cpp - datagrams over IPv4
#include "platform/udp_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace platform {

namespace {

constexpr std::size_t kLongestDatagram = 65536;

sockaddr_in SocketAddress(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = htonl(address);
    return result;
}

bool SwitchOn(int handle, int option) {
    const int on = 1;
    return setsockopt(handle, SOL_SOCKET, option, &on, sizeof on) == 0;
}

} // namespace

struct UdpSocket::Impl {
    ~Impl() {
        if (handle >= 0) {
            close(handle);
        }
    }
    int handle = -1;
};

UdpSocket::UdpSocket() : impl(std::make_unique<Impl>()) {}

UdpSocket::~UdpSocket() = default;

bool UdpSocket::Open(std::uint32_t address, std::uint16_t port, std::string* error) {
    const sockaddr_in local = SocketAddress(address, port);
    impl->handle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    // A free port is one that nobody shares, so sharing is allowed once it has been found.
    const bool isOpen =
        impl->handle >= 0 && SwitchOn(impl->handle, SO_BROADCAST) &&
        (port == 0 || SwitchOn(impl->handle, SO_REUSEADDR)) &&
        bind(impl->handle, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0 &&
        (port != 0 || SwitchOn(impl->handle, SO_REUSEADDR));
    if (!isOpen && error) {
        *error = std::system_category().message(errno);
    }
    return isOpen;
}

std::uint16_t UdpSocket::Port() const {
    sockaddr_in local{};
    socklen_t size = sizeof local;
    return getsockname(impl->handle, reinterpret_cast<sockaddr*>(&local), &size) == 0
               ? ntohs(local.sin_port)
               : std::uint16_t{0};
}

bool UdpSocket::Send(std::uint32_t address, std::uint16_t port,
                     const std::vector<std::uint8_t>& data) {
    const sockaddr_in remote = SocketAddress(address, port);
    return sendto(impl->handle, data.data(), data.size(), 0,
                  reinterpret_cast<const sockaddr*>(&remote),
                  sizeof remote) == static_cast<ssize_t>(data.size());
}

std::optional<Datagram> UdpSocket::Receive(std::uint32_t timeoutMs) {
    pollfd wait{impl->handle, POLLIN, 0};
    if (poll(&wait, 1, static_cast<int>(timeoutMs)) <= 0) {
        return std::nullopt;
    }
    Datagram datagram;
    datagram.data.resize(kLongestDatagram);
    sockaddr_in remote{};
    socklen_t size = sizeof remote;
    const ssize_t received = recvfrom(impl->handle, datagram.data.data(), datagram.data.size(),
                                      MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&remote), &size);
    if (received < 0) {
        return std::nullopt;
    }
    datagram.data.resize(static_cast<std::size_t>(received));
    datagram.address = ntohl(remote.sin_addr.s_addr);
    datagram.port = ntohs(remote.sin_port);
    return datagram;
}

} // namespace platform
