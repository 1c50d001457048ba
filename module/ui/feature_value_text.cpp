// feature_value_text.cpp - the text in the column of values
#include "ui/feature_value_text.h"

#include "ui/value_text.h"

namespace pyxen {

std::string FormatFeatureValue(const Feature& feature) {
    constexpr const char* kUnavailable = "<unavailable>";
    if (!feature.Name()) {
        return {};
    }
    switch (feature.Type()) {
    case FeatureType::kUnknown:
        return kUnavailable;
    case FeatureType::kCommand:
        return "<Press button below to execute>";
    case FeatureType::kBytes:
        return "<unsupported>";
    default:
        break;
    }
    if (!HasValue(feature.Type())) {
        return {};
    }
    FeatureValue value;
    if (feature.Read(value) != PxnErrSuccess) {
        return kUnavailable;
    }
    return value.Visit(Overloaded{
        [](std::int64_t number) { return FormatInteger(number); },
        [](double number) { return FormatFloat(number); },
        [&](const EnumEntry& entry) { return std::string(entry.name ? entry.name : kUnavailable); },
        [](const std::string& text) { return text; },
        [](bool state) { return std::string(state ? "True" : "False"); },
        [](const FeatureBytes&) {
            return std::string();
        }});
}

} // namespace pyxen
