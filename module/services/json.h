// json.h - reading and writing JSON
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

enum class JsonKind { kNull, kBoolean, kInteger, kReal, kText, kArray, kObject };

/// A value with the place where it begins, both counted from 1, columns in bytes.
struct JsonValue {
    JsonKind kind = JsonKind::kNull;
    bool boolean = false;
    std::int64_t integer = 0;        ///< numbers without fraction and exponent
    double real = 0;                 ///< all numbers
    std::string text;                ///< UTF-8
    std::vector<JsonValue> elements; ///< of arrays and objects
    std::vector<std::string> names;  ///< of the elements of objects, none of them twice
    std::size_t line = 1;
    std::size_t column = 1;

    /// The member of an object, or null.
    const JsonValue* Find(std::string_view name) const;
};

/// How deep arrays and objects may stand in one another, and how many values there may be.
inline constexpr unsigned kMostJsonDepth = 16;
inline constexpr std::size_t kMostJsonValues = std::size_t{1} << 18;

/// Reads one value that fills the whole text. False with "line 3, column 7: why" otherwise. Strict:
/// UTF-8, no comments, no member twice, integers within 64 bits, other numbers finite.
bool ReadJson(std::string_view content, JsonValue& value, std::string& error);

/// "line 3, column 7: what"
std::string AtJson(const JsonValue& value, std::string_view what);

/// True when `text` is UTF-8, without overlong forms and surrogates.
bool IsUtf8(std::string_view text);
/// A text in quotes. It must be UTF-8.
std::string QuoteJson(std::string_view text);
/// The shortest number that is read as `number` again, which must be finite.
std::string JsonNumber(double number);

} // namespace pyxen
