// json.cpp - reading and writing JSON
#include "services/json.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace pyxen {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The length of the character that `text` begins with, or 0 when it is none of UTF-8.
std::size_t CharacterLength(std::string_view text) {
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0u;
    };
    const auto continues = [&](std::size_t index) {
        return (byte(index) & 0xC0u) == 0x80u;
    };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return text.empty() ? 0 : 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return continues(1) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        const bool isShort = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F);
        return continues(1) && continues(2) && !isShort ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool isShort = (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
        return continues(1) && continues(2) && continues(3) && !isShort ? 4 : 0;
    }
    return 0;
}

void AppendUtf8(std::uint32_t character, std::string& text) {
    const auto append = [&](std::uint32_t byte) {
        text += static_cast<char>(static_cast<unsigned char>(byte));
    };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6);
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | character >> 12);
        append(0x80 | (character >> 6 & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | character >> 18);
        append(0x80 | (character >> 12 & 0x3F));
        append(0x80 | (character >> 6 & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// Goes through a text once. The first failure is kept, and all functions return false then.
class JsonReader {
public:
    explicit JsonReader(std::string_view whole) : content(whole) {
        if (content.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
            at = lineBegin = kByteOrderMark.size();
        }
    }

    bool ReadWhole(JsonValue& value) {
        SkipBlanks();
        if (!ReadValue(value, 0)) {
            return false;
        }
        SkipBlanks();
        return at == content.size() || Fail("nothing may follow the value");
    }
    const std::string& Error() const { return error; }

private:
    bool Fail(const char* why) {
        JsonValue here;
        Mark(here);
        error = AtJson(here, why);
        return false;
    }
    void Mark(JsonValue& value) const {
        value.line = line;
        value.column = at - lineBegin + 1;
    }
    char Peek() const { return at < content.size() ? content[at] : '\0'; }
    bool Take(char letter) {
        const bool isThere = at < content.size() && content[at] == letter;
        at += isThere ? 1 : 0;
        return isThere;
    }
    void SkipBlanks() {
        for (; at < content.size(); ++at) {
            const char letter = content[at];
            if (letter == '\n') {
                ++line;
                lineBegin = at + 1;
            } else if (letter != ' ' && letter != '\t' && letter != '\r') {
                break;
            }
        }
    }

    bool ReadValue(JsonValue& value, unsigned depth) {
        Mark(value);
        if (++values > kMostJsonValues) {
            return Fail("too many values");
        }
        switch (Peek()) {
        case '{':
            value.kind = JsonKind::kObject;
            return ReadElements(value, depth, '}');
        case '[':
            value.kind = JsonKind::kArray;
            return ReadElements(value, depth, ']');
        case '"':
            value.kind = JsonKind::kText;
            return ReadText(value.text);
        case 't':
            value.kind = JsonKind::kBoolean;
            value.boolean = true;
            return ReadWord("true");
        case 'f':
            value.kind = JsonKind::kBoolean;
            return ReadWord("false");
        case 'n':
            return ReadWord("null");
        default:
            return ReadNumber(value);
        }
    }

    bool ReadWord(std::string_view word) {
        if (content.substr(at, word.size()) != word) {
            return Fail("a value is expected");
        }
        at += word.size();
        return true;
    }

    bool ReadElements(JsonValue& value, unsigned depth, char end) {
        if (depth == kMostJsonDepth) {
            return Fail("too deep");
        }
        ++at;
        SkipBlanks();
        if (Take(end)) {
            return true;
        }
        do {
            SkipBlanks();
            if (value.kind == JsonKind::kObject && !ReadName(value.names)) {
                return false;
            }
            if (!ReadValue(value.elements.emplace_back(), depth + 1)) {
                return false;
            }
            SkipBlanks();
        } while (Take(','));
        return Take(end) ||
               Fail(end == '}' ? "a comma or } is expected" : "a comma or ] is expected");
    }

    bool ReadName(std::vector<std::string>& names) {
        const std::size_t begin = at;
        std::string name;
        if (Peek() != '"') {
            return Fail("a name in quotes is expected");
        }
        if (!ReadText(name)) {
            return false;
        }
        // Objects of the files that are read have few members; many are no reason to go slow.
        if (names.size() == kMostMembers) {
            at = begin;
            return Fail("too many members");
        }
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            at = begin;
            return Fail("this name occurs twice");
        }
        names.push_back(std::move(name));
        SkipBlanks();
        if (!Take(':')) {
            return Fail("a colon is expected");
        }
        SkipBlanks();
        return true;
    }

    bool ReadText(std::string& text) {
        ++at;
        while (at < content.size()) {
            const char letter = content[at];
            if (letter == '"') {
                ++at;
                return true;
            }
            if (letter == '\\') {
                if (!ReadEscape(text)) {
                    return false;
                }
                continue;
            }
            if (static_cast<unsigned char>(letter) < 0x20) {
                return Fail("a control character in a text");
            }
            const std::size_t length = CharacterLength(content.substr(at));
            if (length == 0) {
                return Fail("not UTF-8");
            }
            text.append(content, at, length);
            at += length;
        }
        return Fail("the text does not end");
    }

    bool ReadEscape(std::string& text) {
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        const char letter = at + 1 < content.size() ? content[at + 1] : '\0';
        if (letter == 'u') {
            return ReadEscapedCharacter(text);
        }
        const std::size_t index = kLetters.find(letter);
        if (index == std::string_view::npos) {
            return Fail("an unknown escape");
        }
        text += kMeanings[index];
        at += 2;
        return true;
    }

    bool ReadEscapedCharacter(std::string& text) {
        std::uint32_t character = 0;
        if (!ReadUnit(character)) {
            return false;
        }
        if (character >= 0xD800 && character < 0xDC00) {
            std::uint32_t low = 0;
            if (!ReadUnit(low)) {
                return false;
            }
            if (low < 0xDC00 || low > 0xDFFF) {
                return Fail("half a character");
            }
            character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
        } else if (character >= 0xDC00 && character < 0xE000) {
            return Fail("half a character");
        }
        AppendUtf8(character, text);
        return true;
    }

    bool ReadUnit(std::uint32_t& unit) {
        constexpr std::size_t kLength = 6; // \u0000
        const std::string_view escape = content.substr(at, kLength);
        if (escape.size() < kLength || escape[0] != '\\' || escape[1] != 'u') {
            return Fail("half a character");
        }
        const char* const end = escape.data() + kLength;
        if (std::from_chars(escape.data() + 2, end, unit, 16).ptr != end) {
            return Fail("\\u needs four hexadecimal digits");
        }
        at += kLength;
        return true;
    }

    bool ReadNumber(JsonValue& value) {
        const std::size_t begin = at;
        Take('-');
        if (!IsDigit(Peek())) {
            at = begin;
            return Fail("a value is expected");
        }
        if (!Take('0')) {
            SkipDigits();
        }
        bool isInteger = true;
        if (Take('.')) {
            isInteger = false;
            if (!SkipDigits()) {
                return Fail("a digit is expected");
            }
        }
        if (Peek() == 'e' || Peek() == 'E') {
            isInteger = false;
            ++at;
            if (Peek() == '+' || Peek() == '-') {
                ++at;
            }
            if (!SkipDigits()) {
                return Fail("a digit is expected");
            }
        }
        const char* const first = content.data() + begin;
        const char* const last = content.data() + at;
        const bool isInteger64 =
            !isInteger || std::from_chars(first, last, value.integer).ec == std::errc();
        // Tiny numbers may be out of range as well; no feature has any.
        if (!isInteger64 || std::from_chars(first, last, value.real).ec != std::errc()) {
            at = begin;
            return Fail("the number is out of range");
        }
        value.kind = isInteger ? JsonKind::kInteger : JsonKind::kReal;
        return true;
    }

    bool SkipDigits() {
        const std::size_t begin = at;
        while (IsDigit(Peek())) {
            ++at;
        }
        return at > begin;
    }

    static constexpr std::size_t kMostMembers = 64;

    const std::string_view content;
    std::size_t at = 0;
    std::size_t line = 1;
    std::size_t lineBegin = 0;
    std::size_t values = 0;
    std::string error;
};

} // namespace

const JsonValue* JsonValue::Find(std::string_view name) const {
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (names[index] == name) {
            return &elements[index];
        }
    }
    return nullptr;
}

bool ReadJson(std::string_view content, JsonValue& value, std::string& error) {
    JsonReader reader(content);
    JsonValue read;
    if (!reader.ReadWhole(read)) {
        error = reader.Error();
        return false;
    }
    value = std::move(read);
    return true;
}

std::string AtJson(const JsonValue& value, std::string_view what) {
    return "line " + std::to_string(value.line) + ", column " + std::to_string(value.column) +
           ": " + std::string(what);
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string QuoteJson(std::string_view text) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\') {
            quoted += '\\';
            quoted += letter;
        } else if (letter == '\n') {
            quoted += "\\n";
        } else if (code < 0x20 || code == 0x7F) {
            quoted += "\\u00";
            quoted += kDigits[code >> 4];
            quoted += kDigits[code & 0xF];
        } else {
            quoted += letter;
        }
    }
    return quoted + '"';
}

std::string JsonNumber(double number) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

} // namespace pyxen
