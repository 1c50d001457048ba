#include "pxnc/genicam/settings_file.h"

#include "platform/file_system.h"
#include "pxnc/genicam/glib_owner.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>
#include <vector>

namespace genicam {

namespace {

constexpr char kRootElement[] = "PxnSettings";
constexpr char kFeatureElement[] = "Feature";

struct Setting {
    std::string name;
    std::string value;
};

template <typename Number>
std::string FormatNumber(Number number) {
    char digits[64];
    // The shortest text that reads back as the same number.
    const auto [end, failure] = std::to_chars(std::begin(digits), std::end(digits), number);
    return failure == std::errc() ? std::string(digits, end) : std::string();
}

template <typename Number>
bool ParseNumber(const std::string& text, Number& number) {
    const char* last = text.data() + text.size();
    const auto [end, failure] = std::from_chars(text.data(), last, number);
    return failure == std::errc() && end == last;
}

PxnError ReadValue(Feature& feature, std::string& text) {
    PxnError result = PxnErrWrongType;
    int64_t integer = 0;
    double real = 0;
    const char* entry = "";
    bool flag = false;
    switch (feature.Info().featureDataType) {
    case PxnFeatureDataInt:
        result = feature.GetInt(integer);
        text = FormatNumber(integer);
        break;
    case PxnFeatureDataFloat:
        result = feature.GetFloat(real);
        text = FormatNumber(real);
        break;
    case PxnFeatureDataEnum:
        result = feature.GetEnum(entry);
        text = entry;
        break;
    case PxnFeatureDataString:
        result = feature.GetString(text);
        break;
    case PxnFeatureDataBool:
        result = feature.GetBool(flag);
        text = flag ? "true" : "false";
        break;
    default:
        break;
    }
    return result;
}

PxnError WriteValue(Feature& feature, const std::string& text) {
    int64_t integer = 0;
    double real = 0;
    switch (feature.Info().featureDataType) {
    case PxnFeatureDataInt:
        return ParseNumber(text, integer) ? feature.SetInt(integer) : PxnError{PxnErrInvalidValue};
    case PxnFeatureDataFloat:
        return ParseNumber(text, real) ? feature.SetFloat(real) : PxnError{PxnErrInvalidValue};
    case PxnFeatureDataEnum:
        return feature.SetEnum(text.c_str());
    case PxnFeatureDataString:
        return feature.SetString(text.c_str());
    case PxnFeatureDataBool:
        return text == "true" || text == "false" ? feature.SetBool(text == "true")
                                                 : PxnError{PxnErrInvalidValue};
    default:
        return PxnErrWrongType;
    }
}

std::string Escape(const std::string& text) {
    const MemoryOwner<char> escaped(
        g_markup_escape_text(text.data(), static_cast<gssize>(text.size())));
    return escaped.get();
}

bool HasStreamable(const Module& module) {
    const auto& features = module.AllFeatures();
    return std::any_of(features.begin(), features.end(),
                       [](const auto& feature) { return feature->Info().isStreamable != 0; });
}

/// What the reader of a settings file has come to.
struct Reading {
    std::vector<Setting> settings;
    bool isInsideFeature = false;
    bool hasRoot = false;
};

void OnStart(GMarkupParseContext* context, const gchar* element, const gchar** names,
             const gchar** values, gpointer target, GError** error) {
    auto& reading = *static_cast<Reading*>(target);
    const bool isOutermost = g_markup_parse_context_get_element_stack(context)->next == nullptr;
    if (isOutermost) {
        reading.hasRoot = std::strcmp(element, kRootElement) == 0;
    } else if (reading.hasRoot && std::strcmp(element, kFeatureElement) == 0) {
        const gchar* name = nullptr;
        reading.isInsideFeature =
            g_markup_collect_attributes(element, names, values, error, G_MARKUP_COLLECT_STRING,
                                        "name", &name, G_MARKUP_COLLECT_INVALID) != 0;
        reading.settings.push_back({name != nullptr ? name : "", ""});
    }
}

void OnEnd(GMarkupParseContext*, const gchar*, gpointer target, GError**) {
    static_cast<Reading*>(target)->isInsideFeature = false;
}

void OnText(GMarkupParseContext*, const gchar* text, gsize length, gpointer target, GError**) {
    auto& reading = *static_cast<Reading*>(target);
    if (reading.isInsideFeature) {
        reading.settings.back().value.append(text, length);
    }
}

PxnError ReadSettings(const std::string& path, std::vector<Setting>& settings) {
    static constexpr GMarkupParser kParser = {OnStart, OnEnd, OnText, nullptr, nullptr};
    std::string content;
    if (!platform::ReadWholeFile(path, content)) {
        return PxnErrIO;
    }
    Reading reading;
    const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
        g_markup_parse_context_new(&kParser, G_MARKUP_TREAT_CDATA_AS_TEXT, &reading, nullptr),
        g_markup_parse_context_free);
    ErrorOwner error;
    if (!g_markup_parse_context_parse(context.get(), content.data(),
                                      static_cast<gssize>(content.size()), error.Receive()) ||
        !g_markup_parse_context_end_parse(context.get(), error.Receive()) || !reading.hasRoot) {
        return PxnErrXml;
    }
    settings = std::move(reading.settings);
    return PxnErrSuccess;
}

} // namespace

PxnError SaveSettings(const Module& module, const std::string& path) {
    const bool onlyStreamable = HasStreamable(module);
    std::string content =
        std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<") + kRootElement + ">\n";
    for (const auto& feature : module.AllFeatures()) {
        if (onlyStreamable && feature->Info().isStreamable == 0) {
            continue;
        }
        module.With(feature->Name(), [&content](Feature& present) {
            bool readable = false;
            bool writeable = false;
            std::string value;
            present.GetAccess(readable, writeable);
            if (readable && writeable && ReadValue(present, value) == PxnErrSuccess) {
                content += std::string("  <") + kFeatureElement + " name=\"" +
                           Escape(present.Name()) + "\">" + Escape(value) + "</" + kFeatureElement +
                           ">\n";
            }
            return PxnErrSuccess;
        });
    }
    content += std::string("</") + kRootElement + ">\n";
    return platform::ReplaceWholeFile(path, content) ? PxnErrSuccess : PxnErrIO;
}

PxnError LoadSettings(const Module& module, const std::string& path) {
    std::vector<Setting> pending;
    if (const PxnError failed = ReadSettings(path, pending)) {
        return failed;
    }
    PxnError firstFailure = PxnErrSuccess;
    std::size_t before = 0;
    do {
        before = pending.size();
        firstFailure = PxnErrSuccess;
        std::vector<Setting> refused;
        for (Setting& setting : pending) {
            const PxnError result = module.With(setting.name.c_str(), [&setting](Feature& feature) {
                return WriteValue(feature, setting.value);
            });
            if (result != PxnErrSuccess) {
                firstFailure = firstFailure != PxnErrSuccess ? firstFailure : result;
                refused.push_back(std::move(setting));
            }
        }
        pending = std::move(refused);
    } while (!pending.empty() && pending.size() < before);
    return firstFailure;
}

} // namespace genicam
