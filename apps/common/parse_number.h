// parse_number.h - parses numbers and truth values typed by the user
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Parses a decimal or 0x hexadecimal number and nothing else. nullopt if the text is not a number
/// or the number is out of range.
std::optional<std::uint64_t> ParseUnsigned(std::string_view text);
/// The same with an optional sign.
std::optional<std::int64_t> ParseSigned(std::string_view text);
/// Parses true, on and 1, or false, off and 0, ignoring case.
std::optional<bool> ParseTruth(const std::string& text);
/// Parses a decimal number with optional sign, fraction and exponent.
std::optional<double> ParseDouble(std::string_view text);
