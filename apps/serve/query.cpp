// query.cpp - the parameters of a request
#include "apps/serve/query.h"

#include "apps/common/parse_number.h"
#include "apps/serve/http_head.h"
#include "apps/serve/request_failure.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace {

std::string ShortNumber(double number) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.6g", number);
    return text.data();
}

std::string Part(std::string_view text) {
    const auto decoded = DecodePercent(text, true);
    if (!decoded) {
        throw RequestFailure(kBadRequest, "the query has an escape that cannot be decoded");
    }
    return *decoded;
}

} // namespace

Query::Query(std::string_view text, const std::vector<std::string>& names) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('&'), text.size());
        const std::string_view pair = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t equals = std::min(pair.find('='), pair.size());
        const std::string name = Part(pair.substr(0, equals));
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            throw RequestFailure(kBadRequest, "the query has a parameter \"" + name +
                                                  "\", which is not taken here");
        }
        if (!values.emplace(name, Part(pair.substr(std::min(equals + 1, pair.size())))).second) {
            throw RequestFailure(kBadRequest, "the query has \"" + name + "\" twice");
        }
    }
}

const std::string& Query::Text(const std::string& name) const {
    const auto found = values.find(name);
    if (found == values.end()) {
        throw RequestFailure(kBadRequest, "the query lacks \"" + name + "\"");
    }
    return found->second;
}

std::uint32_t Query::Number(const std::string& name, std::uint32_t least,
                            std::uint32_t most) const {
    const auto number = ParseUnsigned(Text(name));
    if (!number || *number < least || *number > most) {
        const std::string limits =
            most == std::numeric_limits<std::uint32_t>::max()
                ? "a whole number"
                : "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
        throw RequestFailure(kBadRequest, name + " takes " + limits + ", not " + Text(name));
    }
    return static_cast<std::uint32_t>(*number);
}

std::uint32_t Query::Number(const std::string& name, std::uint32_t least, std::uint32_t most,
                            std::uint32_t missing) const {
    return Has(name) ? Number(name, least, most) : missing;
}

double Query::Real(const std::string& name, double least, double most, double missing) const {
    if (!Has(name)) {
        return missing;
    }
    const auto number = ParseDouble(Text(name));
    if (!number || !(*number >= least && *number <= most)) {
        throw RequestFailure(kBadRequest, name + " takes a number from " + ShortNumber(least) +
                                              " to " + ShortNumber(most) + ", not " + Text(name));
    }
    return *number;
}
