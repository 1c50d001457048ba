// json_text.h - texts as JSON, whatever bytes they hold
#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// Key order is the order of writing.
using Json = nlohmann::ordered_json;

/// The value on one line, or indented by `indent` blanks. Bytes that are no UTF-8 become U+FFFD;
/// never throws for any content of a text.
std::string JsonDump(const Json& value, int indent = -1);
/// The text as a JSON string with its quotes; "null" for a null pointer.
std::string JsonText(const char* text);
std::string JsonText(const std::string& text);
