// feature_records.cpp - the records about features that receivers get, with their texts
#include "services/feature_records.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace pyxen {

namespace {

constexpr bool IsSameNumber(std::uint32_t ofService, std::uint32_t ofSdk) {
    return ofService == ofSdk;
}

} // namespace

static_assert(IsSameNumber(MV_FEATURE_INTEGER, PxnFeatureDataInt));
static_assert(IsSameNumber(MV_FEATURE_FLOAT, PxnFeatureDataFloat));
static_assert(IsSameNumber(MV_FEATURE_ENUMERATION, PxnFeatureDataEnum));
static_assert(IsSameNumber(MV_FEATURE_STRING, PxnFeatureDataString));
static_assert(IsSameNumber(MV_FEATURE_BOOLEAN, PxnFeatureDataBool));
static_assert(IsSameNumber(MV_FEATURE_COMMAND, PxnFeatureDataCommand));
static_assert(IsSameNumber(MV_FEATURE_REGISTER, PxnFeatureDataRaw));
static_assert(IsSameNumber(MV_FEATURE_CATEGORY, PxnFeatureDataNone));
static_assert(IsSameNumber(MV_VISIBILITY_BEGINNER, PxnVisibilityBeginner));
static_assert(IsSameNumber(MV_VISIBILITY_INVISIBLE, PxnVisibilityInvisible));

MV_FEATURE_TYPE ServiceType(FeatureType type) {
    return type <= FeatureType::kNone
               ? static_cast<MV_FEATURE_TYPE>(static_cast<std::uint32_t>(type))
               : MV_FEATURE_UNKNOWN;
}

namespace {

std::vector<const char*> PointersTo(const std::vector<std::string>& texts) {
    std::vector<const char*> pointers;
    pointers.reserve(texts.size());
    for (const std::string& text : texts) {
        pointers.push_back(text.c_str());
    }
    return pointers;
}

std::vector<std::string> CopyTexts(const std::vector<const char*>& texts) {
    std::vector<std::string> copies;
    copies.reserve(texts.size());
    for (const char* const text : texts) {
        copies.emplace_back(text ? text : "");
    }
    return copies;
}

std::string ShownNumber(double number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return {digits, end};
}

} // namespace

// ---- values ----

OwnedValue::OwnedValue(const FeatureValue& value, std::int64_t entryNumber)
    : type(ServiceType(value.Type())) {
    value.Visit(Overloaded{[&](std::int64_t number) { integer = number; },
                           [&](double number) { real = number; },
                           [&](const EnumEntry& entry) {
                               integer = entryNumber;
                               text = entry.name ? entry.name : "";
                           },
                           [&](const std::string& content) { text = content; },
                           [&](bool state) { integer = state ? 1 : 0; },
                           [&](const FeatureBytes& bytes) {
                               text.assign(bytes.begin(), bytes.end());
                           }});
}

MV_FEATURE_VALUE OwnedValue::Record() const {
    MV_FEATURE_VALUE record{};
    record.size = sizeof record;
    record.type = type;
    record.integer = integer;
    record.real = real;
    record.text = text.c_str();
    record.textBytes = static_cast<std::uint32_t>(text.size());
    return record;
}

ServiceOutcome TakeValue(const MV_FEATURE_VALUE& given, const ServiceFeature& feature,
                         FeatureValue& value) {
    const MV_FEATURE_TYPE type = ServiceType(feature.Get().Type());
    if (!HasValue(feature.Get().Type())) {
        return {MV_SERVICE_WRONG_TYPE, feature.Path() + ": has no value"};
    }
    if (given.type != type) {
        return {MV_SERVICE_WRONG_TYPE, feature.Path() + ": the value is of another type"};
    }
    const bool needsText = type == MV_FEATURE_ENUMERATION || type == MV_FEATURE_STRING ||
                           (type == MV_FEATURE_REGISTER && given.textBytes > 0);
    if (needsText && !given.text) {
        return {MV_SERVICE_BAD_ARGUMENT, feature.Path() + ": the value has no text"};
    }
    switch (type) {
    case MV_FEATURE_INTEGER:
        value = given.integer;
        break;
    case MV_FEATURE_FLOAT:
        value = given.real;
        break;
    case MV_FEATURE_ENUMERATION:
        value = EnumEntry{given.text};
        break;
    case MV_FEATURE_STRING:
        value = std::string(given.text);
        break;
    case MV_FEATURE_BOOLEAN:
        value = given.integer != 0;
        break;
    default:
        value = FeatureBytes(given.text, given.text + given.textBytes);
        break;
    }
    return {};
}

std::string ShownValue(const FeatureValue& value) {
    return value.Visit(
        Overloaded{[](std::int64_t number) { return std::to_string(number); },
                   [](double number) { return ShownNumber(number); },
                   [](const EnumEntry& entry) { return std::string(entry.name ? entry.name : ""); },
                   [](const std::string& text) { return "\"" + text + "\""; },
                   [](bool state) { return std::string(state ? "true" : "false"); },
                   [](const FeatureBytes& bytes) {
                       return std::to_string(bytes.size()) + " bytes";
                   }});
}

// ---- descriptions ----

OwnedDescription::OwnedDescription(const ServiceFeature& feature)
    : module(feature.module.name),
      name(feature.info->name),
      displayName(feature.info->displayName),
      category(feature.info->category),
      unit(feature.info->unit),
      toolTip(feature.info->tooltip),
      description(feature.info->description),
      nameSpace(feature.info->sfncNamespace),
      representation(feature.info->representation) {
    const PxnFeatureInfo& info = *feature.info;
    record.size = sizeof record;
    record.type = ServiceType(feature.Get().Type());
    record.visibility = MV_VISIBILITY_UNKNOWN;
    if (info.visibility <= PxnVisibilityInvisible) {
        record.visibility = info.visibility;
    }
    record.isSelector = info.hasSelectedFeatures ? 1 : 0;
    record.isStreamable = info.isStreamable ? 1 : 0;
    record.isVolatile = (info.featureFlags & PxnFeatureFlagVolatile) != 0 ? 1 : 0;
}

PxnError OwnedDescription::AddPresent(const Feature& feature) {
    bool readable = false;
    bool writable = false;
    if (const PxnError error = feature.Access(readable, writable)) {
        return error;
    }
    record.isReadable = readable ? 1 : 0;
    record.isWritable = writable ? 1 : 0;
    const FeatureType type = feature.Type();
    FeatureRange range;
    const bool hasRange = type >= FeatureType::kInteger && type <= FeatureType::kText;
    if (hasRange && RangeOf(feature, range) == PxnErrSuccess) {
        record.hasLimits = 1;
        record.integerMin = range.integers.least;
        record.integerMax = range.integers.most;
        record.realMin = range.floats.least;
        record.realMax = range.floats.most;
        record.longestText = range.longestText;
        entries = CopyTexts(range.entries);
        for (const char* const entry : range.entries) {
            bool isAvailable = false;
            if (entry) {
                feature.IsAvailable(entry, isAvailable);
            }
            available.push_back(isAvailable ? 1 : 0);
        }
    }
    if (type == FeatureType::kInteger && feature.Increment(record.increment) == PxnErrSuccess) {
        record.hasIncrement = 1;
    }
    if (record.isSelector) {
        std::vector<const char*> names;
        if (const PxnError error = SelectedBy(feature, names)) {
            return error;
        }
        selected = CopyTexts(names);
    }
    entryPointers = PointersTo(entries);
    selectedPointers = PointersTo(selected);
    return PxnErrSuccess;
}

MV_FEATURE_DESCRIPTION OwnedDescription::Record() {
    record.module = module.c_str();
    record.name = name.c_str();
    record.displayName = displayName.c_str();
    record.category = category.c_str();
    record.unit = unit.c_str();
    record.toolTip = toolTip.c_str();
    record.description = description.c_str();
    record.nameSpace = nameSpace.c_str();
    record.representation = representation.c_str();
    record.entryCount = static_cast<std::uint32_t>(entryPointers.size());
    record.entries = entryPointers.data();
    record.entryAvailable = available.data();
    record.selectedCount = static_cast<std::uint32_t>(selectedPointers.size());
    record.selected = selectedPointers.data();
    return record;
}

} // namespace pyxen
