// json_text.cpp - texts as JSON
#include "apps/common/json_text.h"

std::string JsonDump(const Json& value, int indent) {
    return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string JsonText(const char* text) {
    return text ? JsonText(std::string(text)) : "null";
}

std::string JsonText(const std::string& text) {
    return JsonDump(Json(text));
}
