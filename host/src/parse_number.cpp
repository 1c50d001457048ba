// parse_number.cpp - parses numbers in ini files and dialogs
#include "parse_number.h"

#include <charconv>

namespace {

struct Number {
    std::uint32_t magnitude;
    bool negative;
    bool hasSign;
    bool hexadecimal;
};

std::optional<Number> Parse(std::string_view text) {
    Number number{};
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        number.hasSign = true;
        number.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        number.hexadecimal = true;
        text.remove_prefix(2);
    }
    const char* const end = text.data() + text.size();
    const std::from_chars_result result =
        std::from_chars(text.data(), end, number.magnitude, number.hexadecimal ? 16 : 10);
    if (text.empty() || result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

} // namespace

std::optional<std::int32_t> ParseInt32(std::string_view text) {
    const std::optional<Number> number = Parse(text);
    if (!number) {
        return std::nullopt;
    }
    if (number->hexadecimal && !number->hasSign) {
        return static_cast<std::int32_t>(number->magnitude);
    }
    const std::int64_t value = number->negative ? -static_cast<std::int64_t>(number->magnitude)
                                                : static_cast<std::int64_t>(number->magnitude);
    if (value < INT32_MIN || value > INT32_MAX) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value);
}

std::optional<std::uint32_t> ParseUint32(std::string_view text) {
    const std::optional<Number> number = Parse(text);
    if (!number || number->negative) {
        return std::nullopt;
    }
    return number->magnitude;
}
