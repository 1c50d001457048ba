// json_text.cpp - builds JSON text and reads counts from it
//
// The only source that includes the JSON library, which takes seconds to compile.
#include "apps/common/json_text.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <utility>

namespace {

using Library = nlohmann::json;

// Escapes strings and writes numbers with the fewest digits that read back exactly.
std::string Dump(const Library& value) {
    return value.dump(-1, ' ', false, Library::error_handler_t::replace);
}

} // namespace

JsonValue::JsonValue(std::string json, IsJson) : text(std::move(json)) {}

JsonValue::JsonValue(std::nullptr_t) : text("null") {}

JsonValue::JsonValue(bool value) : text(value ? "true" : "false") {}

JsonValue::JsonValue(double value) : text(Dump(value)) {}

JsonValue::JsonValue(const char* value) : text(value ? Dump(value) : "null") {}

JsonValue::JsonValue(const std::string& value) : text(Dump(value)) {}

JsonValue JsonValue::FromText(std::string json) {
    return {std::move(json), IsJson()};
}

std::string JsonValue::Digits(std::int64_t value) {
    return std::to_string(value);
}

std::string JsonValue::Digits(std::uint64_t value) {
    return std::to_string(value);
}

JsonValue JsonObject(const std::vector<JsonMember>& members) {
    std::string text;
    for (const auto& [key, value] : members) {
        text += (text.empty() ? "" : ",") + JsonText(key) + ":" + value.Text();
    }
    return JsonValue::FromText("{" + text + "}");
}

JsonValue JsonArray(const std::vector<JsonValue>& values) {
    std::string text;
    for (const JsonValue& value : values) {
        text += (text.empty() ? "" : ",") + value.Text();
    }
    return JsonValue::FromText("[" + text + "]");
}

JsonValue JsonReport(std::vector<JsonMember> members) {
    members.insert(members.begin(), {"schema", 1});
    return JsonObject(members);
}

void PrintReport(std::vector<JsonMember> members) {
    std::printf("%s\n", JsonReport(std::move(members)).Text().c_str());
}

std::string JsonText(const char* text) {
    return JsonValue(text).Text();
}

std::string JsonText(const std::string& text) {
    return JsonValue(text).Text();
}

std::map<std::string, std::uint64_t> JsonCounts(const std::string& text) {
    std::map<std::string, std::uint64_t> counts;
    const Library object = Library::parse(text, nullptr, false);
    if (object.is_object()) {
        for (const auto& [key, value] : object.items()) {
            if (value.is_number_unsigned()) {
                counts[key] = value.get<std::uint64_t>();
            }
        }
    }
    return counts;
}
