// check_sync_path.cpp - could a value be written to a feature and to all that depend on it?
//
// One walk for every type; the range test and the words stand in one class per type. The irregular
// words are intended.
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"
#include "sync/feature_cache.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"
#include "sync/sync_engine.h"

namespace {

/// A value that is to be written, and what is said when a feature refuses it. `own` tells the
/// feature itself from those that depend on it.
class ProposedValue {
public:
    virtual bool IsInRange(CPyxenAPIAccess& api, const FeatureCache& cache,
                           const char* name) const = 0;
    virtual std::string AccessErrorText(const char* path) const = 0;
    virtual void LogProtected(const Logger& log, const char* path, bool own) const = 0;
    virtual void LogOutOfRange(const Logger& log, const char* path, bool own) const = 0;

protected:
    ~ProposedValue() = default;
};

class ProposedInt final : public ProposedValue {
public:
    explicit ProposedInt(std::int64_t proposed) : value(proposed) {}

    bool IsInRange(CPyxenAPIAccess& api, const FeatureCache& cache,
                   const char* name) const override {
        return api.IsIntInRange(cache.GetHandle(), cache.GetModuleName(), name, value);
    }
    std::string AccessErrorText(const char* path) const override {
        return FormatText(
            "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: Cannot query the accessibility of %s",
            path);
    }
    void LogProtected(const Logger& log, const char* path, bool own) const override {
        if (own) {
            log.Error("CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: %s cannot be written", path);
        } else {
            log.Error("CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: Feature %s cannot be written",
                      path);
        }
    }
    void LogOutOfRange(const Logger& log, const char* path, bool own) const override {
        if (own) {
            log.Error(
                "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: int64 feature (value = %I64d) wouldn't be applicable to %s (range error)",
                value, path);
        } else {
            log.Error(
                "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: int64 feature (value = %I64d) wouldn't be synchable to %s (range error)",
                value, path);
        }
    }

private:
    std::int64_t value;
};

class ProposedFloat final : public ProposedValue {
public:
    explicit ProposedFloat(double proposed) : value(proposed) {}

    bool IsInRange(CPyxenAPIAccess& api, const FeatureCache& cache,
                   const char* name) const override {
        return api.IsFloatInRange(cache.GetHandle(), cache.GetModuleName(), name, value);
    }
    std::string AccessErrorText(const char* path) const override {
        return FormatText(
            "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Cannot query the accessibility of %s",
            path);
    }
    void LogProtected(const Logger& log, const char* path, bool own) const override {
        if (own) {
            // The conversion letter is missing on purpose; the line names no feature.
            log.Error(
                "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature % cannot be written");
        } else {
            log.Error(
                "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature %s cannot be written",
                path);
        }
    }
    void LogOutOfRange(const Logger& log, const char* path, bool own) const override {
        if (own) {
            log.Error(
                "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: float feature (value = %lf) wouldn't be applicable to %s (range error)",
                value, path);
        } else {
            log.Error(
                "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: float feature (value = %lf) wouldn't be synchable to %s (range error)",
                value, path);
        }
    }

private:
    double value;
};

class ProposedEnum final : public ProposedValue {
public:
    explicit ProposedEnum(const char* proposed) : value(proposed) {}

    bool IsInRange(CPyxenAPIAccess& api, const FeatureCache& cache,
                   const char* name) const override {
        return api.IsEnumInRange(cache.GetHandle(), cache.GetModuleName(), name, value);
    }
    std::string AccessErrorText(const char* path) const override {
        return FormatText(
            "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: Cannot query the accessibility of %s",
            path);
    }
    void LogProtected(const Logger& log, const char* path, bool) const override {
        log.Error("CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: Feature %s cannot be written",
                  path);
    }
    void LogOutOfRange(const Logger& log, const char* path, bool own) const override {
        if (own) {
            log.Error(
                "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: enum feature (value = %s) wouldn't be applicable to %s (range error)",
                value, path);
        } else {
            log.Error(
                "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: enum feature (value = %s) wouldn't be synchable to %s (range error)",
                value, path);
        }
    }

private:
    const char* value;
};

class ProposedString final : public ProposedValue {
public:
    explicit ProposedString(const char* proposed) : value(proposed) {}

    bool IsInRange(CPyxenAPIAccess& api, const FeatureCache& cache,
                   const char* name) const override {
        return api.IsStringInRange(cache.GetHandle(), cache.GetModuleName(), name, value);
    }
    std::string AccessErrorText(const char* path) const override {
        return FormatText(
            "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Cannot query the accessibility of %s",
            path);
    }
    void LogProtected(const Logger& log, const char* path, bool) const override {
        log.Error("CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Feature %s cannot be written",
                  path);
    }
    void LogOutOfRange(const Logger& log, const char* path, bool own) const override {
        if (own) {
            // The words of the enumeration are kept on purpose.
            log.Error(
                "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: enum feature (value = %s) wouldn't be applicable to %s (range error)",
                value, path);
        } else {
            log.Error(
                "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: string feature (value = %s) wouldn't be synchable to %s (range error)",
                value, path);
        }
    }

private:
    const char* value;
};

/// Has no range; its lines carry the float's tag on purpose.
class ProposedBool final : public ProposedValue {
public:
    bool IsInRange(CPyxenAPIAccess&, const FeatureCache&, const char*) const override {
        return true;
    }
    std::string AccessErrorText(const char* path) const override {
        return FormatText(
            "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Cannot query the accessibility of %s",
            path);
    }
    void LogProtected(const Logger& log, const char* path, bool) const override {
        log.Error("CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature %s cannot be written",
                  path);
    }
    void LogOutOfRange(const Logger&, const char*, bool) const override {}
};

} // namespace

/// One walk from a feature to all that depend on it.
class SyncEngine::PathCheck {
public:
    PathCheck(SyncEngine& owner, const ProposedValue& proposed) : engine(owner), value(proposed) {}

    SyncCheckResult Run(FeatureCache* cache, const char* name) {
        result.bufferImpact = IsBufferImpactingFeature(cache, name);
        result.ok = Examine(cache, name, true) == Verdict::kAccepted;
        if (result.ok) {
            ExamineDependencies(cache, name);
        }
        return result;
    }

    static SyncCheckResult Unexplained() { return {false, "- unkown -", "General error", false}; }

private:
    enum class Verdict { kAccepted, kNoAccess, kOutOfRange };

    void ExamineDependencies(const FeatureCache* cache, const char* name) {
        const std::vector<FeatureRef>* dependencies =
            engine.syncher.FindSyncEntry(cache->GetModuleName(), name);
        if (!dependencies) {
            return;
        }
        for (const FeatureRef& dependency : *dependencies) {
            FeatureCache* module =
                engine.moduleCaches.FindCacheByName(dependency.ModuleName.c_str());
            const char* feature = dependency.FeatureName.c_str();
            result.bufferImpact |= IsBufferImpactingFeature(module, feature);
            const Verdict verdict = Examine(module, feature, false);
            if (verdict != Verdict::kAccepted) {
                result.ok = false;
            }
            if (verdict == Verdict::kOutOfRange) {
                return; // features without access do not end the walk, on purpose
            }
        }
    }

    Verdict Examine(FeatureCache* cache, const char* name, bool own) {
        const std::string path = cache ? cache->GetFeaturePath(name) : "<not available>";
        PxnBool readable = 0;
        PxnBool writeable = 0;
        // A module without cache is as unknown as one that the SDK does not find.
        const PxnError code = cache ? engine.api.PxnFeatureAccessQuery(cache->GetHandle(), name,
                                                                       &readable, &writeable)
                                    : PxnErrNotFound;
        if (code != 0) {
            ReportSdkError(value.AccessErrorText(path.c_str()).c_str(), code, engine.log);
            return Refuse(Verdict::kNoAccess, path, "Unknown accessibility");
        }
        if (!writeable) {
            value.LogProtected(engine.log, path.c_str(), own);
            return Refuse(Verdict::kNoAccess, path, "Write protected");
        }
        if (!value.IsInRange(engine.api, *cache, name)) {
            value.LogOutOfRange(engine.log, path.c_str(), own);
            return Refuse(Verdict::kOutOfRange, path, "Out of range");
        }
        return Verdict::kAccepted;
    }

    Verdict Refuse(Verdict verdict, const std::string& path, const char* reason) {
        result.failingFeature = path;
        result.reason = reason;
        return verdict;
    }

    SyncEngine& engine;
    const ProposedValue& value;
    SyncCheckResult result = Unexplained();
};

SyncCheckResult SyncEngine::IntFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                    std::int64_t value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return PathCheck(*this, ProposedInt(value)).Run(cache, name); });
}

SyncCheckResult SyncEngine::FloatFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                      double value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return PathCheck(*this, ProposedFloat(value)).Run(cache, name); });
}

SyncCheckResult SyncEngine::EnumFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                     const char* value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return PathCheck(*this, ProposedEnum(value)).Run(cache, name); });
}

SyncCheckResult SyncEngine::StringFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                       const char* value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return PathCheck(*this, ProposedString(value)).Run(cache, name); });
}

SyncCheckResult SyncEngine::BoolFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                     [[maybe_unused]] bool value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return PathCheck(*this, ProposedBool()).Run(cache, name); });
}
