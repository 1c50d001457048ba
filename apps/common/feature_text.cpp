// feature_text.cpp - features and their values as text and as JSON
#include "apps/common/feature_text.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace {

template <typename Type, typename Number>
bool AreWholeType(Number least, Number most) {
    return least == static_cast<Number>(std::numeric_limits<Type>::lowest()) &&
           most == static_cast<Number>(std::numeric_limits<Type>::max());
}

/// Limits that only the type has say nothing about the feature.
bool AreLimitsOfTheType(const FeatureDescription& feature) {
    if (feature.type == MV_FEATURE_INTEGER) {
        return AreWholeType<std::int64_t>(feature.integerMin, feature.integerMax);
    }
    // A float feature may be derived from a 64-bit integer.
    return AreWholeType<double>(feature.realMin, feature.realMax) ||
           AreWholeType<std::int64_t>(feature.realMin, feature.realMax);
}

JsonValue LeastOf(const FeatureDescription& feature) {
    return feature.type == MV_FEATURE_INTEGER ? JsonValue(feature.integerMin)
                                              : JsonValue(feature.realMin);
}

JsonValue MostOf(const FeatureDescription& feature) {
    return feature.type == MV_FEATURE_INTEGER ? JsonValue(feature.integerMax)
                                              : JsonValue(feature.realMax);
}

bool HasNumbers(const FeatureDescription& feature) {
    return feature.hasLimits &&
           (feature.type == MV_FEATURE_INTEGER || feature.type == MV_FEATURE_FLOAT);
}

std::string BytesText(const std::string& bytes) {
    return HexText(std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
}

template <typename Parsed>
const Parsed& RequireValue(const std::optional<Parsed>& parsed, const FeatureDescription& feature,
                           const std::string& text) {
    if (!parsed) {
        throw CommandFailure("\"" + text + "\" is no value for " + feature.Path() +
                             ", which is of type " + FeatureTypeText(feature.type));
    }
    return *parsed;
}

std::string Filled(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

} // namespace

const char* FeatureTypeText(MV_FEATURE_TYPE type) {
    switch (type) {
    case MV_FEATURE_INTEGER:
        return "integer";
    case MV_FEATURE_FLOAT:
        return "float";
    case MV_FEATURE_ENUMERATION:
        return "enumeration";
    case MV_FEATURE_STRING:
        return "string";
    case MV_FEATURE_BOOLEAN:
        return "boolean";
    case MV_FEATURE_COMMAND:
        return "command";
    case MV_FEATURE_REGISTER:
        return "register";
    case MV_FEATURE_CATEGORY:
        return "category";
    case MV_FEATURE_UNKNOWN:
        break;
    }
    return "unknown";
}

const char* VisibilityText(MV_FEATURE_VISIBILITY visibility) {
    switch (visibility) {
    case MV_VISIBILITY_BEGINNER:
        return "beginner";
    case MV_VISIBILITY_EXPERT:
        return "expert";
    case MV_VISIBILITY_GURU:
        return "guru";
    case MV_VISIBILITY_INVISIBLE:
        return "invisible";
    case MV_VISIBILITY_UNKNOWN:
        break;
    }
    return "unknown";
}

std::string AccessText(const FeatureDescription& feature) {
    const std::string text =
        std::string(feature.isReadable ? "R" : "") + (feature.isWritable ? "W" : "");
    return text.empty() ? "-" : text;
}

JsonValue ServiceValueJson(const ServiceValue& value) {
    switch (value.type) {
    case MV_FEATURE_INTEGER:
        return value.integer;
    case MV_FEATURE_BOOLEAN:
        return value.integer != 0;
    case MV_FEATURE_FLOAT:
        return value.real;
    case MV_FEATURE_REGISTER:
        return BytesText(value.text);
    default:
        return value.text;
    }
}

std::string ServiceValueText(const ServiceValue& value) {
    const bool isText = value.type == MV_FEATURE_ENUMERATION || value.type == MV_FEATURE_STRING;
    if (isText) {
        return value.text;
    }
    return value.type == MV_FEATURE_REGISTER ? BytesText(value.text)
                                             : ServiceValueJson(value).Text();
}

std::string RangeText(const FeatureDescription& feature) {
    std::string text;
    if (HasNumbers(feature) && !AreLimitsOfTheType(feature)) {
        text = LeastOf(feature).Text() + ".." + MostOf(feature).Text();
        if (feature.hasIncrement) {
            text += " step " + JsonValue(feature.increment).Text();
        }
    } else if (feature.type == MV_FEATURE_STRING && feature.hasLimits) {
        text = "at most " + std::to_string(feature.longestText) + " bytes";
    }
    for (const DescribedEntry& entry : feature.entries) {
        text += (text.empty() ? "" : "|") + entry.name + (entry.isAvailable ? "" : "(unavailable)");
    }
    return text;
}

std::string FeatureLine(const std::string& name, std::size_t nameWidth,
                        const FeatureDescription& feature,
                        const std::optional<ServiceValue>& value) {
    std::string line = Filled(name, nameWidth) + " " + Filled(FeatureTypeText(feature.type), 11) +
                       " " + Filled(AccessText(feature), 2) + " " +
                       (value ? ServiceValueJson(*value).Text() : "-");
    if (value && !feature.unit.empty()) {
        line += " " + feature.unit;
    }
    const std::string range = RangeText(feature);
    return line + (range.empty() ? "" : "  ") + range;
}

std::vector<JsonMember> FeatureMembers(const FeatureDescription& feature,
                                       const std::optional<ServiceValue>& value) {
    std::vector<JsonMember> members = {
        {"path", feature.Path()},        {"module", feature.module},
        {"name", feature.name},          {"type", FeatureTypeText(feature.type)},
        {"access", AccessText(feature)}, {"value", value ? ServiceValueJson(*value) : nullptr},
        {"unit", feature.unit}};
    if (HasNumbers(feature)) {
        members.push_back({"min", LeastOf(feature)});
        members.push_back({"max", MostOf(feature)});
    }
    if (feature.hasIncrement) {
        members.push_back({"increment", feature.increment});
    }
    if (feature.type == MV_FEATURE_STRING && feature.hasLimits) {
        members.push_back({"maxLength", feature.longestText});
    }
    if (feature.type == MV_FEATURE_ENUMERATION) {
        std::vector<JsonValue> entries;
        entries.reserve(feature.entries.size());
        for (const DescribedEntry& entry : feature.entries) {
            entries.push_back(JsonObject({{"name", entry.name}, {"available", entry.isAvailable}}));
        }
        members.push_back({"entries", JsonArray(entries)});
    }
    return members;
}

std::vector<JsonMember> MoreFeatureMembers(const FeatureDescription& feature) {
    return {{"displayName", feature.displayName},
            {"visibility", VisibilityText(feature.visibility)},
            {"toolTip", feature.toolTip},
            {"description", feature.description},
            {"nameSpace", feature.nameSpace},
            {"representation", feature.representation},
            {"streamable", feature.isStreamable},
            {"volatile", feature.isVolatile},
            {"selects", JsonArray({feature.selected.begin(), feature.selected.end()})}};
}

ServiceValue ParseServiceValue(const FeatureDescription& feature, const std::string& text) {
    ServiceValue value;
    value.type = feature.type;
    switch (feature.type) {
    case MV_FEATURE_INTEGER:
        value.integer = RequireValue(ParseSigned(text), feature, text);
        break;
    case MV_FEATURE_FLOAT:
        value.real = RequireValue(ParseDouble(text), feature, text);
        break;
    case MV_FEATURE_BOOLEAN:
        value.integer = RequireValue(ParseTruth(text), feature, text) ? 1 : 0;
        break;
    case MV_FEATURE_ENUMERATION:
    case MV_FEATURE_STRING:
        value.text = text;
        break;
    case MV_FEATURE_REGISTER: {
        const auto bytes = ParseHex(text);
        RequireValue(bytes, feature, text);
        value.text.assign(bytes->begin(), bytes->end());
        break;
    }
    default:
        throw CommandFailure(feature.Path() + " is of type " + FeatureTypeText(feature.type) +
                             " and takes no value");
    }
    return value;
}
