// http_connection.cpp - reads the requests of one connection, with limits of time
#include "apps/serve/http_connection.h"

#include "platform/clock.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr std::uint64_t kNsPerMs = 1000000;
/// Enough for two previews of a usual size: what a slow reader is behind stays small.
constexpr std::size_t kSendBufferBytes = 128 * 1024;
/// After a refusal what the other side still sends is read for a moment: an end in the midst of it
/// would take the answer away.
constexpr std::uint32_t kDrainMs = 500;
constexpr std::size_t kMostDrained = 4 << 20;

std::uint64_t DeadlineIn(std::uint32_t milliseconds) {
    return platform::MonotonicNanoseconds() + milliseconds * kNsPerMs;
}

std::uint32_t MsUntil(std::uint64_t deadline) {
    const std::uint64_t now = platform::MonotonicNanoseconds();
    return deadline <= now ? 0 : static_cast<std::uint32_t>((deadline - now) / kNsPerMs + 1);
}

std::string LastAnswerText(const HttpAnswer& answer) {
    std::string text =
        "HTTP/1.1 " + std::to_string(answer.status) + " Refused\r\nContent-Type: " + answer.type +
        "\r\nContent-Length: " + std::to_string(answer.body.size()) + "\r\nConnection: close\r\n";
    for (const auto& [name, value] : answer.headers) {
        text += name + ": " + value + "\r\n";
    }
    return text + "\r\n" + answer.body;
}

} // namespace

HttpConnection::HttpConnection(platform::TcpHandle handle, const HttpLimits& connectionLimits)
    : socket(handle), limits(connectionLimits) {
    socket.LimitSendBuffer(kSendBufferBytes);
}

bool HttpConnection::Receive(std::uint64_t deadline) {
    std::array<char, 8192> part;
    const std::uint32_t timeoutMs = MsUntil(deadline);
    const auto count =
        timeoutMs == 0 ? std::nullopt : socket.Receive(part.data(), part.size(), timeoutMs);
    if (!count || *count == 0) {
        return false;
    }
    received.append(part.data(), *count);
    return true;
}

HeadWait HttpConnection::AwaitHead(HttpHead& head, HttpRefusal& refusal) {
    if (received.empty() && !Receive(DeadlineIn(limits.idleMs))) {
        return HeadWait::kEnded;
    }
    const std::uint64_t deadline = DeadlineIn(limits.headMs);
    std::size_t searched = 0;
    std::size_t end = std::string::npos;
    while ((end = received.find(kHeadEnd, searched)) == std::string::npos) {
        if (received.size() > kLongestHead) {
            refusal = {431, "the head of the request is longer than 16384 bytes"};
            return HeadWait::kRefused;
        }
        searched = received.size() - std::min(received.size(), kHeadEnd.size() - 1);
        if (!Receive(deadline)) {
            return HeadWait::kEnded;
        }
    }
    const std::string text = received.substr(0, end + kHeadEnd.size());
    received.erase(0, text.size());
    head = HttpHead();
    if (const auto problem = ReadHttpHead(text, head)) {
        refusal = *problem;
        return HeadWait::kRefused;
    }
    return HeadWait::kRead;
}

bool HttpConnection::ReadBody(std::uint64_t length, std::string& body) {
    const std::uint64_t deadline = DeadlineIn(limits.bodyMs);
    while (received.size() < length) {
        if (!Receive(deadline)) {
            return false;
        }
    }
    body = received.substr(0, static_cast<std::size_t>(length));
    received.erase(0, body.size());
    return true;
}

bool HttpConnection::Send(const void* data, std::size_t size) {
    const std::uint64_t deadline = DeadlineIn(limits.sendMs);
    const auto* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const std::uint32_t timeoutMs = MsUntil(deadline);
        const auto count = timeoutMs == 0 ? std::nullopt : socket.Send(bytes, size, timeoutMs);
        if (!count) {
            return false;
        }
        bytes += *count;
        size -= *count;
    }
    return true;
}

void HttpConnection::Refuse(const HttpAnswer& answer) {
    const std::string text = LastAnswerText(answer);
    socket.Send(text.data(), text.size(), 0);
    socket.EndSending();
}

void HttpConnection::SendAndEnd(const HttpAnswer& answer) {
    const std::string text = LastAnswerText(answer);
    if (!Send(text.data(), text.size())) {
        return;
    }
    socket.EndSending();
    const std::uint64_t deadline = DeadlineIn(kDrainMs);
    for (std::size_t drained = received.size(); drained < kMostDrained;) {
        received.clear();
        if (!Receive(deadline)) {
            return;
        }
        drained += received.size();
    }
}
