// http_client.cpp - a small client of HTTP for tests
#include "tests/apps/serve/http_client.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace {

constexpr std::uint32_t kClientHost = 0x7F000001;
constexpr std::uint32_t kClientPatienceMs = 60000;

} // namespace

HttpClient::HttpClient(std::uint16_t serverPort)
    : port(serverPort), socket(kClientHost, serverPort) {}

ClientAnswer HttpClient::Ask(const std::string& method, const std::string& target,
                             const std::string& headers, const std::string& body) {
    const bool isChange = method == "POST" || method == "PUT";
    const std::string host = headers.find("Host:") == std::string::npos
                                 ? "Host: 127.0.0.1:" + std::to_string(port) + "\r\n"
                                 : "";
    const std::string length =
        isChange ? "Content-Length: " + std::to_string(body.size()) + "\r\n" : "";
    if (!SendBytes(method + " " + target + " HTTP/1.1\r\n" + host + headers + length + "\r\n" +
                   body)) {
        return {};
    }
    return ReadAnswer(method != "HEAD");
}

ClientAnswer HttpClient::Send(const std::string& method, const std::string& target,
                              const std::string& json) {
    return Ask(method, target, "Content-Type: application/json\r\n", json);
}

bool HttpClient::SendBytes(const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto count = socket.Send(bytes.data() + sent, bytes.size() - sent, kClientPatienceMs);
        if (!count) {
            return false;
        }
        sent += *count;
    }
    return true;
}

bool HttpClient::ReadMore() {
    std::array<char, 16384> part;
    const auto count = socket.Receive(part.data(), part.size(), kClientPatienceMs);
    if (!count || *count == 0) {
        return false;
    }
    received.append(part.data(), *count);
    return true;
}

std::string HttpClient::ReadUntil(const std::string& text) {
    std::size_t end = 0;
    while ((end = received.find(text)) == std::string::npos) {
        if (!ReadMore()) {
            return {};
        }
    }
    const std::string read = received.substr(0, end + text.size());
    received.erase(0, read.size());
    return read;
}

std::string HttpClient::ReadBytes(std::size_t count) {
    while (received.size() < count) {
        if (!ReadMore()) {
            return {};
        }
    }
    const std::string read = received.substr(0, count);
    received.erase(0, count);
    return read;
}

bool HttpClient::ReadsEnd() {
    return received.empty() && !ReadMore();
}

ClientAnswer HttpClient::ReadAnswer(bool hasBody) {
    ClientAnswer answer;
    const std::string head = ReadUntil("\r\n\r\n");
    if (!head.starts_with("HTTP/1.1 ")) {
        return answer;
    }
    answer.status = std::stoi(head.substr(9, 3));
    for (std::size_t at = head.find("\r\n") + 2; at < head.size() - 2;) {
        const std::size_t end = head.find("\r\n", at);
        const std::size_t colon = head.find(": ", at);
        std::string name = head.substr(at, colon - at);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        answer.headers[name] = head.substr(colon + 2, end - colon - 2);
        at = end + 2;
    }
    if (hasBody && answer.headers.count("content-length") != 0) {
        answer.body = ReadBytes(std::stoul(answer.headers["content-length"]));
    }
    return answer;
}
