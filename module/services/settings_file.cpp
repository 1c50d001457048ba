// settings_file.cpp - what a file with the settings of a camera contains
#include "services/settings_file.h"

#include "services/json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

namespace pyxen {

namespace {

constexpr std::string_view kFormat = "Mivora settings";
constexpr std::int64_t kVersion = 1;

struct TypeName {
    FeatureType type;
    std::string_view name;
};

constexpr TypeName kTypeNames[] = {
    {FeatureType::kInteger, "integer"},         {FeatureType::kFloat, "float"},
    {FeatureType::kEnumeration, "enumeration"}, {FeatureType::kText, "string"},
    {FeatureType::kBoolean, "boolean"},         {FeatureType::kBytes, "register"}};

std::string_view NameOf(FeatureType type) {
    const auto* const found = std::find_if(std::begin(kTypeNames), std::end(kTypeNames),
                                           [&](const TypeName& one) { return one.type == type; });
    return found == std::end(kTypeNames) ? "" : found->name;
}

// ---- bytes as text ----

std::string HexText(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char letter : bytes) {
        const auto byte = static_cast<unsigned char>(letter);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

bool ReadHexText(std::string_view text, std::string& bytes) {
    bytes.clear();
    if (text.size() % 2 != 0) {
        return false;
    }
    for (; !text.empty(); text.remove_prefix(2)) {
        unsigned byte = 0;
        if (std::from_chars(text.data(), text.data() + 2, byte, 16).ptr != text.data() + 2) {
            return false;
        }
        bytes += static_cast<char>(static_cast<unsigned char>(byte));
    }
    return true;
}

/// Checks and takes what JSON has been read. The first failure is kept.
class SettingsReader {
public:
    bool Read(const JsonValue& root, SettingsFile& file) {
        const JsonValue* version = nullptr;
        const JsonValue* camera = nullptr;
        const JsonValue* settings = nullptr;
        std::string format;
        if (!Want(root, JsonKind::kObject, "an object is expected") ||
            !OnlyMembers(root, {"format", "version", "camera", "settings"}) ||
            !TakeText(root, "format", format)) {
            return false;
        }
        if (format != kFormat) {
            return Fail(*root.Find("format"), "not a file of settings");
        }
        if (!TakeMember(root, "version", JsonKind::kInteger, "an integer is expected", version)) {
            return false;
        }
        if (version->integer != kVersion) {
            return Fail(*version, "version " + std::to_string(version->integer) + " is not known");
        }
        return TakeMember(root, "camera", JsonKind::kObject, "an object is expected", camera) &&
               ReadCamera(*camera, file.camera) &&
               TakeMember(root, "settings", JsonKind::kArray, "an array is expected", settings) &&
               ReadSettings(*settings, file.settings);
    }
    const std::string& Error() const { return error; }

private:
    bool Fail(const JsonValue& where, std::string_view why) {
        error = AtJson(where, why);
        return false;
    }
    bool Want(const JsonValue& value, JsonKind kind, const char* otherwise) {
        return value.kind == kind || Fail(value, otherwise);
    }
    bool OnlyMembers(const JsonValue& object, std::initializer_list<std::string_view> known) {
        for (std::size_t index = 0; index < object.names.size(); ++index) {
            if (std::find(known.begin(), known.end(), object.names[index]) == known.end()) {
                return Fail(object.elements[index],
                            "unknown member \"" + object.names[index] + "\"");
            }
        }
        return true;
    }
    bool TakeMember(const JsonValue& object, const char* name, JsonKind kind, const char* otherwise,
                    const JsonValue*& member) {
        member = object.Find(name);
        if (!member) {
            return Fail(object, std::string("the member \"") + name + "\" is missing");
        }
        return Want(*member, kind, otherwise);
    }
    bool TakeText(const JsonValue& object, const char* name, std::string& text) {
        const JsonValue* member = nullptr;
        if (!TakeMember(object, name, JsonKind::kText, "a text is expected", member)) {
            return false;
        }
        text = member->text;
        return text.find('\0') == std::string::npos || Fail(*member, "a text with a zero byte");
    }

    bool ReadCamera(const JsonValue& object, SettingsCamera& camera) {
        return OnlyMembers(object, {"vendor", "model", "serial", "id"}) &&
               TakeText(object, "vendor", camera.vendor) &&
               TakeText(object, "model", camera.model) &&
               TakeText(object, "serial", camera.serial) && TakeText(object, "id", camera.id);
    }

    bool ReadSettings(const JsonValue& array, std::vector<StoredSetting>& settings) {
        std::set<std::pair<std::string, std::string>> known;
        for (const JsonValue& element : array.elements) {
            StoredSetting setting;
            if (!ReadSetting(element, setting)) {
                return false;
            }
            if (!known.emplace(setting.module + '/' + setting.feature, SelectorKey(setting))
                     .second) {
                return Fail(element, "this setting occurs twice");
            }
            settings.push_back(std::move(setting));
        }
        return true;
    }

    // The same for selectors in another order.
    static std::string SelectorKey(const StoredSetting& setting) {
        std::set<std::string> positions;
        for (const SelectorPosition& position : setting.selectors) {
            positions.insert(position.feature + '=' + position.value.Json());
        }
        std::string key;
        for (const std::string& position : positions) {
            key += position + ',';
        }
        return key;
    }

    bool ReadSetting(const JsonValue& object, StoredSetting& setting) {
        std::string type;
        if (!Want(object, JsonKind::kObject, "an object is expected") ||
            !OnlyMembers(object, {"module", "feature", "selectors", "type", "value"}) ||
            !TakeText(object, "module", setting.module) ||
            !TakeText(object, "feature", setting.feature) || !TakeText(object, "type", type)) {
            return false;
        }
        const auto* const named =
            std::find_if(std::begin(kTypeNames), std::end(kTypeNames),
                         [&](const TypeName& one) { return one.name == type; });
        if (named == std::end(kTypeNames)) {
            return Fail(*object.Find("type"), "unknown type \"" + type + "\"");
        }
        setting.value.type = named->type;
        const JsonValue* const value = object.Find("value");
        if (!value) {
            return Fail(object, "the member \"value\" is missing");
        }
        const JsonValue* const selectors = object.Find("selectors");
        return (!selectors || ReadSelectors(*selectors, setting.selectors)) &&
               ReadValue(*value, setting.value);
    }

    bool ReadSelectors(const JsonValue& object, std::vector<SelectorPosition>& selectors) {
        if (!Want(object, JsonKind::kObject, "an object is expected")) {
            return false;
        }
        for (std::size_t index = 0; index < object.elements.size(); ++index) {
            SelectorPosition position;
            position.feature = object.names[index];
            const JsonValue& value = object.elements[index];
            if (position.feature.find('\0') != std::string::npos) {
                return Fail(value, "a name with a zero byte");
            }
            switch (value.kind) {
            case JsonKind::kText:
                position.value.type = FeatureType::kEnumeration;
                break;
            case JsonKind::kInteger:
                position.value.type = FeatureType::kInteger;
                break;
            case JsonKind::kBoolean:
                position.value.type = FeatureType::kBoolean;
                break;
            default:
                return Fail(value, "a selector has a text, an integer or a boolean");
            }
            if (!ReadValue(value, position.value)) {
                return false;
            }
            selectors.push_back(std::move(position));
        }
        return true;
    }

    bool ReadValue(const JsonValue& json, StoredValue& value) {
        switch (value.type) {
        case FeatureType::kInteger:
            value.integer = json.integer;
            return Want(json, JsonKind::kInteger, "an integer is expected");
        case FeatureType::kFloat:
            value.real = json.real;
            return json.kind == JsonKind::kInteger ||
                   Want(json, JsonKind::kReal, "a number is expected");
        case FeatureType::kBoolean:
            value.integer = json.boolean ? 1 : 0;
            return Want(json, JsonKind::kBoolean, "true or false is expected");
        case FeatureType::kBytes:
            return Want(json, JsonKind::kText, "a text is expected") &&
                   (ReadHexText(json.text, value.text) ||
                    Fail(json, "pairs of hexadecimal digits are expected"));
        default:
            value.text = json.text;
            return Want(json, JsonKind::kText, "a text is expected") &&
                   (json.text.find('\0') == std::string::npos ||
                    Fail(json, "a text with a zero byte"));
        }
    }

    std::string error;
};

void AppendMember(std::string& text, const char* name, const std::string& value) {
    text += text.back() == '{' ? "" : ", ";
    text += QuoteJson(name) + ": " + value;
}

std::string SettingText(const StoredSetting& setting) {
    std::string text = "{";
    AppendMember(text, "module", QuoteJson(setting.module));
    AppendMember(text, "feature", QuoteJson(setting.feature));
    if (!setting.selectors.empty()) {
        std::string selectors = "{";
        for (const SelectorPosition& position : setting.selectors) {
            AppendMember(selectors, position.feature.c_str(), position.value.Json());
        }
        AppendMember(text, "selectors", selectors + "}");
    }
    AppendMember(text, "type", QuoteJson(NameOf(setting.value.type)));
    AppendMember(text, "value", setting.value.Json());
    return text + "}";
}

} // namespace

StoredValue StoredValue::Of(const FeatureValue& value) {
    StoredValue stored;
    stored.type = value.Type();
    value.Visit(
        Overloaded{[&](std::int64_t number) { stored.integer = number; },
                   [&](double number) { stored.real = number; },
                   [&](const EnumEntry& entry) { stored.text = entry.name ? entry.name : ""; },
                   [&](const std::string& content) { stored.text = content; },
                   [&](bool state) { stored.integer = state ? 1 : 0; },
                   [&](const FeatureBytes& bytes) {
                       stored.text.assign(bytes.begin(), bytes.end());
                   }});
    return stored;
}

FeatureValue StoredValue::Get() const {
    switch (type) {
    case FeatureType::kFloat:
        return real;
    case FeatureType::kEnumeration:
        return EnumEntry{text.c_str()};
    case FeatureType::kText:
        return text;
    case FeatureType::kBoolean:
        return integer != 0;
    case FeatureType::kBytes:
        return FeatureBytes(text.begin(), text.end());
    default:
        return integer;
    }
}

bool StoredValue::CanBeWritten() const {
    switch (type) {
    case FeatureType::kFloat:
        return std::isfinite(real);
    case FeatureType::kEnumeration:
    case FeatureType::kText:
        return IsUtf8(text) && text.find('\0') == std::string::npos;
    default:
        return HasValue(type);
    }
}

std::string StoredValue::Json() const {
    switch (type) {
    case FeatureType::kEnumeration:
    case FeatureType::kText:
    case FeatureType::kBytes:
        return QuoteJson(Shown());
    default:
        return Shown();
    }
}

std::string StoredValue::Shown() const {
    switch (type) {
    case FeatureType::kFloat:
        return JsonNumber(real);
    case FeatureType::kBoolean:
        return integer != 0 ? "true" : "false";
    case FeatureType::kBytes:
        return HexText(text);
    case FeatureType::kInteger:
        return std::to_string(integer);
    default:
        return text;
    }
}

std::string StoredSetting::ShownSelectors() const {
    std::string shown;
    for (const SelectorPosition& position : selectors) {
        shown += (shown.empty() ? "" : ", ") + position.feature + "=" + position.value.Shown();
    }
    return shown;
}

std::string WriteSettingsText(const SettingsFile& file) {
    std::string camera = "{";
    AppendMember(camera, "vendor", QuoteJson(file.camera.vendor));
    AppendMember(camera, "model", QuoteJson(file.camera.model));
    AppendMember(camera, "serial", QuoteJson(file.camera.serial));
    AppendMember(camera, "id", QuoteJson(file.camera.id));
    std::string text = "{\n  \"format\": " + QuoteJson(kFormat) +
                       ",\n  \"version\": " + std::to_string(kVersion) +
                       ",\n  \"camera\": " + camera + "},\n  \"settings\": [";
    const char* between = "\n    ";
    for (const StoredSetting& setting : file.settings) {
        text += between + SettingText(setting);
        between = ",\n    ";
    }
    return text + "\n  ]\n}\n";
}

bool ReadSettingsText(std::string_view text, SettingsFile& file, std::string& error) {
    if (text.size() > kMostSettingsBytes) {
        error = "more than " + std::to_string(kMostSettingsBytes) + " bytes";
        return false;
    }
    JsonValue root;
    if (!ReadJson(text, root, error)) {
        return false;
    }
    SettingsReader reader;
    SettingsFile read;
    if (!reader.Read(root, read)) {
        error = reader.Error();
        return false;
    }
    file = std::move(read);
    return true;
}

} // namespace pyxen
