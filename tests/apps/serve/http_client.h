// http_client.h - a small client of HTTP for tests
#pragma once

#include "platform/tcp_socket.h"

#include <cstdint>
#include <map>
#include <string>

/// An answer; status 0 when there was none.
struct ClientAnswer {
    int status = 0;
    std::map<std::string, std::string> headers; ///< names in small letters
    std::string body;
};

/// A connection to a server on this computer. Waits a minute at most.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t serverPort);

    /// Sends a request whose target, headers (each with its line end) and body are as given. The
    /// headers begin with that of the host, unless they name one.
    ClientAnswer Ask(const std::string& method, const std::string& target,
                     const std::string& headers = {}, const std::string& body = {});
    ClientAnswer Get(const std::string& target) { return Ask("GET", target); }
    /// With a body of JSON.
    ClientAnswer Send(const std::string& method, const std::string& target,
                      const std::string& json = "{}");

    bool SendBytes(const std::string& bytes);
    /// Reads an answer, and its body if that has a length.
    ClientAnswer ReadAnswer(bool hasBody = true);
    /// Reads until what has been read since the last call contains the text, and returns it up to
    /// the text's end; empty when the connection ends before.
    std::string ReadUntil(const std::string& text);
    std::string ReadBytes(std::size_t count);
    /// True when the server ends the connection before it sends anything else.
    bool ReadsEnd();
    platform::TcpConnection& Socket() { return socket; }

private:
    bool ReadMore();

    const std::uint16_t port;
    platform::TcpConnection socket;
    std::string received;
};
