// tcp_socket.cpp - connections over IPv4
#include "platform/tcp_socket.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

namespace platform {

namespace {

sockaddr_in TcpAddress(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = htonl(address);
    return result;
}

int NewSocket() {
    return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
}

void SetNumber(TcpHandle handle, int level, int option, std::size_t value) {
    const int number = static_cast<int>(std::min<std::size_t>(value, INT_MAX));
    setsockopt(static_cast<int>(handle), level, option, &number, sizeof number);
}

bool WaitFor(TcpHandle handle, short what, std::uint32_t timeoutMs) {
    pollfd wait{static_cast<int>(handle), what, 0};
    const int limit = static_cast<int>(std::min<std::uint32_t>(timeoutMs, INT_MAX));
    int count = 0;
    do {
        count = poll(&wait, 1, limit);
    } while (count < 0 && errno == EINTR);
    return count > 0;
}

} // namespace

TcpHandle ListenTcp(std::uint32_t address, std::uint16_t port, std::string& error) {
    const sockaddr_in local = TcpAddress(address, port);
    const int handle = NewSocket();
    // Connections of an earlier run that are still being ended do not keep the port.
    const int on = 1;
    if (handle >= 0 && setsockopt(handle, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0 &&
        bind(handle, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0 &&
        listen(handle, SOMAXCONN) == 0) {
        return handle;
    }
    error = std::system_category().message(errno);
    if (handle >= 0) {
        close(handle);
    }
    return kNoTcpHandle;
}

std::uint16_t TcpPort(TcpHandle handle) {
    sockaddr_in local{};
    socklen_t size = sizeof local;
    return getsockname(static_cast<int>(handle), reinterpret_cast<sockaddr*>(&local), &size) == 0
               ? ntohs(local.sin_port)
               : std::uint16_t{0};
}

TcpConnection::TcpConnection(TcpHandle connectedHandle) : handle(connectedHandle) {
    SetNumber(handle, IPPROTO_TCP, TCP_NODELAY, 1);
}

TcpConnection::TcpConnection(std::uint32_t address, std::uint16_t port) {
    const sockaddr_in remote = TcpAddress(address, port);
    const int connecting = NewSocket();
    if (connecting < 0) {
        return;
    }
    if (connect(connecting, reinterpret_cast<const sockaddr*>(&remote), sizeof remote) != 0) {
        close(connecting);
        return;
    }
    handle = connecting;
    SetNumber(handle, IPPROTO_TCP, TCP_NODELAY, 1);
}

TcpConnection::~TcpConnection() {
    if (IsOpen()) {
        close(static_cast<int>(handle));
    }
}

void TcpConnection::LimitSendBuffer(std::size_t bytes) {
    SetNumber(handle, SOL_SOCKET, SO_SNDBUF, bytes);
}

void TcpConnection::LimitReceiveBuffer(std::size_t bytes) {
    SetNumber(handle, SOL_SOCKET, SO_RCVBUF, bytes);
}

std::optional<std::size_t> TcpConnection::Receive(void* data, std::size_t size,
                                                  std::uint32_t timeoutMs) {
    if (!WaitFor(handle, POLLIN, timeoutMs)) {
        return std::nullopt;
    }
    const ssize_t count = recv(static_cast<int>(handle), data, size, MSG_DONTWAIT);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

std::optional<std::size_t> TcpConnection::Send(const void* data, std::size_t size,
                                               std::uint32_t timeoutMs) {
    if (!WaitFor(handle, POLLOUT, timeoutMs)) {
        return std::nullopt;
    }
    const ssize_t count = send(static_cast<int>(handle), data, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

bool TcpConnection::HasEnded() const {
    char next = 0;
    const ssize_t count = recv(static_cast<int>(handle), &next, 1, MSG_DONTWAIT | MSG_PEEK);
    return count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

void TcpConnection::EndSending() {
    shutdown(static_cast<int>(handle), SHUT_WR);
}

void TcpConnection::Shutdown() {
    isShutDown = true;
    shutdown(static_cast<int>(handle), SHUT_RDWR);
}

} // namespace platform
