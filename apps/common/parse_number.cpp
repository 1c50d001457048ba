// parse_number.cpp - parses numbers and truth values typed by the user
#include "apps/common/parse_number.h"

#include "platform/text.h"

#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

std::optional<std::uint64_t> ParseUnsigned(std::string_view text) {
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, base);
    if (result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::int64_t> ParseSigned(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const std::optional<std::uint64_t> magnitude = ParseUnsigned(text);
    constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!magnitude || *magnitude > kMost + (negative ? 1u : 0u)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(negative ? 0 - *magnitude : *magnitude);
}

std::optional<double> ParseDouble(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<bool> ParseTruth(const std::string& text) {
    for (const auto& [word, value] : {std::pair{"true", true},
                                      {"on", true},
                                      {"1", true},
                                      {"false", false},
                                      {"off", false},
                                      {"0", false}}) {
        if (platform::CompareNoCase(text.c_str(), word) == 0) {
            return value;
        }
    }
    return std::nullopt;
}
