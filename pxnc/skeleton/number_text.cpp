// number_text.cpp - numbers to text and back
#include "pxnc/skeleton/number_text.h"

#include "platform/text.h"

#include <charconv>

namespace skeleton {
namespace {

template <typename T, typename... Format>
bool ParseWhole(const char* first, const char* last, T& value, Format... format) {
    const auto [end, error] = std::from_chars(first, last, value, format...);
    return error == std::errc() && end == last && first != last;
}

bool EqualsNoCase(const std::string& text, const char* word) {
    return platform::CompareNoCase(text.c_str(), word) == 0;
}

} // namespace

bool ParseInt(const std::string& text, std::int64_t& value) {
    const char* first = text.data();
    const char* last = first + text.size();
    if (text.starts_with("0x") || text.starts_with("0X")) {
        std::uint64_t bits = 0;
        if (!ParseWhole(first + 2, last, bits, 16)) {
            return false;
        }
        value = static_cast<std::int64_t>(bits);
        return true;
    }
    return ParseWhole(first, last, value, 10);
}

bool ParseFloat(const std::string& text, double& value) {
    return ParseWhole(text.data(), text.data() + text.size(), value);
}

bool ParseBool(const std::string& text, bool& value) {
    for (const char* word : {"true", "1", "on"}) {
        if (EqualsNoCase(text, word)) {
            value = true;
            return true;
        }
    }
    for (const char* word : {"false", "0", "off"}) {
        if (EqualsNoCase(text, word)) {
            value = false;
            return true;
        }
    }
    return false;
}

std::string FormatFloat(double value) {
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string ToHex(const std::string& bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

bool FromHex(const std::string& text, std::string& bytes) {
    if (text.size() % 2 != 0) {
        return false;
    }
    bytes.clear();
    for (std::size_t i = 0; i < text.size(); i += 2) {
        std::uint8_t byte = 0;
        if (!ParseWhole(text.data() + i, text.data() + i + 2, byte, 16)) {
            return false;
        }
        bytes += static_cast<char>(byte);
    }
    return true;
}

} // namespace skeleton
