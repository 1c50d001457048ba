// feature_values.h - reading and writing features whatever their type
#pragma once

#include "pxnc/conformance/session.h"

#include <string>

namespace conformance {

struct FeatureAccess {
    bool isReadable = false;
    bool isWritable = false;

    bool operator==(const FeatureAccess&) const = default;
};

/// What PxnFeatureAccessQuery stores; neither after a failure.
FeatureAccess GetAccess(const SdkFunctions& sdk, PxnHandle handle, const char* feature);
inline FeatureAccess GetAccess(const SdkFunctions& sdk, const NamedFeature& feature) {
    return GetAccess(sdk, feature.handle, feature.info.name);
}

/// True for the types with a value: all but commands, Unknown and None.
bool HasValue(const NamedFeature& feature);
/// Reads the value and forgets it. The feature has a value.
PxnError ReadValue(const SdkFunctions& sdk, const NamedFeature& feature);
/// Writes what has been read from `feature` to the feature of the same name behind `handle`:
/// nothing changes. The result of the reading when that failed.
PxnError WriteBack(const SdkFunctions& sdk, const NamedFeature& feature, PxnHandle handle);

/// The whole text of a string feature; empty after a failure.
std::string ReadString(const SdkFunctions& sdk, const NamedFeature& feature);

} // namespace conformance
