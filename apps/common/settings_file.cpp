// settings_file.cpp - the content of a settings file, without a camera
#include "apps/common/settings_file.h"

#include "apps/common/command_failure.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

std::string PlainText(const Json& value) {
    return value.is_string() ? value.get<std::string>()
                             : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

FileSetting ReadSetting(const Json& object) {
    FileSetting setting;
    setting.name =
        object.at("module").get<std::string>() + "/" + object.at("feature").get<std::string>();
    std::string selectors;
    const Json positions = object.value("selectors", Json::object());
    for (const auto& [selector, position] : positions.items()) {
        selectors += (selectors.empty() ? "" : ", ") + selector + "=" + PlainText(position);
    }
    if (!selectors.empty()) {
        setting.name += "[" + selectors + "]";
    }
    setting.value = PlainText(object.at("value"));
    return setting;
}

SettingsFile ReadDocument(const Json& document) {
    SettingsFile file;
    const Json camera = document.value("camera", Json::object());
    for (const auto& [key, value] : camera.items()) {
        file.camera += (file.camera.empty() ? "" : ", ") + key + " " + PlainText(value);
    }
    for (const Json& setting : document.at("settings")) {
        file.settings.push_back(ReadSetting(setting));
    }
    return file;
}

} // namespace

SettingsFile ParseSettingsFile(const std::string& path, const std::string& text) {
    try {
        const Json document = Json::parse(text);
        if (!document.is_object() || document.value("format", "") != "Mivora settings") {
            throw CommandFailure(path + " is no settings file");
        }
        return ReadDocument(document);
    } catch (const Json::exception& error) {
        throw CommandFailure(path + " is no settings file", {error.what()});
    }
}
