// hex_bytes.h - bytes as hexadecimal text
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Two upper-case digits per byte, without blanks.
std::string HexText(std::span<const std::uint8_t> bytes);
/// Reads pairs of digits of either case, optionally separated by blanks. nullopt for any other
/// text.
std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text);
