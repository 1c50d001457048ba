// format_float.cpp - floating-point conversions of the log formatter, independent of the locale
#include "text_output.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace {

// No double has more decimals than this; any further digits are zeros.
constexpr int kMaxDecimals = 1074;
constexpr int kDefaultPrecision = 6;

// Up to 309 digits before the point, the point, the decimals, and space for an exponent.
using DigitBuffer = char[kMaxDecimals + 330];

std::string_view Convert(DigitBuffer& buffer, double value, std::chars_format format,
                         int decimals) {
    const std::to_chars_result result =
        std::to_chars(buffer, buffer + sizeof buffer, value, format, decimals);
    return {buffer, static_cast<std::size_t>(result.ptr - buffer)};
}

int ExponentOf(std::string_view scientific) {
    const std::size_t mark = scientific.find('e');
    int exponent = 0;
    // from_chars does not accept a plus sign.
    const std::size_t first = mark + (scientific[mark + 1] == '+' ? 2 : 1);
    std::from_chars(scientific.data() + first, scientific.data() + scientific.size(), exponent);
    return exponent;
}

void StripTrailingZeros(NumberText& number) {
    number.innerZeros = 0;
    if (number.digits.find('.') == std::string_view::npos) {
        return;
    }
    number.digits = number.digits.substr(0, number.digits.find_last_not_of('0') + 1);
    if (number.digits.back() == '.') {
        number.digits.remove_suffix(1);
    }
}

// Fixed or scientific notation with `decimals` decimals. Decimals beyond kMaxDecimals are zeros and
// only counted, in `innerZeros`.
NumberText Notation(DigitBuffer& buffer, double value, bool fixed, int decimals) {
    const int shown = std::min(decimals, kMaxDecimals);
    NumberText number;
    number.digits = Convert(
        buffer, value, fixed ? std::chars_format::fixed : std::chars_format::scientific, shown);
    const std::size_t mark = number.digits.find('e');
    if (mark != std::string_view::npos) {
        number.tail = number.digits.substr(mark);
        number.digits = number.digits.substr(0, mark);
    }
    number.innerZeros = static_cast<std::size_t>(decimals - shown);
    return number;
}

} // namespace

void AppendFloat(TextOutput& output, const FormatSpec& spec, double value) {
    const double magnitude = std::fabs(value);
    const std::string_view sign = std::signbit(value) ? "-" : spec.plus ? "+" : "";
    if (!std::isfinite(value)) {
        NumberText number;
        number.prefix = sign;
        number.digits = std::isnan(value) ? "nan" : "inf";
        AppendNumber(output, spec, number, false);
        return;
    }
    DigitBuffer buffer;
    const int precision = spec.precision < 0 ? kDefaultPrecision : spec.precision;
    NumberText number;
    if (spec.conversion == 'g') {
        const int significant = std::max(precision, 1);
        const int exponent = ExponentOf(Convert(buffer, magnitude, std::chars_format::scientific,
                                                std::min(significant - 1, kMaxDecimals)));
        const bool fixed = exponent >= -4 && exponent < significant;
        const int decimals = fixed ? significant - 1 - exponent : significant - 1;
        number = Notation(buffer, magnitude, fixed, decimals);
        if (!spec.alternate) {
            StripTrailingZeros(number);
        }
    } else {
        number = Notation(buffer, magnitude, spec.conversion == 'f', precision);
    }
    number.prefix = sign;
    char withPoint[400];
    if (spec.alternate && number.digits.find('.') == std::string_view::npos) {
        // Without a point there are no decimals, so the digits fit into `withPoint`.
        const std::size_t length = number.digits.copy(withPoint, sizeof withPoint - 1);
        withPoint[length] = '.';
        number.digits = {withPoint, length + 1};
    }
    AppendNumber(output, spec, number, spec.zero);
}
