// http_head.cpp - the head of an HTTP request, read strictly
#include "apps/serve/http_head.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kMostLines = 64;

/// A header that counts, and where it is kept. Sent twice, two readers may take different ones.
struct KnownHeader {
    std::string_view name;
    std::string HttpHead::*member;
};

constexpr std::array<KnownHeader, 6> kKnownHeaders = {{
    {"host", &HttpHead::host},
    {"origin", &HttpHead::origin},
    {"sec-fetch-site", &HttpHead::fetchSite},
    {"authorization", &HttpHead::authorization},
    {"cookie", &HttpHead::cookie},
    {"content-type", &HttpHead::contentType},
}};

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool IsTokenCharacter(unsigned char c) {
    return std::isalnum(c) != 0 ||
           std::string_view("!#$%&'*+-.^_`|~").find(static_cast<char>(c)) != std::string_view::npos;
}

bool IsControl(unsigned char c) {
    return c < 0x20 || c == 0x7F;
}

std::string_view Trim(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

int HexDigit(char c) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const char upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::size_t digit = kDigits.find(upper);
    return digit == std::string_view::npos ? -1 : static_cast<int>(digit);
}

class HeadReader {
public:
    HeadReader(std::string_view wholeText, HttpHead& headToFill)
        : rest(wholeText), head(headToFill) {}

    std::optional<HttpRefusal> Read() {
        std::string_view line;
        if (!NextLine(line)) {
            return HttpRefusal{400, "the request has no line"};
        }
        if (auto refusal = ReadRequestLine(line)) {
            return refusal;
        }
        for (std::size_t lines = 0; NextLine(line); ++lines) {
            if (line.empty()) {
                return rest.empty() ? CheckWhole()
                                    : HttpRefusal{400, "there is text behind the head"};
            }
            if (lines == kMostLines) {
                return HttpRefusal{431, "the request has more than 64 headers"};
            }
            if (auto refusal = ReadHeader(line)) {
                return refusal;
            }
        }
        return HttpRefusal{400, "the head of the request has no end"};
    }

private:
    bool NextLine(std::string_view& line) {
        const std::size_t end = rest.find(kLineEnd);
        if (end == std::string_view::npos) {
            return false;
        }
        line = rest.substr(0, end);
        rest.remove_prefix(end + kLineEnd.size());
        return true;
    }

    std::optional<HttpRefusal> ReadRequestLine(std::string_view line) {
        const std::size_t first = line.find(' ');
        const std::size_t last = line.rfind(' ');
        if (first == std::string_view::npos || first == last ||
            line.substr(first + 1, last - first - 1).find(' ') != std::string_view::npos) {
            return HttpRefusal{400, "the first line is not METHOD TARGET VERSION"};
        }
        const std::string_view version = line.substr(last + 1);
        if (version != "HTTP/1.1" && version != "HTTP/1.0") {
            return HttpRefusal{505, "only HTTP/1.1 and HTTP/1.0 are served"};
        }
        isOld = version == "HTTP/1.0";
        head.isLast = isOld;
        head.method = line.substr(0, first);
        if (head.method != "GET" && head.method != "HEAD" && !head.Changes()) {
            return HttpRefusal{405, "the methods are GET, HEAD, POST and PUT"};
        }
        return ReadTarget(line.substr(first + 1, last - first - 1));
    }

    std::optional<HttpRefusal> ReadTarget(std::string_view target) {
        if (target.size() > kLongestTarget) {
            return HttpRefusal{414, "the target is longer than 2048 bytes"};
        }
        if (target.empty() || target.front() != '/' ||
            std::any_of(target.begin(), target.end(), [](char c) {
                const auto byte = static_cast<unsigned char>(c);
                return IsControl(byte) || byte > 0x7E || c == '#';
            })) {
            return HttpRefusal{400, "the target is no path of this server"};
        }
        const std::size_t query = std::min(target.find('?'), target.size());
        const auto path = DecodePercent(target.substr(0, query), false);
        if (!path) {
            return HttpRefusal{400, "the target has an escape that cannot be decoded"};
        }
        head.path = *path;
        head.query = target.substr(std::min(query + 1, target.size()));
        return std::nullopt;
    }

    std::optional<HttpRefusal> ReadHeader(std::string_view line) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || colon == 0 ||
            !std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(colon),
                         [](char c) { return IsTokenCharacter(static_cast<unsigned char>(c)); })) {
            return HttpRefusal{400, "a header is not NAME: VALUE"};
        }
        const std::string_view value = Trim(line.substr(colon + 1));
        if (std::any_of(value.begin(), value.end(), [](char c) {
                return c != '\t' && IsControl(static_cast<unsigned char>(c));
            })) {
            return HttpRefusal{400, "a header has control characters"};
        }
        return TakeHeader(LowerCase(line.substr(0, colon)), value);
    }

    std::optional<HttpRefusal> TakeHeader(const std::string& name, std::string_view value) {
        for (const auto& [known, member] : kKnownHeaders) {
            if (name == known) {
                if (!(head.*member).empty()) {
                    return HttpRefusal{400, "the header " + name + " is there twice"};
                }
                head.*member = value;
                return std::nullopt;
            }
        }
        if (name == "content-length") {
            return TakeLength(value);
        }
        if (name == "transfer-encoding") {
            return HttpRefusal{411, "a body has to say its length in Content-Length"};
        }
        if (name == "content-encoding" && LowerCase(value) != "identity") {
            return HttpRefusal{415, "a body must not be compressed"};
        }
        if (name == "connection") {
            const std::string wish = LowerCase(value);
            head.isLast = wish.find("close") != std::string::npos ||
                          (isOld && wish.find("keep-alive") == std::string::npos);
        }
        return std::nullopt;
    }

    std::optional<HttpRefusal> TakeLength(std::string_view value) {
        if (hasLength) {
            return HttpRefusal{400, "the header content-length is there twice"};
        }
        hasLength = true;
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), head.contentLength);
        if (error == std::errc::result_out_of_range || head.contentLength > kLongestBody) {
            return HttpRefusal{413, "a body has at most 1048576 bytes"};
        }
        if (error != std::errc() || end != value.data() + value.size()) {
            return HttpRefusal{400, "Content-Length is no number"};
        }
        return std::nullopt;
    }

    std::optional<HttpRefusal> CheckWhole() const {
        if (head.host.empty()) {
            return HttpRefusal{400, "the header Host is missing"};
        }
        if (head.Changes() && !hasLength) {
            return HttpRefusal{411, "a body has to say its length in Content-Length"};
        }
        if (!head.Changes() && head.contentLength != 0) {
            return HttpRefusal{400, head.method + " takes no body"};
        }
        return std::nullopt;
    }

    std::string_view rest;
    HttpHead& head;
    bool isOld = false;
    bool hasLength = false;
};

} // namespace

std::optional<HttpRefusal> ReadHttpHead(std::string_view text, HttpHead& head) {
    if (text.size() > kLongestHead) {
        return HttpRefusal{431, "the head of the request is longer than 16384 bytes"};
    }
    return HeadReader(text, head).Read();
}

std::optional<std::string> DecodePercent(std::string_view text, bool isQuery) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            if (text.size() - i < 3) {
                return std::nullopt;
            }
            const int high = HexDigit(text[i + 1]);
            const int low = HexDigit(text[i + 2]);
            if (high < 0 || low < 0) {
                return std::nullopt;
            }
            c = static_cast<char>(high * 16 + low);
            i += 2;
        } else if (c == '+' && isQuery) {
            c = ' ';
        }
        if (IsControl(static_cast<unsigned char>(c))) {
            return std::nullopt;
        }
        decoded += c;
    }
    return decoded;
}
