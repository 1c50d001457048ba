// shell_answer.cpp - the result of a shell operation as text
#include "apps/common/shell_answer.h"

#include "apps/common/hex_bytes.h"

#include <utility>

ShellAnswer ShellAnswer::Ok() {
    return ShellAnswer("ok", "ok");
}

ShellAnswer ShellAnswer::Code(MV_ERRCODE code) {
    return Number(code).FailedIf(code != MV_OK);
}

ShellAnswer ShellAnswer::Number(std::int64_t number) {
    return ShellAnswer(std::to_string(number), number);
}

ShellAnswer ShellAnswer::Text(const char* text) {
    return ShellAnswer(JsonText(text), text);
}

ShellAnswer ShellAnswer::Pointer(const void* pointer, const char* word) {
    return ShellAnswer(pointer ? word : "null", pointer ? word : nullptr);
}

ShellAnswer& ShellAnswer::With(const char* key, std::uint64_t value) {
    return Append(key, std::to_string(value), value);
}

ShellAnswer& ShellAnswer::WithSigned(const char* key, std::int64_t value) {
    return Append(key, std::to_string(value), value);
}

ShellAnswer& ShellAnswer::WithText(const char* key, const std::string& value) {
    return Append(key, JsonText(value), value);
}

ShellAnswer& ShellAnswer::WithBytes(const char* key, std::span<const std::uint8_t> value) {
    return Append(key, HexText(value), HexText(value));
}

ShellAnswer& ShellAnswer::WithList(const char* key, const std::vector<std::uint32_t>& values) {
    std::string list = "[";
    for (const std::uint32_t value : values) {
        list += (list.size() > 1 ? "," : "") + std::to_string(value);
    }
    return Append(key, list + "]", JsonValue::FromText(list + "]"));
}

ShellAnswer& ShellAnswer::FailedIf(bool isFailure) {
    failed = failed || isFailure;
    return *this;
}

std::string ShellAnswer::Json(const std::string& operation) const {
    return JsonReport(
               {{"operation", operation}, {"result", result}, {"values", JsonObject(members)}})
        .Text();
}

ShellAnswer& ShellAnswer::Append(const char* key, const std::string& shown, JsonValue value) {
    text += std::string(" ") + key + "=" + shown;
    members.push_back({key, std::move(value)});
    return *this;
}
