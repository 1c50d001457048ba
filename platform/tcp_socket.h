// tcp_socket.h - connections over IPv4
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// A socket of the system, for libraries that take one.
using TcpHandle = std::intptr_t;
inline constexpr TcpHandle kNoTcpHandle = -1;

/// Listens at an address of this machine, 0 for all of them, and a port, 0 for a free one, which no
/// other program may share; 127.0.0.1 is 0x7F000001. Whoever takes the handle closes it. On failure
/// returns kNoTcpHandle and stores the system's message in `error`.
TcpHandle ListenTcp(std::uint32_t address, std::uint16_t port, std::string& error);
/// The port that a socket is bound to; 0 when it is none.
std::uint16_t TcpPort(TcpHandle handle);

/// A connection. The destructor closes it. One thread at a time, except where noted.
class TcpConnection {
public:
    /// Takes a socket that is connected.
    explicit TcpConnection(TcpHandle connectedHandle);
    /// Connects; see IsOpen.
    TcpConnection(std::uint32_t address, std::uint16_t port);
    ~TcpConnection();
    TcpConnection(const TcpConnection&) = delete;
    TcpConnection& operator=(const TcpConnection&) = delete;

    bool IsOpen() const { return handle != kNoTcpHandle; }
    TcpHandle Handle() const { return handle; }
    /// Limits what the system keeps of data that the other side does not read.
    void LimitSendBuffer(std::size_t bytes);
    /// The same for data that this side does not read.
    void LimitReceiveBuffer(std::size_t bytes);

    /// Waits up to `timeoutMs` milliseconds for data; returns how many bytes came, 0 at the end of
    /// the data. nullopt when the time is over or the connection has failed.
    std::optional<std::size_t> Receive(void* data, std::size_t size, std::uint32_t timeoutMs);
    /// Waits up to `timeoutMs` milliseconds until at least one byte can be sent; returns how many
    /// were. nullopt when the time is over or the connection has failed.
    std::optional<std::size_t> Send(const void* data, std::size_t size, std::uint32_t timeoutMs);
    /// True when the other side has ended or the connection has failed; data that came before is
    /// not lost by asking.
    bool HasEnded() const;

    /// Nothing more will be sent: the other side reads the end.
    void EndSending();
    /// Ends the connection in both directions: calls that wait return. Any thread, while the object
    /// exists.
    void Shutdown();

private:
    TcpHandle handle = kNoTcpHandle;
    std::atomic<bool> isShutDown{false}; // for systems whose waits do not notice it
};

} // namespace platform
