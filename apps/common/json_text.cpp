// json_text.cpp - builds JSON text and reads counts from it
//
// The only source that includes the JSON library, which takes seconds to compile.
#include "apps/common/json_text.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdio>
#include <utility>

namespace {

using Library = nlohmann::json;

// Escapes strings and writes numbers with the fewest digits that read back exactly.
std::string Dump(const Library& value) {
    return value.dump(-1, ' ', false, Library::error_handler_t::replace);
}

/// Takes the counts of the outermost object. Without the library's document, whose destructor
/// allocates memory and ends the program when there is none.
class CountReader final : public Library::json_sax_t {
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t number) override {
        if (depth == 1 && isObject) {
            counts[name] = number;
        }
        return true;
    }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return Enter(true); }
    bool key(string_t& member) override {
        if (depth == 1) {
            name = member;
        }
        return true;
    }
    bool end_object() override { return Leave(); }
    bool start_array(std::size_t) override { return Enter(false); }
    bool end_array() override { return Leave(); }
    bool parse_error(std::size_t, const std::string&, const Library::exception&) override {
        return false;
    }

    std::map<std::string, std::uint64_t> counts;

private:
    bool Enter(bool isOfObject) {
        isObject = depth == 0 ? isOfObject : isObject;
        ++depth;
        return true;
    }
    bool Leave() {
        --depth;
        return true;
    }

    std::string name;
    unsigned depth = 0;
    bool isObject = false; // the outermost value
};

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
    CountReader reader;
    const bool isWhole = Library::sax_parse(text, &reader);
    return isWhole ? std::move(reader.counts) : std::map<std::string, std::uint64_t>();
}
