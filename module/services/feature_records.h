// feature_records.h - the records about features that receivers get, with their texts
#pragma once

#include "mivora/module_services.h"
#include "services/service_context.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pyxen {

/// A value with the text that its record points to.
class OwnedValue {
public:
    /// `entryNumber` counts for entries only.
    explicit OwnedValue(const FeatureValue& value, std::int64_t entryNumber = 0);

    /// Valid as long as this object is where it is.
    MV_FEATURE_VALUE Record() const;

private:
    MV_FEATURE_TYPE type = MV_FEATURE_UNKNOWN;
    std::int64_t integer = 0;
    double real = 0;
    std::string text;
};

/// A description with its texts, made with the lock and passed on without it.
class OwnedDescription {
public:
    /// The fixed part.
    explicit OwnedDescription(const ServiceFeature& feature);
    /// Adds what holds at present. The SDK's code when access or selection cannot be read; limits
    /// that cannot be read are left out. Throws std::bad_alloc.
    PxnError AddPresent(const Feature& feature);

    /// Valid until this object is changed or destroyed.
    MV_FEATURE_DESCRIPTION Record();

private:
    MV_FEATURE_DESCRIPTION record{};
    std::string module;
    std::string name;
    std::string displayName;
    std::string category;
    std::string unit;
    std::string toolTip;
    std::string description;
    std::string nameSpace;
    std::string representation;
    std::vector<std::string> entries;
    std::vector<std::uint32_t> available;
    std::vector<std::string> selected;
    std::vector<const char*> entryPointers;
    std::vector<const char*> selectedPointers;
};

MV_FEATURE_TYPE ServiceType(FeatureType type);

/// Turns a host's value into one for a feature of that type, whose text it goes on using.
/// MV_SERVICE_BAD_ARGUMENT or MV_SERVICE_WRONG_TYPE with the reason otherwise.
ServiceOutcome TakeValue(const MV_FEATURE_VALUE& given, const ServiceFeature& feature,
                         FeatureValue& value);

/// A value for people: 7, 0.25, Mono8, "left", true, 3 bytes.
std::string ShownValue(const FeatureValue& value);

} // namespace pyxen
