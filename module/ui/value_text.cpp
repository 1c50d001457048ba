// value_text.cpp - numbers as the value editors show and read them
#include "ui/value_text.h"

#include <array>
#include <charconv>
#include <limits>

namespace pyxen {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kNumberCharacters = "0123456789.-";

// The reader does not say which way a number without exponent left the range: too large when there
// is a digit other than 0 before the point, else too small to tell from 0.
double OutOfRange(std::string_view number) {
    const bool negative = number.front() == '-';
    const bool large =
        number.substr(0, number.find('.')).find_first_of("123456789") != std::string_view::npos;
    const double size = large ? std::numeric_limits<double>::infinity() : 0.0;
    return negative ? -size : size;
}

} // namespace

std::string FormatInteger(std::int64_t value) {
    return std::to_string(value);
}

std::string FormatFloat(double value) {
    // The largest double has 309 digits before the point.
    std::array<char, 320> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6);
    return std::string(text.data(), end.ptr);
}

std::optional<std::int64_t> ParseInteger(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kWhiteSpace);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view number = text.substr(start);
    if (number.front() == '+') {
        number.remove_prefix(1);
        if (number.starts_with('-')) {
            return std::nullopt;
        }
    }
    std::int64_t value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        return number.front() == '-' ? std::numeric_limits<std::int64_t>::min()
                                     : std::numeric_limits<std::int64_t>::max();
    }
    return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<double> ParseFloat(std::string_view text) {
    const std::string_view number = text.substr(0, text.find_first_not_of(kNumberCharacters));
    double value = 0.0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        return OutOfRange(number);
    }
    return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

} // namespace pyxen
