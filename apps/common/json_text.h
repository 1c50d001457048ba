// json_text.h - builds JSON text and reads counts from it
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// A JSON value as text on one line. Any string is accepted: bytes that are not UTF-8 become
/// U+FFFD.
class JsonValue {
public:
    JsonValue(std::nullptr_t);
    JsonValue(bool value);
    JsonValue(std::signed_integral auto value) : text(Digits(std::int64_t{value})) {}
    JsonValue(std::unsigned_integral auto value) : text(Digits(std::uint64_t{value})) {}
    JsonValue(double value);
    JsonValue(const char* value); ///< null for a null pointer
    JsonValue(const std::string& value);

    /// Takes a value that is JSON text already.
    static JsonValue FromText(std::string json);

    const std::string& Text() const { return text; }

private:
    struct IsJson {};
    JsonValue(std::string json, IsJson);

    static std::string Digits(std::int64_t value);
    static std::string Digits(std::uint64_t value);

    std::string text;
};

struct JsonMember {
    const char* key;
    JsonValue value;
};

/// The members keep their order.
JsonValue JsonObject(const std::vector<JsonMember>& members);
JsonValue JsonArray(const std::vector<JsonValue>& values);
/// An object that a command prints: its first member is "schema":1. Whatever reads it may rely on
/// the members and their meaning as long as that number stays the same; members may be added.
JsonValue JsonReport(std::vector<JsonMember> members);
/// Prints such an object as a line on standard output.
void PrintReport(std::vector<JsonMember> members);

/// The text as a JSON string with its quotes; "null" for a null pointer.
std::string JsonText(const char* text);
std::string JsonText(const std::string& text);

/// The members of a JSON object that are non-negative integers; none if `text` is not an object.
std::map<std::string, std::uint64_t> JsonCounts(const std::string& text);
