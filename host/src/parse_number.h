// parse_number.h - parses numbers in ini files and dialogs
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Parses a decimal or 0x-prefixed hexadecimal number with an optional sign. Hexadecimal numbers
/// without a sign are taken as 32 bits: 0xFFFFFFFF is -1. Nothing for other texts and for numbers
/// out of range.
std::optional<std::int32_t> ParseInt32(std::string_view text);
/// The same for numbers from 0 to 4294967295, with an optional plus sign.
std::optional<std::uint32_t> ParseUint32(std::string_view text);
