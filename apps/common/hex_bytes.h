// hex_bytes.h - bytes as hexadecimal text
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Two upper-case digits for every byte, without blanks.
std::string HexText(std::span<const std::uint8_t> bytes);
/// The bytes of pairs of digits of either case; blanks between pairs are allowed.
std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text);
