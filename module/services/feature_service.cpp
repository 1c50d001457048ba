// feature_service.cpp - listing, describing and reading features, and running commands
#include "services/feature_service.h"

#include "platform/clock.h"
#include "platform/sleep.h"
#include "services/feature_records.h"
#include "services/held_log.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace pyxen {

namespace {

constexpr std::uint32_t kCommandRestMs = 10;
constexpr std::uint32_t kNoLimit = 0xFFFFFFFFu;
constexpr std::uint64_t kNanosecondsPerMs = 1'000'000;

} // namespace

ServiceOutcome FeatureService::ListModules(MV_TEXT_RECEIVER receiver, void* receiverContext) {
    std::vector<ServiceModule> modules;
    ServiceOutcome outcome = context.WhileLocked([&] {
        modules = context.Modules();
        return ServiceOutcome();
    });
    for (const ServiceModule& module : modules) {
        CallReceiver(receiver, module.name.c_str(), receiverContext);
    }
    return outcome;
}

ServiceOutcome FeatureService::List(const char* module, MV_FEATURE_RECEIVER receiver,
                                    void* receiverContext) {
    std::vector<OwnedDescription> descriptions;
    ServiceOutcome outcome = context.WhileLocked([&] {
        ServiceFeature feature;
        ServiceOutcome found = context.FindModule(module, feature.module);
        if (!found) {
            return found;
        }
        const FeatureCache& cache = *feature.module.cache;
        descriptions.reserve(cache.GetFeatureCount());
        for (std::uint32_t index = 0; index < cache.GetFeatureCount(); ++index) {
            feature.info = cache.GetFeatureList() + index;
            // What the SDK counted and did not fill cannot be asked for.
            if (*feature.info->name) {
                descriptions.emplace_back(feature);
            }
        }
        return ServiceOutcome();
    });
    for (OwnedDescription& description : descriptions) {
        const MV_FEATURE_DESCRIPTION record = description.Record();
        CallReceiver(receiver, &record, receiverContext);
    }
    return outcome;
}

ServiceOutcome FeatureService::Describe(const char* module, const char* name,
                                        MV_FEATURE_RECEIVER receiver, void* receiverContext) {
    std::optional<OwnedDescription> description;
    ServiceOutcome outcome = context.WhileLocked([&] {
        ServiceFeature feature;
        ServiceOutcome found = context.FindFeature(module, name, feature);
        if (found) {
            description.emplace(feature);
            if (const PxnError error = description->AddPresent(feature.Get())) {
                return feature.Failure(error);
            }
        }
        return found;
    });
    if (outcome) {
        const MV_FEATURE_DESCRIPTION record = description->Record();
        CallReceiver(receiver, &record, receiverContext);
    }
    return outcome;
}

ServiceOutcome FeatureService::ReadValue(const ServiceFeature& feature, FeatureValue& value,
                                         std::int64_t& entryNumber) {
    const Feature& one = feature.Get();
    if (!HasValue(one.Type())) {
        return {MV_SERVICE_WRONG_TYPE, feature.Path() + ": has no value"};
    }
    if (ServiceOutcome read = feature.Read(value); !read) {
        return read;
    }
    const EnumEntry* const entry = value.GetIf<EnumEntry>();
    if (entry && entry->name && one.EntryNumber(entry->name, entryNumber) != PxnErrSuccess) {
        entryNumber = 0;
    }
    return {};
}

ServiceOutcome FeatureService::Read(const char* module, const char* name,
                                    MV_VALUE_RECEIVER receiver, void* receiverContext) {
    std::optional<OwnedValue> owned;
    ServiceOutcome outcome = context.WhileLocked([&] {
        ServiceFeature feature;
        ServiceOutcome found = context.FindFeature(module, name, feature);
        FeatureValue value;
        std::int64_t entryNumber = 0;
        if (found && (found = ReadValue(feature, value, entryNumber))) {
            owned.emplace(value, entryNumber);
        }
        return found;
    });
    if (outcome) {
        const MV_FEATURE_VALUE record = owned->Record();
        CallReceiver(receiver, &record, receiverContext);
    }
    return outcome;
}

ServiceOutcome FeatureService::Write(const char* module, const char* name,
                                     const MV_FEATURE_VALUE& given, MV_VALUE_RECEIVER receiver,
                                     void* receiverContext) {
    std::optional<OwnedValue> owned;
    ServiceOutcome outcome;
    {
        HeldLog lines(context.Grabber().Log()); // written when the lock is free again
        outcome = context.WhileLocked([&] {
            ServiceFeature feature;
            FeatureValue value;
            ServiceOutcome written = context.FindFeature(module, name, feature);
            if (!written || !(written = TakeValue(given, feature, value))) {
                return written;
            }
            bool isKnown = false;
            written = WriteValue(feature, value, isKnown, lines.Log());
            if (isKnown) {
                std::int64_t entryNumber = 0;
                if (const EnumEntry* const entry = value.GetIf<EnumEntry>()) {
                    feature.Get().EntryNumber(entry->name, entryNumber);
                }
                owned.emplace(value, entryNumber);
            }
            return written;
        });
    }
    if (owned && receiver) {
        const MV_FEATURE_VALUE record = owned->Record();
        CallReceiver(receiver, &record, receiverContext);
    }
    return outcome;
}

// ---- commands ----

ServiceOutcome FeatureService::StartCommand(const char* module, const char* name) {
    ServiceFeature feature;
    ServiceOutcome found = context.FindFeature(module, name, feature);
    if (!found) {
        return found;
    }
    const Feature command = feature.Get();
    if (command.Type() != FeatureType::kCommand) {
        return {MV_SERVICE_WRONG_TYPE, feature.Path() + ": is no command"};
    }
    if (const PxnError error = command.Run()) {
        return feature.Failure(error);
    }
    return {};
}

ServiceOutcome FeatureService::AskCommand(const char* module, const char* name,
                                          std::uint64_t camera, bool& isDone) {
    ServiceFeature feature;
    if (context.CameraNumber() != camera) {
        return {MV_SERVICE_NO_CAMERA,
                std::string(module) + "/" + name + ": the camera was closed meanwhile"};
    }
    ServiceOutcome found = context.FindFeature(module, name, feature);
    if (found) {
        if (const PxnError error = feature.Get().IsDone(isDone)) {
            return feature.Failure(error);
        }
    }
    return found;
}

ServiceOutcome FeatureService::Run(const char* module, const char* name, std::uint32_t timeoutMs) {
    std::uint64_t camera = 0;
    ServiceOutcome outcome = context.WhileLocked([&] {
        camera = context.CameraNumber();
        return StartCommand(module, name);
    });
    if (!outcome || timeoutMs == 0) {
        return outcome;
    }
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    for (;;) {
        bool isDone = false;
        outcome = context.WhileLocked([&] { return AskCommand(module, name, camera, isDone); });
        const bool isBusy = outcome.result == MV_SERVICE_BUSY;
        if (isDone || (!outcome && !isBusy)) {
            return outcome;
        }
        const std::uint64_t passed = (platform::MonotonicNanoseconds() - begin) / kNanosecondsPerMs;
        // Inside a callback another thread may be waiting for this one.
        if (isBusy || (timeoutMs != kNoLimit && passed >= timeoutMs)) {
            return {MV_SERVICE_TIMED_OUT,
                    std::string(module) + "/" + name + ": has been started and is not done yet"};
        }
        platform::SleepMs(timeoutMs == kNoLimit
                              ? kCommandRestMs
                              : static_cast<std::uint32_t>(
                                    std::min<std::uint64_t>(kCommandRestMs, timeoutMs - passed)));
    }
}

} // namespace pyxen
