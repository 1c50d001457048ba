// check_sync_path.cpp - could a value be written to a feature and to all that depend on it?
#include "sdk/feature.h"
#include "sdk/format_text.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"
#include "sync/feature_cache.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"
#include "sync/sync_engine.h"

#include <variant>

namespace pyxen {

namespace {

template <typename Shown>
using RefusalLine = LogFormat<Shown, const char*>; // value, path
/// None for booleans, which have no range.
using RangeLine = std::variant<std::monostate, RefusalLine<std::int64_t>, RefusalLine<double>,
                               RefusalLine<const char*>>;

/// What is said when a feature refuses a value of one type, with the feature's path. The irregular
/// words are intended.
struct CheckWords {
    NameFormat accessUnknown;
    std::variant<NameFormat, LogFormat<>> ownProtected; // of the feature itself
    NameFormat otherProtected;                          // of one that depends on it
    RangeLine ownOutOfRange;
    RangeLine otherOutOfRange;
};

constexpr TypeTable<CheckWords> kCheckWords = {{
    {
        "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: Cannot query the accessibility of %s",
        NameFormat("CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: %s cannot be written"),
        "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: Feature %s cannot be written",
        RefusalLine<std::int64_t>(
            "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: int64 feature (value = %I64d) wouldn't be applicable to %s (range error)"),
        RefusalLine<std::int64_t>(
            "CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: int64 feature (value = %I64d) wouldn't be synchable to %s (range error)"),
    },
    {
        "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Cannot query the accessibility of %s",
        // Compatibility: the line has no conversion letter and names no feature.
        LogFormat<>("CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature % cannot be written"),
        "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature %s cannot be written",
        RefusalLine<double>(
            "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: float feature (value = %lf) wouldn't be applicable to %s (range error)"),
        RefusalLine<double>(
            "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: float feature (value = %lf) wouldn't be synchable to %s (range error)"),
    },
    {
        "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: Cannot query the accessibility of %s",
        NameFormat("CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: Feature %s cannot be written"),
        "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: Feature %s cannot be written",
        RefusalLine<const char*>(
            "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: enum feature (value = %s) wouldn't be applicable to %s (range error)"),
        RefusalLine<const char*>(
            "CMivoraKVNPyxenClass::EnumFeatureCheckSyncPath: enum feature (value = %s) wouldn't be synchable to %s (range error)"),
    },
    {
        "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Cannot query the accessibility of %s",
        NameFormat(
            "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Feature %s cannot be written"),
        "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Feature %s cannot be written",
        // Compatibility: the enumeration's words.
        RefusalLine<const char*>(
            "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: enum feature (value = %s) wouldn't be applicable to %s (range error)"),
        RefusalLine<const char*>(
            "CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: string feature (value = %s) wouldn't be synchable to %s (range error)"),
    },
    {
        // Compatibility: the float's tag.
        "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Cannot query the accessibility of %s",
        NameFormat("CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature %s cannot be written"),
        "CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature %s cannot be written",
        {},
        {},
    },
}};

} // namespace

/// One walk from a feature to all that depend on it.
class SyncEngine::PathCheck {
public:
    PathCheck(SyncEngine& owner, const FeatureValue& proposed, const CheckWords& lines)
        : engine(owner), value(proposed), words(lines) {}

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
                return; // Compatibility: a feature without access does not end the walk
            }
        }
    }

    Verdict Examine(FeatureCache* cache, const char* name, bool own) {
        const std::string path = cache ? cache->GetFeaturePath(name) : "<not available>";
        bool readable = false;
        bool writable = false;
        // A module without cache is as unknown as one that the SDK does not find.
        const PxnError code = cache ? Feature(engine.api, cache->GetHandle(), name, value.Type())
                                          .Access(readable, writable)
                                    : PxnErrNotFound;
        if (code != PxnErrSuccess) {
            ReportSdkError(FormatText(words.accessUnknown, path.c_str()).c_str(), code, engine.log);
            result.error = code;
            return Refuse(Verdict::kNoAccess, path, "Unknown accessibility",
                          SyncRefusal::kUnknownAccess, own);
        }
        if (!writable) {
            LogProtected(path.c_str(), own);
            return Refuse(Verdict::kNoAccess, path, "Write protected", SyncRefusal::kProtected,
                          own);
        }
        if (!engine.api.IsInRange(cache->GetHandle(), cache->GetModuleName(), name, value,
                                  engine.log)) {
            value.Show("", "", [&](auto shown) {
                engine.log.Error(std::get<RefusalLine<decltype(shown)>>(
                                     own ? words.ownOutOfRange : words.otherOutOfRange),
                                 shown, path.c_str());
            });
            return Refuse(Verdict::kOutOfRange, path, "Out of range", SyncRefusal::kOutOfRange,
                          own);
        }
        return Verdict::kAccepted;
    }

    void LogProtected(const char* path, bool own) const {
        if (!own) {
            engine.log.Error(words.otherProtected, path);
        } else if (const auto* line = std::get_if<NameFormat>(&words.ownProtected)) {
            engine.log.Error(*line, path);
        } else {
            engine.log.Error(std::get<LogFormat<>>(words.ownProtected));
        }
    }

    Verdict Refuse(Verdict verdict, const std::string& path, const char* reason,
                   SyncRefusal refusal, bool own) {
        result.failingFeature = path;
        result.reason = reason;
        result.refusal = refusal;
        result.isOwn = own;
        return verdict;
    }

    SyncEngine& engine;
    const FeatureValue& value;
    const CheckWords& words;
    SyncCheckResult result = Unexplained();
};

SyncCheckResult SyncEngine::CheckSyncPath(FeatureCache* cache, const char* name,
                                          const FeatureValue& value) {
    return NoThrow(PathCheck::Unexplained(), [&] {
        const CheckWords* const words = kCheckWords.Find(value.Type());
        return words ? PathCheck(*this, value, *words).Run(cache, name)
                     : SyncCheckResult{true, "", "", IsBufferImpactingFeature(cache, name)};
    });
}

SyncCheckResult SyncEngine::IntFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                    std::int64_t value) {
    return CheckSyncPath(cache, name, value);
}

SyncCheckResult SyncEngine::FloatFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                      double value) {
    return CheckSyncPath(cache, name, value);
}

SyncCheckResult SyncEngine::EnumFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                     const char* value) {
    return CheckSyncPath(cache, name, EnumEntry{value});
}

SyncCheckResult SyncEngine::StringFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                       const char* value) {
    return NoThrow(PathCheck::Unexplained(),
                   [&] { return CheckSyncPath(cache, name, std::string(value)); });
}

SyncCheckResult SyncEngine::BoolFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                     bool value) {
    return CheckSyncPath(cache, name, value);
}

} // namespace pyxen
