// json_body.cpp - the JSON that requests bring
#include "apps/serve/json_body.h"

#include "apps/serve/request_failure.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

constexpr int kDeepest = 32;

/// How deeply arrays and objects are nested; braces within strings do not count.
int NestingOf(std::string_view text) {
    int depth = 0;
    int deepest = 0;
    bool isText = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isText) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                isText = false;
            }
        } else if (c == '"') {
            isText = true;
        } else if (c == '{' || c == '[') {
            deepest = std::max(deepest, ++depth);
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return deepest;
}

} // namespace

nlohmann::json ParseJsonBody(std::string_view text, const std::vector<std::string>& members) {
    if (NestingOf(text) > kDeepest) {
        throw RequestFailure(kBadRequest, "the body is nested more than 32 times");
    }
    nlohmann::json body;
    try {
        body = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw RequestFailure(kBadRequest, "the body is no JSON: byte " +
                                              std::to_string(error.byte) + " is wrong");
    } catch (const nlohmann::json::out_of_range&) {
        throw RequestFailure(kBadRequest, "the body has a number that is too large");
    }
    if (!body.is_object()) {
        throw RequestFailure(kBadRequest, "the body is no JSON object");
    }
    for (const auto& [name, value] : body.items()) {
        if (std::find(members.begin(), members.end(), name) == members.end()) {
            throw RequestFailure(kBadRequest,
                                 "the body has a member \"" + name + "\", which is not taken here");
        }
    }
    return body;
}

std::string TextMember(const nlohmann::json& body, const char* name) {
    const auto found = body.find(name);
    if (found == body.end() || !found->is_string()) {
        throw RequestFailure(kBadRequest, std::string("the body lacks the text \"") + name + "\"");
    }
    return found->get<std::string>();
}

std::uint64_t NumberMember(const nlohmann::json& body, const char* name, std::uint64_t least,
                           std::uint64_t most) {
    const auto found = body.find(name);
    if (found == body.end() || !found->is_number_unsigned()) {
        throw RequestFailure(kBadRequest,
                             std::string("the body lacks the number \"") + name + "\"");
    }
    const auto number = found->get<std::uint64_t>();
    if (number < least || number > most) {
        throw RequestFailure(kBadRequest, std::string(name) + " takes " + std::to_string(least) +
                                              " to " + std::to_string(most) + ", not " +
                                              std::to_string(number));
    }
    return number;
}
