// feature_write.cpp - parses, checks and writes values of features
#include "apps/pyxen-tool/feature_write.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"
#include "apps/pyxen-tool/sdk_failure.h"
#include "platform/sleep.h"
#include "platform/text.h"
#include "sync/feature_writer.h"

#include <cstdint>
#include <optional>

using namespace pyxen;

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
    switch (feature.Get().Type()) {
    case FeatureType::kInteger:
        return Require(ParseSigned(text), feature, text);
    case FeatureType::kFloat:
        return Require(ParseDouble(text), feature, text);
    case FeatureType::kEnumeration:
        return EnumEntry{text.c_str()};
    case FeatureType::kText:
        return text;
    case FeatureType::kBoolean:
        return Require(ParseBool(text), feature, text);
    case FeatureType::kBytes:
        return Require(ParseHex(text), feature, text);
    default:
        throw CommandFailure(feature.Path() + " is of type " + feature.TypeName() +
                             " and takes no value");
    }
}

void WriteFeatureValue(SyncEngine& engine, const FeatureAccess& feature, FeatureValue value,
                       const std::string& text) {
    const WriteOutcome outcome = FeatureWriter(engine).Write(feature.Cache(), feature.Get(), value);
    if (outcome.step == WriteStep::kRefused) {
        const std::string& failing = outcome.refusal.failingFeature;
        const bool isItself = failing == feature.Path();
        throw CommandFailure(failing + " refuses the value " + text +
                             (isItself ? "" : ", which follows " + feature.Path()) + ": " +
                             outcome.refusal.reason);
    }
    if (outcome.step == WriteStep::kNotWritten) {
        throw SdkFailure("writing " + feature.Path(), outcome.error);
    }
}

void RunFeatureCommand(const FeatureAccess& feature) {
    PxnError error = feature.Get().Run();
    bool done = false;
    for (int i = 0; error == PxnErrSuccess && !done && i < kCommandTries; ++i) {
        error = feature.Get().IsDone(done);
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
