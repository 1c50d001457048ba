// feature_values.cpp - reading and writing features whatever their type
#include "pxnc/conformance/feature_values.h"

#include "pxnc/conformance/calls.h"

#include <vector>

namespace conformance {
namespace {

/// The bytes that a function with the protocol of PxnFeatureStringGet stores.
template <typename Function>
PxnError ReadBytes(Function get, const NamedFeature& feature, std::vector<char>& bytes) {
    std::uint32_t size = 0;
    if (const PxnError failed = get(feature.handle, feature.info.name, nullptr, 0, &size)) {
        return failed;
    }
    bytes.resize(std::size_t{size} + 1); // a place even for nothing
    const PxnError result = get(feature.handle, feature.info.name, bytes.data(), size, &size);
    bytes.resize(size);
    return result;
}

} // namespace

FeatureAccess GetAccess(const SdkFunctions& sdk, PxnHandle handle, const char* feature) {
    PxnBool readable = 0;
    PxnBool writable = 0;
    const PxnError result = sdk.PxnFeatureAccessQuery(handle, feature, &readable, &writable);
    return result == PxnErrSuccess ? FeatureAccess{readable != 0, writable != 0} : FeatureAccess{};
}

bool HasValue(const NamedFeature& feature) {
    switch (feature.info.featureDataType) {
    case PxnFeatureDataInt:
    case PxnFeatureDataFloat:
    case PxnFeatureDataEnum:
    case PxnFeatureDataString:
    case PxnFeatureDataBool:
    case PxnFeatureDataRaw:
        return true;
    default:
        return false;
    }
}

PxnError ReadValue(const SdkFunctions& sdk, const NamedFeature& feature) {
    constexpr const char* kReaders[] = {nullptr,
                                        "PxnFeatureIntGet",
                                        "PxnFeatureFloatGet",
                                        "PxnFeatureEnumGet",
                                        "PxnFeatureStringGet",
                                        "PxnFeatureBoolGet",
                                        nullptr,
                                        "PxnFeatureRawGet"};
    return FindCall(kReaders[feature.info.featureDataType])
        .run(sdk, {feature.handle, feature.info.name});
}

PxnError WriteBack(const SdkFunctions& sdk, const NamedFeature& feature, PxnHandle handle) {
    const char* const name = feature.info.name;
    std::int64_t number = 0;
    double real = 0;
    const char* entry = nullptr;
    PxnBool flag = 0;
    std::vector<char> bytes;
    PxnError result = PxnErrSuccess;
    switch (feature.info.featureDataType) {
    case PxnFeatureDataInt:
        result = sdk.PxnFeatureIntGet(feature.handle, name, &number);
        return result ? result : sdk.PxnFeatureIntSet(handle, name, number);
    case PxnFeatureDataFloat:
        result = sdk.PxnFeatureFloatGet(feature.handle, name, &real);
        return result ? result : sdk.PxnFeatureFloatSet(handle, name, real);
    case PxnFeatureDataEnum:
        result = sdk.PxnFeatureEnumGet(feature.handle, name, &entry);
        return result ? result : sdk.PxnFeatureEnumSet(handle, name, entry);
    case PxnFeatureDataBool:
        result = sdk.PxnFeatureBoolGet(feature.handle, name, &flag);
        return result ? result : sdk.PxnFeatureBoolSet(handle, name, flag);
    case PxnFeatureDataString:
        result = ReadBytes(sdk.PxnFeatureStringGet, feature, bytes);
        return result ? result : sdk.PxnFeatureStringSet(handle, name, bytes.data());
    default:
        result = ReadBytes(sdk.PxnFeatureRawGet, feature, bytes);
        return result ? result
                      : sdk.PxnFeatureRawSet(handle, name, bytes.data(),
                                             static_cast<std::uint32_t>(bytes.size()));
    }
}

std::string ReadString(const SdkFunctions& sdk, const NamedFeature& feature) {
    std::vector<char> bytes;
    const PxnError result = ReadBytes(sdk.PxnFeatureStringGet, feature, bytes);
    return result == PxnErrSuccess && !bytes.empty() ? std::string(bytes.data()) : std::string();
}

} // namespace conformance
