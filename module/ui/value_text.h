// value_text.h - numbers as the value editors show and read them
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pyxen {

/// As "%I64d" writes it.
std::string FormatInteger(std::int64_t value);
/// As "%.6f" writes it, whatever the process's locale.
std::string FormatFloat(double value);
/// As "%I64d" reads it: blanks, a sign and digits; whatever follows is left alone. A number that
/// is too large for 64 bits gives the nearest one. Empty when no number was read.
std::optional<std::int64_t> ParseInteger(std::string_view text);
/// Reads the number at the start of the text's leading run of the characters "0123456789.-", as
/// "%lf" reads it, whatever the process's locale. Empty when no number was read.
std::optional<double> ParseFloat(std::string_view text);
/// Below `min` gives `min`, above `max` gives `max`, `min` winning when they are the wrong way
/// round and the value is below both.
template <typename Number>
Number ClampValue(Number value, Number min, Number max) {
    return value < min ? min : value > max ? max : value;
}

} // namespace pyxen
