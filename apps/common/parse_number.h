// parse_number.h - numbers as people type them
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Decimal or 0x-hexadecimal, nothing before or behind; nothing when it is no number or too big.
std::optional<std::uint64_t> ParseUnsigned(std::string_view text);
/// The same with an optional sign.
std::optional<std::int64_t> ParseSigned(std::string_view text);
/// A decimal number with a point, exponent and sign as the case may be.
std::optional<double> ParseDouble(std::string_view text);
