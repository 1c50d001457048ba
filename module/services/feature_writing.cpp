// feature_writing.cpp - writing a feature, and why one does not take a value
#include "platform/text.h"
#include "services/feature_records.h"
#include "services/feature_service.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"
#include "sync/feature_writer.h"

namespace pyxen {

namespace {

/// What the feature would have taken, as far as it can be asked.
std::string LimitsText(const Feature& feature, const FeatureValue& value) {
    const std::string shown = ShownValue(value);
    FeatureRange range;
    if (feature.Range(range) != PxnErrSuccess) {
        return shown + " is out of range";
    }
    if (const auto* entry = value.GetIf<EnumEntry>()) {
        return range.Contains(value)
                   ? "the entry \"" + std::string(entry->name) + "\" cannot be selected at present"
                   : "there is no entry \"" + std::string(entry->name) + "\"";
    }
    if (value.GetIf<std::string>()) {
        return range.Contains(value)
                   ? shown + " is not taken"
                   : shown + " is longer than " + std::to_string(range.longestText) + " bytes";
    }
    if (!range.Contains(value)) {
        const bool isInteger = value.GetIf<std::int64_t>();
        const auto limit = [&](std::int64_t integer, double real) {
            return ShownValue(isInteger ? FeatureValue(integer) : FeatureValue(real));
        };
        return shown + " is not between " + limit(range.integers.least, range.floats.least) +
               " and " + limit(range.integers.most, range.floats.most);
    }
    std::int64_t increment = 0;
    const std::int64_t* const number = value.GetIf<std::int64_t>();
    if (number && feature.Increment(increment) == PxnErrSuccess && increment > 1) {
        // In the range, so that the difference of unsigned numbers is the distance.
        const std::uint64_t distance =
            static_cast<std::uint64_t>(*number) - static_cast<std::uint64_t>(range.integers.least);
        if (distance % static_cast<std::uint64_t>(increment) != 0) {
            return shown + " is not " + std::to_string(range.integers.least) +
                   " plus a multiple of " + std::to_string(increment);
        }
    }
    return shown + " is not taken";
}

ServiceOutcome NotTaken(const ServiceFeature& feature, const FeatureValue& value) {
    return {MV_SERVICE_OUT_OF_RANGE, feature.Path() + ": " + LimitsText(feature.Get(), value)};
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
