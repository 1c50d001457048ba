// config_access.cpp - typed access to one section of an ini file
#include "config_access.h"

#include "parse_number.h"

#include <charconv>
#include <cstring>

std::optional<std::string> ReadIniText(const CIniFile& file, const char* section, const char* key) {
    if (!file.HasKey(section, key)) {
        return std::nullopt;
    }
    std::string text(file.GetText(section, key, "", nullptr, 0), '\0');
    const std::uint32_t length =
        file.GetText(section, key, "", text.data(), static_cast<std::uint32_t>(text.size() + 1));
    // Another thread may have written a shorter value in between.
    if (length < text.size()) {
        text.resize(length);
    }
    return text;
}

std::optional<std::string> ConfigReader::Text(const char* key) const {
    return ReadIniText(file, section.Text(), key);
}

std::optional<std::uint32_t> ConfigReader::Unsigned(const char* key) const {
    const std::optional<std::string> text = Text(key);
    return text ? ParseUint32(*text) : std::nullopt;
}

std::optional<std::int32_t> ConfigReader::Signed(const char* key) const {
    const std::optional<std::string> text = Text(key);
    return text ? ParseInt32(*text) : std::nullopt;
}

void ConfigWriter::Text(const char* key, const char* value) {
    succeeded = file.WriteText(section.Text(), key, value) && succeeded;
}

void ConfigWriter::Unsigned(const char* key, std::uint32_t value) {
    Text(key, std::to_string(value).c_str());
}

void ConfigWriter::Signed(const char* key, std::int32_t value) {
    succeeded = file.WriteInt32(section.Text(), key, value) && succeeded;
}

void ConfigWriter::Hex(const char* key, std::uint32_t value) {
    succeeded = file.WriteHex32(section.Text(), key, value) && succeeded;
}

std::optional<std::int32_t> SectionNumber(const char* name, const char* prefix) {
    const char* number = name;
    for (; *prefix != '\0'; ++prefix, ++number) {
        const auto lower = [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        };
        if (lower(*number) != lower(*prefix)) {
            return std::nullopt;
        }
    }
    const char* const end = number + std::strlen(number);
    std::int32_t value = 0;
    const std::from_chars_result result = std::from_chars(number, end, value);
    if (result.ec != std::errc() || result.ptr != end || value < 0) {
        return std::nullopt;
    }
    return value;
}
