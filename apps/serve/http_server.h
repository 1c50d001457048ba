// http_server.h - serves HTTP on an address of this machine
#pragma once

#include "apps/serve/http_head.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct HttpRequest {
    HttpHead head;
    std::string body;
};

/// Sends bytes; false when the connection has failed or its reader is too slow.
using HttpSink = std::function<bool(const void* data, std::size_t size)>;

/// An answer that is sent part by part, on the thread of its connection.
class IHttpStream {
public:
    virtual ~IHttpStream() = default;
    /// Sends what is there, waiting for it about a second at most. False at the end.
    virtual bool SendNext(const HttpSink& sink) = 0;
};

struct HttpAnswer {
    int status = 200;
    std::string type = "application/json";
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    std::unique_ptr<IHttpStream> stream; ///< in place of the body
    std::uint64_t streamBytes = 0;       ///< its length; 0: until it ends
};

/// {"schema":1,"error":reason}.
HttpAnswer ErrorAnswer(int status, const std::string& reason);
/// A JSON text.
HttpAnswer JsonAnswer(std::string json);

/// Called on the threads of connections, for several at the same time. What is thrown becomes an
/// answer with status 500.
class IHttpHandler {
public:
    virtual ~IHttpHandler() = default;
    /// Before the body is read: the answer of a request that is refused.
    virtual std::optional<HttpAnswer> Refuse(const HttpHead& head) = 0;
    virtual HttpAnswer Handle(const HttpRequest& request) = 0;
    /// Added to all answers.
    virtual std::vector<std::pair<std::string, std::string>> CommonHeaders() const = 0;
};

/// What keeps one client from disturbing others.
struct HttpLimits {
    std::size_t connections = 96;          ///< each has a thread
    std::uint32_t idleMs = 15000;          ///< between two requests of a connection
    std::uint32_t headMs = 10000;          ///< until the head of a request is whole
    std::uint32_t bodyMs = 10000;          ///< until its body is
    std::uint32_t sendMs = 10000;          ///< until a part of an answer is read
    std::uint32_t requestsPerSecond = 500; ///< of all connections; twice as many in a burst
};

struct HttpCounts {
    std::uint64_t connections = 0; ///< open now
    std::uint64_t requests = 0;    ///< that were read
    std::uint64_t refused = 0;     ///< connections that came while all were busy
};

/// When all connections are taken, the one that waits longest for a request makes room for a new
/// one; when all are busy, the new one is refused.
class HttpServer {
public:
    HttpServer(IHttpHandler& requestHandler, HttpLimits connectionLimits = {});
    /// Stops.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Listens at an IPv4 address, 0 for all of this machine, and a port, 0 for a free one, which
    /// the handler may want to know: nothing is served before Start. Throws CommandFailure.
    void Listen(std::uint32_t address, std::uint16_t port);
    std::uint16_t Port() const;
    /// Serves on threads of its own. Throws CommandFailure.
    void Start();
    /// Ends all connections, and waits for their threads.
    void Stop();
    /// Any thread.
    HttpCounts Counts() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl;
};
