// shell_answer.h - the result of a shell operation as text
#pragma once

#include "apps/common/json_text.h"
#include "mivora/types.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// The text after "NAME = ": a result, followed by " key=value" for every output value. Numbers are
/// decimal, texts JSON strings, bytes upper-case hexadecimal.
class ShellAnswer {
public:
    static ShellAnswer Ok();
    static ShellAnswer Code(MV_ERRCODE code);
    static ShellAnswer Number(std::int64_t number);
    static ShellAnswer Text(const char* text);
    /// "null" for a null pointer, otherwise the word.
    static ShellAnswer Pointer(const void* pointer, const char* word = "set");

    ShellAnswer& With(const char* key, std::uint64_t value);
    ShellAnswer& WithSigned(const char* key, std::int64_t value);
    ShellAnswer& WithText(const char* key, const std::string& value);
    ShellAnswer& WithBytes(const char* key, std::span<const std::uint8_t> value);
    ShellAnswer& WithList(const char* key, const std::vector<std::uint32_t>& values);

    ShellAnswer& FailedIf(bool isFailure);

    const std::string& Str() const { return text; }
    /// The same as a JSON object: {"schema":1,"operation":...,"result":...,"values":{...}}.
    std::string Json(const std::string& operation) const;
    /// True for a code other than MV_OK, and after FailedIf.
    bool IsFailure() const { return failed; }

private:
    ShellAnswer(std::string shownResult, JsonValue jsonResult)
        : text(std::move(shownResult)), result(std::move(jsonResult)) {}
    ShellAnswer& Append(const char* key, const std::string& shown, JsonValue value);

    std::string text;
    JsonValue result;
    std::vector<JsonMember> members;
    bool failed = false;
};
