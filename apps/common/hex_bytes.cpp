// hex_bytes.cpp - bytes as hexadecimal text
#include "apps/common/hex_bytes.h"

#include <algorithm>
#include <charconv>

std::string HexText(std::span<const std::uint8_t> bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    while (!text.empty()) {
        if (text.front() == ' ') {
            text.remove_prefix(1);
            continue;
        }
        std::uint8_t byte = 0;
        const auto result = std::from_chars(
            text.data(), text.data() + std::min<std::size_t>(text.size(), 2), byte, 16);
        if (result.ec != std::errc() || result.ptr != text.data() + 2) {
            return std::nullopt;
        }
        bytes.push_back(byte);
        text.remove_prefix(2);
    }
    return bytes;
}
