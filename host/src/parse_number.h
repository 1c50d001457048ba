// parse_number.h - numbers as people write them in ini files
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Decimal, or 0x-hexadecimal of up to 32 bits, with an optional sign. Hexadecimal numbers without
/// a sign keep their bits: 0xFFFFFFFF is -1. Nothing for everything else, and for numbers that do
/// not fit.
std::optional<std::int32_t> ParseInt32(std::string_view text);
/// The same for numbers from 0 to 4294967295; only a plus sign is allowed.
std::optional<std::uint32_t> ParseUint32(std::string_view text);
