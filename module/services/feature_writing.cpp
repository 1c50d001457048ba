// feature_writing.cpp - writing a feature, and why one does not take a value
#include "platform/text.h"
#include "services/feature_records.h"
#include "services/feature_service.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"
#include "sync/feature_writer.h"

namespace pyxen {

namespace {

/// All entries, those that cannot be selected at present marked.
std::string EntriesText(const Feature& feature, const FeatureRange& range) {
    std::string text;
    for (const char* const entry : range.entries) {
        if (entry) {
            bool isAvailable = false;
            const PxnError unknown = feature.IsAvailable(entry, isAvailable);
            text += (text.empty() ? "" : ", ") + std::string(entry) +
                    (unknown == PxnErrSuccess && !isAvailable ? " (not at present)" : "");
        }
    }
    return text.empty() ? "; there are none" : "; there are " + text;
}

std::string EntryRefusal(const Feature& feature, const FeatureRange& range,
                         const EnumEntry& entry) {
    const std::string name = "\"" + std::string(entry.name ? entry.name : "") + "\"";
    return (range.Contains(entry) ? ": the entry " + name + " cannot be selected at present"
                                  : ": there is no entry " + name) +
           EntriesText(feature, range);
}

/// The numbers that the feature takes.
std::string NumbersText(const Feature& feature, const FeatureRange& range,
                        const FeatureValue& value) {
    const bool isInteger = value.GetIf<std::int64_t>();
    const auto limit = [&](std::int64_t integer, double real) {
        return ShownValue(isInteger ? FeatureValue(integer) : FeatureValue(real));
    };
    std::string text = limit(range.integers.least, range.floats.least) + " to " +
                       limit(range.integers.most, range.floats.most);
    std::int64_t increment = 0;
    if (isInteger && feature.Increment(increment) == PxnErrSuccess && increment > 1) {
        text += " in steps of " + std::to_string(increment);
    }
    return text;
}

/// Whether the range and the steps of an integer say why a number is refused.
bool IsOutside(const Feature& feature, const FeatureRange& range, const FeatureValue& value) {
    if (!range.Contains(value)) {
        return true;
    }
    const std::int64_t* const number = value.GetIf<std::int64_t>();
    std::int64_t increment = 0;
    if (!number || feature.Increment(increment) != PxnErrSuccess || increment <= 1) {
        return false;
    }
    // In the range, so that the difference of unsigned numbers is the distance.
    const std::uint64_t distance =
        static_cast<std::uint64_t>(*number) - static_cast<std::uint64_t>(range.integers.least);
    return distance % static_cast<std::uint64_t>(increment) != 0;
}

/// What follows the feature's path: what it takes, as far as it can be asked.
std::string LimitsText(const Feature& feature, const FeatureValue& value) {
    const std::string shown = ShownValue(value);
    FeatureRange range;
    if (feature.Range(range) != PxnErrSuccess) {
        return ": " + shown + " is out of range";
    }
    if (const auto* entry = value.GetIf<EnumEntry>()) {
        return EntryRefusal(feature, range, *entry);
    }
    if (value.GetIf<std::string>()) {
        return range.Contains(value)
                   ? ": " + shown + " is not taken"
                   : " takes at most " + std::to_string(range.longestText) + " bytes, not " + shown;
    }
    return IsOutside(feature, range, value)
               ? " takes " + NumbersText(feature, range, value) + ", not " + shown
               : ": " + shown + " is not taken";
}

ServiceOutcome NotTaken(const ServiceFeature& feature, const FeatureValue& value) {
    return {MV_SERVICE_OUT_OF_RANGE, feature.Path() + LimitsText(feature.Get(), value)};
}

ServiceOutcome Refusal(const ServiceFeature& feature, const FeatureValue& value,
                       const SyncCheckResult& check) {
    switch (check.refusal) {
    case SyncRefusal::kNone:
        return {MV_SERVICE_OUT_OF_MEMORY, "out of memory"};
    case SyncRefusal::kUnknownAccess:
        if (check.isOwn) {
            return feature.Failure(check.error);
        }
        break;
    case SyncRefusal::kProtected:
        if (check.isOwn) {
            return {MV_SERVICE_NO_ACCESS, feature.Path() + ": cannot be written at present"};
        }
        break;
    case SyncRefusal::kOutOfRange:
        if (check.isOwn) {
            return NotTaken(feature, value);
        }
        break;
    }
    return {MV_SERVICE_REFUSED, feature.Path() + ": " + ShownValue(value) + " is refused by " +
                                    check.failingFeature +
                                    ", which depends on it: " + check.reason};
}

ServiceOutcome NotWritten(const ServiceFeature& feature, const FeatureValue& value,
                          PxnError error) {
    return error == PxnErrInvalidValue ? NotTaken(feature, value)
                                       : feature.Failure(error, ShownValue(value));
}

} // namespace

ServiceOutcome FeatureService::WriteValue(const ServiceFeature& feature, FeatureValue& value,
                                          bool& isKnown, Logger log) {
    IServiceGrabber& grabber = context.Grabber();
    SyncEngine engine(grabber.Api(), grabber.SyncRules(), grabber.CameraModules(), log);
    const WriteOutcome outcome =
        FeatureWriter(engine).Write(*feature.module.cache, feature.Get(), value);
    switch (outcome.step) {
    case WriteStep::kRefused:
        return Refusal(feature, value, outcome.refusal);
    case WriteStep::kNotWritten:
        return NotWritten(feature, value, outcome.error);
    case WriteStep::kNotReadBack:
        // A feature that can only be written has no value to report.
        if (outcome.error != PxnErrInvalidAccess) {
            return feature.Failure(outcome.error, "has been written and cannot be read");
        }
        break;
    case WriteStep::kDone:
        isKnown = true;
        break;
    }
    return Synchronise(feature, value, log);
}

ServiceOutcome FeatureService::CheckValue(const ServiceFeature& feature, const FeatureValue& value,
                                          Logger log) {
    IServiceGrabber& grabber = context.Grabber();
    SyncEngine engine(grabber.Api(), grabber.SyncRules(), grabber.CameraModules(), log);
    const SyncCheckResult check =
        engine.CheckSyncPath(feature.module.cache, feature.info->name, value);
    return check.ok ? ServiceOutcome() : Refusal(feature, value, check);
}

ServiceOutcome FeatureService::Synchronise(const ServiceFeature& feature, const FeatureValue& value,
                                           Logger log) {
    IServiceGrabber& grabber = context.Grabber();
    FeatureCache* const cache = feature.module.cache;
    SyncEngine engine(grabber.Api(), grabber.SyncRules(), grabber.CameraModules(), log);
    const std::vector<FeatureRef>* const dependencies =
        grabber.SyncRules().FindSyncEntry(cache->GetModuleName(), feature.info->name);
    std::string failed;
    for (std::size_t index = 0; dependencies && index < dependencies->size(); ++index) {
        const FeatureRef& one = (*dependencies)[index];
        // A failure never stops the others.
        if (engine.SyncFeature(cache, feature.info->name,
                               grabber.CameraModules().FindCacheByName(one.ModuleName.c_str()),
                               one.FeatureName.c_str(), true) != 1) {
            failed += (failed.empty() ? "" : ", ") + one.ModuleName + "/" + one.FeatureName;
        }
    }
    if (failed.empty()) {
        return {};
    }
    return {MV_SERVICE_NOT_SYNCHRONISED, feature.Path() + ": " + ShownValue(value) +
                                             " has been written, but " + failed +
                                             " did not follow"};
}

} // namespace pyxen
