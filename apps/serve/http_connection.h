// http_connection.h - reads the requests of one connection, with limits of time
#pragma once

#include "apps/serve/http_head.h"
#include "apps/serve/http_server.h"
#include "platform/tcp_socket.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

enum class HeadWait {
    kRead,
    kRefused, ///< there is a head, and it is refused
    kEnded    ///< the other side has ended, failed, or was too slow
};

/// The bytes of a connection. One thread; End on any.
class HttpConnection {
public:
    HttpConnection(platform::TcpHandle handle, const HttpLimits& connectionLimits);

    /// Waits for the head of the next request.
    HeadWait AwaitHead(HttpHead& head, HttpRefusal& refusal);
    /// Reads the body that the head has announced; false when it does not come in time.
    bool ReadBody(std::uint64_t length, std::string& body);
    /// Sends all bytes; false when they are not read in time.
    bool Send(const void* data, std::size_t size);
    /// Sends what has no other answer, and ends in a way that lets the other side read it.
    void SendAndEnd(const HttpAnswer& answer);
    /// Sends it without waiting, and ends.
    void Refuse(const HttpAnswer& answer);
    bool HasEnded() const { return socket.HasEnded(); }
    /// Calls that wait return. Any thread.
    void End() { socket.Shutdown(); }

private:
    bool Receive(std::uint64_t deadline);

    platform::TcpConnection socket;
    const HttpLimits limits;
    std::string received; // and not used yet
};
