// tcp_socket.cpp - connections over IPv4
#include "platform/tcp_socket.h"

#include "platform/win32/last_error.h"

#include <winsock2.h>

#include <algorithm>
#include <climits>

namespace platform {

namespace {

/// The library stays started: sockets may outlive whoever made the first one.
void StartSockets() {
    static const bool isStarted = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    static_cast<void>(isStarted);
}

sockaddr_in TcpAddress(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = htonl(address);
    return result;
}

SOCKET SocketOf(TcpHandle handle) {
    return static_cast<SOCKET>(handle);
}

SOCKET NewSocket() {
    StartSockets();
    return WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                      WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}

bool SetNumber(SOCKET handle, int level, int option, std::size_t value) {
    const int number = static_cast<int>(std::min<std::size_t>(value, INT_MAX));
    return setsockopt(handle, level, option, reinterpret_cast<const char*>(&number),
                      sizeof number) == 0;
}

/// Sends what is written at once, and never waits inside a call.
void SetUp(SOCKET handle) {
    SetNumber(handle, IPPROTO_TCP, TCP_NODELAY, 1);
    u_long on = 1;
    ioctlsocket(handle, FIONBIO, &on);
}

bool WaitOnce(SOCKET handle, bool toSend, std::uint32_t timeoutMs) {
    fd_set waiting;
    FD_ZERO(&waiting);
    FD_SET(handle, &waiting);
    fd_set failed = waiting;
    timeval limit{static_cast<long>(timeoutMs / 1000), static_cast<long>(timeoutMs % 1000 * 1000)};
    return select(0, toSend ? nullptr : &waiting, toSend ? &waiting : nullptr, &failed, &limit) > 0;
}

/// A wait does not notice that the own side shuts the connection down.
bool WaitFor(SOCKET handle, bool toSend, std::uint32_t timeoutMs,
             const std::atomic<bool>& isShutDown) {
    constexpr std::uint32_t kSliceMs = 50;
    while (handle != INVALID_SOCKET && !isShutDown) {
        const std::uint32_t sliceMs = std::min(timeoutMs, kSliceMs);
        if (WaitOnce(handle, toSend, sliceMs)) {
            return true;
        }
        timeoutMs -= sliceMs;
        if (timeoutMs == 0) {
            break;
        }
    }
    return false;
}

} // namespace

TcpHandle ListenTcp(std::uint32_t address, std::uint16_t port, std::string& error) {
    const sockaddr_in local = TcpAddress(address, port);
    const SOCKET handle = NewSocket();
    if (handle != INVALID_SOCKET && SetNumber(handle, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, 1) &&
        bind(handle, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0 &&
        listen(handle, SOMAXCONN) == 0) {
        return static_cast<TcpHandle>(handle);
    }
    error = SystemErrorText(static_cast<std::uint32_t>(WSAGetLastError()));
    if (handle != INVALID_SOCKET) {
        closesocket(handle);
    }
    return kNoTcpHandle;
}

std::uint16_t TcpPort(TcpHandle handle) {
    sockaddr_in local{};
    int size = sizeof local;
    return getsockname(SocketOf(handle), reinterpret_cast<sockaddr*>(&local), &size) == 0
               ? ntohs(local.sin_port)
               : std::uint16_t{0};
}

TcpConnection::TcpConnection(TcpHandle connectedHandle) : handle(connectedHandle) {
    SetUp(SocketOf(handle));
}

TcpConnection::TcpConnection(std::uint32_t address, std::uint16_t port) {
    const sockaddr_in remote = TcpAddress(address, port);
    const SOCKET connecting = NewSocket();
    if (connecting == INVALID_SOCKET) {
        return;
    }
    if (connect(connecting, reinterpret_cast<const sockaddr*>(&remote), sizeof remote) != 0) {
        closesocket(connecting);
        return;
    }
    handle = static_cast<TcpHandle>(connecting);
    SetUp(connecting);
}

TcpConnection::~TcpConnection() {
    if (IsOpen()) {
        closesocket(SocketOf(handle));
    }
}

void TcpConnection::LimitSendBuffer(std::size_t bytes) {
    SetNumber(SocketOf(handle), SOL_SOCKET, SO_SNDBUF, bytes);
}

void TcpConnection::LimitReceiveBuffer(std::size_t bytes) {
    SetNumber(SocketOf(handle), SOL_SOCKET, SO_RCVBUF, bytes);
}

std::optional<std::size_t> TcpConnection::Receive(void* data, std::size_t size,
                                                  std::uint32_t timeoutMs) {
    if (!WaitFor(SocketOf(handle), false, timeoutMs, isShutDown)) {
        return std::nullopt;
    }
    const int most = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
    const int count = recv(SocketOf(handle), static_cast<char*>(data), most, 0);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

std::optional<std::size_t> TcpConnection::Send(const void* data, std::size_t size,
                                               std::uint32_t timeoutMs) {
    if (!WaitFor(SocketOf(handle), true, timeoutMs, isShutDown)) {
        return std::nullopt;
    }
    const int most = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
    const int count = send(SocketOf(handle), static_cast<const char*>(data), most, 0);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

bool TcpConnection::HasEnded() const {
    char next = 0;
    const int count = recv(SocketOf(handle), &next, 1, MSG_PEEK);
    return count == 0 || (count < 0 && WSAGetLastError() != WSAEWOULDBLOCK);
}

void TcpConnection::EndSending() {
    shutdown(SocketOf(handle), SD_SEND);
}

void TcpConnection::Shutdown() {
    isShutDown = true;
    shutdown(SocketOf(handle), SD_BOTH);
}

} // namespace platform
