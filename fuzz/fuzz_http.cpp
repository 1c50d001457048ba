// fuzz_http.cpp - heads, queries and JSON bodies of HTTP requests
#include "apps/serve/http_head.h"
#include "apps/serve/json_body.h"
#include "apps/serve/query.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Require(bool isSo) {
    if (!isSo) {
        std::abort();
    }
}

bool IsPlain(const std::string& text) {
    return std::none_of(text.begin(), text.end(),
                        [](unsigned char c) { return (c < 0x20 && c != '\t') || c == 0x7F; });
}

/// As %XX, all of it.
std::string Escaped(const std::string& text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        escaped += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return escaped;
}

void TryHead(std::string_view text) {
    HttpHead head;
    if (const auto refusal = ReadHttpHead(text, head)) {
        Require(refusal->status >= 400 && refusal->status < 600 && !refusal->reason.empty());
        return;
    }
    Require(head.path.starts_with('/') && head.path.size() <= kLongestTarget);
    Require(!head.host.empty() && head.contentLength <= kLongestBody);
    Require(head.Changes() || head.contentLength == 0);
    for (const std::string& value : {head.path, head.query, head.host, head.origin, head.fetchSite,
                                     head.authorization, head.cookie, head.contentType}) {
        Require(IsPlain(value));
    }
    Require(DecodePercent(Escaped(head.path), false) == head.path);
    std::map<std::string, std::string> words;
    if (MatchRoute("/a/{x}/{y}", head.path, words)) {
        Require(words.size() == 2 && head.path == "/a/" + words["x"] + "/" + words["y"]);
    }
}

void TryQuery(std::string_view text) {
    try {
        const Query query(text, {"x", "rate", "name"});
        Require(!query.Has("name") || IsPlain(query.Text("name")));
        const std::uint32_t number = query.Number("x", 3, 1000, 3);
        Require(number >= 3 && number <= 1000);
        const double rate = query.Real("rate", 0.1, 120, 1);
        Require(rate >= 0.1 && rate <= 120);
    } catch (const RequestFailure& failure) {
        Require(failure.Status() == kBadRequest);
    }
}

void TryBody(std::string_view text) {
    try {
        const nlohmann::json body = ParseJsonBody(text, {"value", "name", "frames"});
        Require(body.is_object() && body.size() <= 3);
        Require(nlohmann::json::parse(body.dump()) == body);
        Require(NumberMember(body, "frames", 1, 10) <= 10);
        TextMember(body, "name");
    } catch (const RequestFailure& failure) {
        Require(failure.Status() == kBadRequest);
    }
}

} // namespace

/// The first byte says what the rest is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0]) {
    case 'q':
        TryQuery(text);
        break;
    case 'b':
        TryBody(text);
        break;
    default:
        TryHead(text);
    }
    return 0;
}
