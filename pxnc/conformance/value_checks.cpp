// value_checks.cpp - checks of what features of each type read as
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_values.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

namespace conformance {
namespace {

/// Features of a type that can be read now. Throws NotApplicable when there is none.
std::vector<NamedFeature> ReadableFeatures(Session& session, std::uint32_t type) {
    std::vector<NamedFeature> features = session.RequireFeatures(type);
    std::erase_if(features, [&](const NamedFeature& feature) {
        return !GetAccess(session.Sdk(), feature).isReadable;
    });
    if (features.empty()) {
        throw NotApplicable("no feature of this type can be read now");
    }
    return features;
}

void CheckInts(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const auto& [name, handle, info] : ReadableFeatures(session, PxnFeatureDataInt)) {
        std::int64_t value = 0;
        std::int64_t least = 0;
        std::int64_t greatest = 0;
        std::int64_t increment = 0;
        if (!findings.ExpectSuccess(sdk.PxnFeatureIntGet(handle, info.name, &value),
                                    "PxnFeatureIntGet of " + name) ||
            !findings.ExpectSuccess(
                sdk.PxnFeatureIntRangeQuery(handle, info.name, &least, &greatest),
                "PxnFeatureIntRangeQuery of " + name) ||
            !findings.ExpectSuccess(sdk.PxnFeatureIntIncrementQuery(handle, info.name, &increment),
                                    "PxnFeatureIntIncrementQuery of " + name)) {
            continue;
        }
        const std::string text = name + " is " + std::to_string(value);
        findings.Expect(least <= value && value <= greatest, text + ", outside " +
                                                                 std::to_string(least) + " to " +
                                                                 std::to_string(greatest));
        findings.Expect(increment >= 1,
                        "the increment of " + name + " is " + std::to_string(increment));
        const auto distance = static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(least);
        findings.Expect(increment < 1 || distance % static_cast<std::uint64_t>(increment) == 0,
                        text + ", between two values of its increment");
    }
}

void CheckValueSetMembers(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    bool isAny = false;
    for (const NamedFeature& feature : ReadableFeatures(session, PxnFeatureDataInt)) {
        const auto values = ListRecords<std::int64_t>([&](auto... list) {
            return sdk.PxnFeatureIntValidValueSetQuery(feature.handle, feature.info.name, list...);
        });
        std::int64_t value = 0;
        sdk.PxnFeatureIntGet(feature.handle, feature.info.name, &value);
        isAny = isAny || !values.empty();
        findings.Expect(
            values.empty() || std::find(values.begin(), values.end(), value) != values.end(),
            feature.name + " is " + std::to_string(value) + ", which is none of its valid values");
        findings.Expect(std::is_sorted(values.begin(), values.end()),
                        "the valid values of " + feature.name + " do not ascend");
    }
    if (!isAny) {
        throw NotApplicable("no integer has a set of valid values");
    }
}

void CheckFloats(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const auto& [name, handle, info] : ReadableFeatures(session, PxnFeatureDataFloat)) {
        double value = 0;
        double least = 0;
        double greatest = 0;
        if (findings.ExpectSuccess(sdk.PxnFeatureFloatGet(handle, info.name, &value),
                                   "PxnFeatureFloatGet of " + name) &&
            findings.ExpectSuccess(
                sdk.PxnFeatureFloatRangeQuery(handle, info.name, &least, &greatest),
                "PxnFeatureFloatRangeQuery of " + name)) {
            findings.Expect(least <= value && value <= greatest,
                            name + " is " + std::to_string(value) + ", outside " +
                                std::to_string(least) + " to " + std::to_string(greatest));
        }
    }
}

void CheckEnumValues(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const auto& [name, handle, info] : ReadableFeatures(session, PxnFeatureDataEnum)) {
        const char* value = nullptr;
        findings.RequireSuccess(sdk.PxnFeatureEnumGet(handle, info.name, &value),
                                "PxnFeatureEnumGet of " + name);
        const std::vector<const char*> entries = ListEnumEntries(sdk, handle, info.name);
        findings.Expect(std::find(entries.begin(), entries.end(), value) != entries.end(),
                        "the entry of " + name + " is not the pointer of one of its entries");
    }
}

void CheckEnumNumbers(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const auto& [name, handle, info] : session.RequireFeatures(PxnFeatureDataEnum)) {
        for (const char* entry : ListEnumEntries(sdk, handle, info.name)) {
            const std::string text = name + "." + ToText(entry);
            std::int64_t number = 0;
            std::int64_t numberBack = 0;
            const char* back = nullptr;
            PxnFeatureEnumEntry description{};
            PxnBool isAvailable = 9;
            findings.RequireSuccess(sdk.PxnFeatureEnumAsInt(handle, info.name, entry, &number),
                                    "PxnFeatureEnumAsInt of " + text);
            findings.RequireSuccess(sdk.PxnFeatureEnumAsString(handle, info.name, number, &back),
                                    "PxnFeatureEnumAsString of " + text);
            findings.RequireSuccess(sdk.PxnFeatureEnumAsInt(handle, info.name, back, &numberBack),
                                    "PxnFeatureEnumAsInt of " + name + "." + ToText(back));
            findings.Expect(number == numberBack, "PxnFeatureEnumAsString of the number of " +
                                                      text + " stores " + ToText(back));
            findings.RequireSuccess(sdk.PxnFeatureEnumEntryGet(handle, info.name, entry,
                                                               &description, sizeof description),
                                    "PxnFeatureEnumEntryGet of " + text);
            findings.Expect(description.intValue == number,
                            "PxnFeatureEnumEntryGet of " + text + " stores another number");
            findings.Expect(description.displayName && description.tooltip &&
                                description.description,
                            "a text of " + text + " is a null pointer");
            findings.ExpectSuccess(
                sdk.PxnFeatureEnumIsAvailable(handle, info.name, entry, &isAvailable),
                "PxnFeatureEnumIsAvailable of " + text);
            findings.Expect(isAvailable <= 1,
                            "whether " + text + " is available is neither 0 nor 1");
        }
    }
}

void CheckUnknownEntries(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.RequireFeatures(PxnFeatureDataEnum)) {
        const SdkFunctions& sdk = session.Sdk();
        constexpr const char* kNoEntry = "ThereIsNoSuchEntry";
        constexpr std::int64_t kNoNumber = -0x7654321076543210;
        std::int64_t number = 0;
        PxnBool isAvailable = 0;
        const char* entry = nullptr;
        PxnFeatureEnumEntry description{};
        const std::string whose = " of an unknown entry of " + name;
        findings.ExpectResult(PxnErrNotFound,
                              sdk.PxnFeatureEnumAsInt(handle, info.name, kNoEntry, &number),
                              "PxnFeatureEnumAsInt" + whose);
        findings.ExpectResult(
            PxnErrNotFound,
            sdk.PxnFeatureEnumIsAvailable(handle, info.name, kNoEntry, &isAvailable),
            "PxnFeatureEnumIsAvailable" + whose);
        findings.ExpectResult(PxnErrNotFound,
                              sdk.PxnFeatureEnumAsString(handle, info.name, kNoNumber, &entry),
                              "PxnFeatureEnumAsString" + whose);
        findings.ExpectResult(PxnErrNotFound,
                              sdk.PxnFeatureEnumEntryGet(handle, info.name, kNoEntry, &description,
                                                         sizeof description),
                              "PxnFeatureEnumEntryGet" + whose);
    }
}

/// The protocol of PxnFeatureStringGet and PxnFeatureRawGet. `length` is what the value has.
template <typename Function>
void CheckBytes(Function get, const NamedFeature& feature, bool isTerminated, Findings& findings) {
    constexpr char kUnwritten = 0x5A;
    std::uint32_t size = 0;
    findings.RequireSuccess(get(feature.handle, feature.info.name, nullptr, 0, &size),
                            "asking for the size of " + feature.name);
    findings.Expect(size > 0 || !isTerminated, feature.name + " has size 0, without terminator");
    for (const std::uint32_t room : {size, size + 3, size / 2, 0u}) {
        std::vector<char> buffer(std::size_t{room} + 1, kUnwritten);
        std::uint32_t filled = 0;
        const std::string call = "reading " + std::to_string(size) + " bytes of " + feature.name +
                                 " with room for " + std::to_string(room);
        findings.ExpectResult(room < size ? PxnErrMoreData : PxnErrSuccess,
                              get(feature.handle, feature.info.name, buffer.data(), room, &filled),
                              call);
        findings.Expect(filled == size, call + " says " + std::to_string(filled));
        findings.Expect(buffer.back() == kUnwritten, call + " wrote behind the buffer");
        findings.Expect(!isTerminated || room == 0 || std::memchr(buffer.data(), '\0', room),
                        call + " wrote no terminator");
    }
}

bool IsSteady(const NamedFeature& feature) {
    return (feature.info.featureFlags & PxnFeatureFlagVolatile) == 0;
}

void CheckStrings(Session& session, Findings& findings) {
    for (const NamedFeature& feature : ReadableFeatures(session, PxnFeatureDataString)) {
        if (IsSteady(feature)) {
            CheckBytes(session.Sdk().PxnFeatureStringGet, feature, true, findings);
        }
        std::uint32_t most = 0;
        findings.RequireSuccess(
            session.Sdk().PxnFeatureStringMaxlengthQuery(feature.handle, feature.info.name, &most),
            "PxnFeatureStringMaxlengthQuery of " + feature.name);
        const std::string text = ReadString(session.Sdk(), feature);
        findings.Expect(text.size() <= most, feature.name + " has " + std::to_string(text.size()) +
                                                 " bytes, more than " + std::to_string(most));
    }
}

void CheckRaws(Session& session, Findings& findings) {
    for (const NamedFeature& feature : ReadableFeatures(session, PxnFeatureDataRaw)) {
        if (IsSteady(feature)) {
            CheckBytes(session.Sdk().PxnFeatureRawGet, feature, false, findings);
        }
        std::uint32_t length = 0;
        std::uint32_t filled = 0;
        findings.ExpectSuccess(
            session.Sdk().PxnFeatureRawLengthQuery(feature.handle, feature.info.name, &length),
            "PxnFeatureRawLengthQuery of " + feature.name);
        session.Sdk().PxnFeatureRawGet(feature.handle, feature.info.name, nullptr, 0, &filled);
        findings.Expect(length == filled, feature.name + " has length " + std::to_string(length) +
                                              " and reads as " + std::to_string(filled) + " bytes");
    }
}

void CheckBools(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : ReadableFeatures(session, PxnFeatureDataBool)) {
        PxnBool value = 9;
        findings.ExpectSuccess(session.Sdk().PxnFeatureBoolGet(handle, info.name, &value),
                               "PxnFeatureBoolGet of " + name);
        findings.Expect(value <= 1, name + " is neither 0 nor 1");
    }
}

void CheckCommands(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.RequireFeatures(PxnFeatureDataCommand)) {
        PxnBool isDone = 9;
        findings.ExpectSuccess(session.Sdk().PxnFeatureCommandIsDone(handle, info.name, &isDone),
                               "PxnFeatureCommandIsDone of " + name);
        findings.Expect(isDone <= 1, "whether " + name + " is done is neither 0 nor 1");
    }
}

void CheckWrongTypes(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.Features()) {
        // What a library writes by mistake must not get into a camera.
        const bool canWrite = (info.featureFlags & PxnFeatureFlagWrite) != 0;
        for (const Call& call : AllCalls()) {
            if (call.type != PxnFeatureDataUnknown && call.type != info.featureDataType &&
                !(call.isWrite && canWrite)) {
                findings.ExpectResult(PxnErrWrongType, call.run(session.Sdk(), {handle, info.name}),
                                      std::string(call.function) + " of " + name);
            }
        }
    }
}

} // namespace

std::vector<Check> ValueChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"values", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("integers keep their limits", CheckInts),
        check("integers are among their valid values", CheckValueSetMembers),
        check("floats keep their limits", CheckFloats),
        check("enumerations have one of their entries", CheckEnumValues),
        check("entries and numbers agree", CheckEnumNumbers),
        check("unknown entries", CheckUnknownEntries),
        check("texts and their buffers", CheckStrings),
        check("raw bytes and their buffers", CheckRaws),
        check("booleans are 0 or 1", CheckBools),
        check("commands say whether they are done", CheckCommands),
        check("functions of other types", CheckWrongTypes),
    };
}

} // namespace conformance
