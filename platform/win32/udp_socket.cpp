// udp_socket.cpp - datagrams over IPv4
#include "platform/udp_socket.h"

#include "platform/win32/last_error.h"

#include <winsock2.h>

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

bool SwitchOn(SOCKET handle, int option) {
    const BOOL on = TRUE;
    return setsockopt(handle, SOL_SOCKET, option, reinterpret_cast<const char*>(&on), sizeof on) ==
           0;
}

} // namespace

struct UdpSocket::Impl {
    Impl() {
        WSADATA data{};
        isStarted = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~Impl() {
        if (handle != INVALID_SOCKET) {
            closesocket(handle);
        }
        if (isStarted) {
            WSACleanup();
        }
    }
    bool isStarted = false;
    SOCKET handle = INVALID_SOCKET;
};

UdpSocket::UdpSocket() : impl(std::make_unique<Impl>()) {}

UdpSocket::~UdpSocket() = default;

bool UdpSocket::Open(std::uint32_t address, std::uint16_t port, std::string* error) {
    const sockaddr_in local = SocketAddress(address, port);
    impl->handle = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    // A free port is one that nobody shares, so sharing is allowed once it has been found.
    const bool isOpen =
        impl->handle != INVALID_SOCKET && SwitchOn(impl->handle, SO_BROADCAST) &&
        (port == 0 || SwitchOn(impl->handle, SO_REUSEADDR)) &&
        bind(impl->handle, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0 &&
        (port != 0 || SwitchOn(impl->handle, SO_REUSEADDR));
    if (!isOpen && error) {
        *error = SystemErrorText(static_cast<std::uint32_t>(WSAGetLastError()));
    }
    return isOpen;
}

std::uint16_t UdpSocket::Port() const {
    sockaddr_in local{};
    int size = sizeof local;
    return getsockname(impl->handle, reinterpret_cast<sockaddr*>(&local), &size) == 0
               ? ntohs(local.sin_port)
               : std::uint16_t{0};
}

bool UdpSocket::Send(std::uint32_t address, std::uint16_t port,
                     const std::vector<std::uint8_t>& data) {
    const sockaddr_in remote = SocketAddress(address, port);
    const int size = static_cast<int>(data.size());
    return sendto(impl->handle, reinterpret_cast<const char*>(data.data()), size, 0,
                  reinterpret_cast<const sockaddr*>(&remote), sizeof remote) == size;
}

std::optional<Datagram> UdpSocket::Receive(std::uint32_t timeoutMs) {
    fd_set waiting;
    FD_ZERO(&waiting);
    FD_SET(impl->handle, &waiting);
    timeval limit{static_cast<long>(timeoutMs / 1000), static_cast<long>(timeoutMs % 1000 * 1000)};
    if (impl->handle == INVALID_SOCKET || select(0, &waiting, nullptr, nullptr, &limit) <= 0) {
        return std::nullopt;
    }
    Datagram datagram;
    datagram.data.resize(kLongestDatagram);
    sockaddr_in remote{};
    int size = sizeof remote;
    const int received = recvfrom(impl->handle, reinterpret_cast<char*>(datagram.data.data()),
                                  static_cast<int>(datagram.data.size()), 0,
                                  reinterpret_cast<sockaddr*>(&remote), &size);
    if (received < 0) {
        return std::nullopt;
    }
    datagram.data.resize(static_cast<std::size_t>(received));
    datagram.address = ntohl(remote.sin_addr.s_addr);
    datagram.port = ntohs(remote.sin_port);
    return datagram;
}

} // namespace platform
