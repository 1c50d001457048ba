// http_head.h - the head of an HTTP request, read strictly
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

inline constexpr std::size_t kLongestHead = 16384;
inline constexpr std::size_t kLongestTarget = 2048;
inline constexpr std::uint64_t kLongestBody = 1 << 20;

/// Why a request is refused.
struct HttpRefusal {
    int status = 400;
    std::string reason;
};

/// What is wanted, and the headers that count; those that were not sent are empty.
struct HttpHead {
    std::string method; ///< GET, HEAD, POST or PUT
    std::string path;   ///< decoded; begins with a slash
    std::string query;  ///< as sent, without the question mark
    std::string host;
    std::string origin;
    std::string fetchSite; ///< "Sec-Fetch-Site"
    std::string authorization;
    std::string cookie;
    std::string contentType;
    std::uint64_t contentLength = 0;
    bool isLast = false; ///< the connection ends with the answer

    bool Changes() const { return method == "POST" || method == "PUT"; }
};

/// Reads a head that ends with its empty line. Whatever is unusual is refused: what two readers may
/// understand differently, what this server has no use for, and what is too long.
std::optional<HttpRefusal> ReadHttpHead(std::string_view text, HttpHead& head);

/// Decodes %XX, in queries also "+". nullopt for bad escapes and for control characters.
std::optional<std::string> DecodePercent(std::string_view text, bool isQuery);
