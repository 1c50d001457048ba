// printable_text.cpp - texts that cannot control the terminal they are printed on
#include "platform/printable_text.h"

namespace platform {

namespace {

bool IsAsciiControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

// U+0080 to U+009F in UTF-8. Some terminals obey them as ESC with another character.
bool IsWideControl(std::string_view rest) {
    return rest.size() >= 2 && rest[0] == '\xC2' && (rest[1] & '\xE0') == '\x80';
}

void AppendNumber(std::string& printable, char character) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    printable += "\\x";
    printable += kDigits[byte >> 4];
    printable += kDigits[byte & 0xF];
}

std::string Printable(std::string_view text, std::string_view kept) {
    std::string printable;
    printable.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsWideControl(text.substr(i))) {
            AppendNumber(printable, text[i++]);
            AppendNumber(printable, text[i]);
        } else if (IsAsciiControl(text[i]) && kept.find(text[i]) == std::string_view::npos) {
            AppendNumber(printable, text[i]);
        } else {
            printable += text[i];
        }
    }
    return printable;
}

} // namespace

std::string PrintableText(std::string_view text) {
    return Printable(text, {});
}

std::string PrintableLines(std::string_view text) {
    return Printable(text, "\n");
}

} // namespace platform
