// feature_write.cpp - parses, checks and writes values of features
#include "apps/pyxen-tool/feature_write.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"
#include "apps/pyxen-tool/sdk_failure.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/sleep.h"
#include "platform/text.h"

#include <cstdint>
#include <optional>

namespace {

constexpr int kCommandTries = 500;
constexpr std::uint32_t kCommandRestMs = 10;

std::optional<bool> ParseBool(const std::string& text) {
    for (const char* yes : {"true", "1", "on"}) {
        if (platform::CompareNoCase(text.c_str(), yes) == 0) {
            return true;
        }
    }
    for (const char* no : {"false", "0", "off"}) {
        if (platform::CompareNoCase(text.c_str(), no) == 0) {
            return false;
        }
    }
    return std::nullopt;
}

template <typename T>
FeatureValue Require(const std::optional<T>& value, const FeatureAccess& feature,
                     const std::string& text) {
    if (!value) {
        throw CommandFailure("\"" + text + "\" is no value for " + feature.Path() +
                             ", which is of type " + feature.TypeName());
    }
    return *value;
}

} // namespace

FeatureValue ParseFeatureValue(const FeatureAccess& feature, const std::string& text) {
    switch (feature.Info().featureDataType) {
    case PxnFeatureDataInt:
        return Require(ParseSigned(text), feature, text);
    case PxnFeatureDataFloat:
        return Require(ParseDouble(text), feature, text);
    case PxnFeatureDataEnum:
        return EnumEntry{text.c_str()};
    case PxnFeatureDataString:
        return text;
    case PxnFeatureDataBool:
        return Require(ParseBool(text), feature, text);
    case PxnFeatureDataRaw:
        return Require(ParseHex(text), feature, text);
    default:
        throw CommandFailure(feature.Path() + " is of type " + feature.TypeName() +
                             " and takes no value");
    }
}

SyncCheckResult CheckFeatureValue(SyncEngine& engine, const FeatureAccess& feature,
                                  const FeatureValue& value) {
    return engine.CheckSyncPath(&feature.Cache(), feature.Info().name, value);
}

void WriteFeatureValue(const FeatureAccess& feature, const FeatureValue& value) {
    if (const PxnError error = feature.Get().Write(value)) {
        throw SdkFailure("writing " + feature.Path(), error);
    }
}

void RunFeatureCommand(CMivoraKVNPyxenClass& grabber, const FeatureAccess& feature) {
    CPyxenAPIAccess& api = grabber.Api();
    PxnHandle const handle = feature.Cache().GetHandle();
    const char* const name = feature.Info().name;
    PxnError error = api.PxnFeatureCommandRun(handle, name);
    PxnBool done = 0;
    for (int i = 0; error == PxnErrSuccess && !done && i < kCommandTries; ++i) {
        error = api.PxnFeatureCommandIsDone(handle, name, &done);
        if (!done) {
            platform::SleepMs(kCommandRestMs);
        }
    }
    if (error != PxnErrSuccess) {
        throw SdkFailure("executing " + feature.Path(), error);
    }
    if (!done) {
        throw CommandFailure(feature.Path() + " did not end within five seconds");
    }
}
