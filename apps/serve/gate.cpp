// gate.cpp - who may ask for what
#include "apps/serve/gate.h"

#include "apps/doctor/ip_text.h"
#include "apps/serve/query.h"

#include <random>
#include <string_view>

namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr std::string_view kBearer = "Bearer ";

HttpAnswer Forbidden(const std::string& reason) {
    return ErrorAnswer(403, reason);
}

/// The value of a cookie; empty without it.
std::string CookieValue(std::string_view cookies, std::string_view name) {
    while (!cookies.empty()) {
        const std::size_t end = std::min(cookies.find(';'), cookies.size());
        std::string_view cookie = cookies.substr(0, end);
        cookie.remove_prefix(std::min(cookie.find_first_not_of(' '), cookie.size()));
        if (cookie.size() > name.size() && cookie.starts_with(name) && cookie[name.size()] == '=') {
            return std::string(cookie.substr(name.size() + 1));
        }
        cookies.remove_prefix(std::min(end + 1, cookies.size()));
    }
    return {};
}

} // namespace

std::string Gate::Url() const {
    const std::uint32_t shown = settings.address == 0 ? kLoopback : settings.address;
    return "http://" + IpText(shown) + ":" + std::to_string(settings.port) + "/" +
           (settings.token.empty() ? "" : "?token=" + settings.token);
}

bool Gate::IsOwnHost(const std::string& host) const {
    const std::string port = ":" + std::to_string(settings.port);
    const std::size_t colon = host.rfind(':');
    // Without a port it is that of HTTP.
    const std::string name = host.substr(0, colon);
    const std::string hostPort = colon == std::string::npos ? ":80" : host.substr(colon);
    if (hostPort != port) {
        return false;
    }
    const auto number = ParseIp(name);
    if (settings.address == 0) {
        // By a number, or as this computer: a name could be one that another site has given it.
        return number.has_value() || name == "localhost";
    }
    return number == settings.address || (settings.address == kLoopback && name == "localhost");
}

std::string Gate::CookieName() const {
    return "mivora-" + std::to_string(settings.port);
}

bool Gate::HasToken(const HttpHead& head) const {
    if (head.authorization.starts_with(kBearer) &&
        IsSameSecret(head.authorization.substr(kBearer.size()), settings.token)) {
        return true;
    }
    return IsSameSecret(CookieValue(head.cookie, CookieName()), settings.token);
}

std::optional<HttpAnswer> Gate::Refuse(const HttpHead& head) const {
    if (!IsOwnHost(head.host)) {
        return Forbidden("the header Host names another server than this one");
    }
    if (!head.origin.empty() && head.origin != "http://" + head.host) {
        return Forbidden("the request comes from the page of another server");
    }
    const bool isPage = head.path == "/" && !head.Changes();
    const bool isForeign = head.fetchSite == "cross-site" || head.fetchSite == "same-site";
    if (isForeign && !isPage) {
        return Forbidden("the request comes from the page of another server");
    }
    if (settings.token.empty()) {
        return std::nullopt;
    }
    if (isPage && head.query.starts_with("token=") &&
        IsSameSecret(head.query.substr(std::string_view("token=").size()), settings.token)) {
        // From now on the browser sends it by itself, and the address does not show it any more.
        HttpAnswer answer;
        answer.status = 303;
        answer.type = "text/plain";
        answer.headers = {{"Location", "/"},
                          {"Set-Cookie", CookieName() + "=" + settings.token +
                                             "; Path=/; HttpOnly; SameSite=Strict"}};
        return answer;
    }
    if (HasToken(head)) {
        return std::nullopt;
    }
    HttpAnswer answer =
        ErrorAnswer(401, "the token is missing or wrong: open the address that the "
                         "program has printed, or send it as Authorization: Bearer");
    answer.headers.emplace_back("WWW-Authenticate", "Bearer");
    return answer;
}

std::string NewToken() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> digit(0, kDigits.size() - 1);
    std::string token;
    for (int i = 0; i < 32; ++i) {
        token += kDigits[digit(random)];
    }
    return token;
}

bool IsSameSecret(const std::string& left, const std::string& right) {
    unsigned difference = left.size() == right.size() ? 0 : 1;
    for (std::size_t i = 0; i < left.size(); ++i) {
        const char other = right.empty() ? '\0' : right[i % right.size()];
        difference |= static_cast<unsigned char>(left[i]) ^ static_cast<unsigned char>(other);
    }
    return difference == 0;
}

std::vector<std::pair<std::string, std::string>> SecurityHeaders() {
    return {{"Content-Security-Policy",
             "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; "
             "connect-src 'self'; manifest-src 'self'; base-uri 'none'; form-action 'none'; "
             "frame-ancestors 'none'"},
            {"X-Content-Type-Options", "nosniff"},
            {"X-Frame-Options", "DENY"},
            {"Referrer-Policy", "no-referrer"},
            {"Cross-Origin-Resource-Policy", "same-origin"},
            {"Cross-Origin-Opener-Policy", "same-origin"},
            {"Cache-Control", "no-store"}};
}
