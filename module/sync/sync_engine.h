// sync_engine.h - keeps dependent features of the open camera's modules in agreement
#pragma once

#include "sdk/feature_value.h"
#include "sdk/logger.h"

#include <cstdint>
#include <string>
#include <vector>

class CPyxenAPIAccess;
class FeatureCache;
class FeatureSyncher;
struct FeatureRef;

namespace pyxen {

class IFeatureCaches;

/// Why a pre-write check failed.
enum class SyncRefusal {
    kNone,          ///< it has not, or no reason was set
    kUnknownAccess, ///< the SDK could not be asked
    kProtected,     ///< not writable at present
    kOutOfRange,
};

/// What a pre-write check hands out.
struct SyncCheckResult {
    bool ok = false;
    std::string failingFeature; ///< path of what refused, "- unkown -" when none was named
    std::string reason;         ///< short reason, "General error" when none was set
    bool bufferImpact = false;  ///< the write would change the frame buffer layout
    SyncRefusal refusal = SyncRefusal::kNone;
    bool isOwn = false;             ///< the feature itself refused, none that depends on it
    PxnError error = PxnErrSuccess; ///< of the SDK where the access is unknown
};

/// Copies values between modules by the loaded declarations, and checks a value against all that
/// it would be copied to. No state of its own; runs on the caller's thread without a lock.
class SyncEngine {
public:
    SyncEngine(CPyxenAPIAccess& access, const FeatureSyncher& rules, IFeatureCaches& caches,
               Logger sink);

    /// 1 when the target holds the source's value afterwards, else 0.
    int SyncFeature(FeatureCache* source, const char* sourceName, FeatureCache* target,
                    const char* targetName, bool onlyIfDifferent);
    /// Applies every declaration whose watched module is the cache's; 1 when all succeeded.
    int SyncModuleFeatures(FeatureCache* cache, bool onlyIfDifferent);
    /// Applies the dependencies of one feature; 1 when all succeeded or there are none.
    int SyncDependentFeatures(FeatureCache* cache, const char* featureName, bool onlyIfDifferent);

    /// Whether a feature and all that depend on it take the value, which decides the range test for
    /// all of them. Bytes are not checked and pass.
    SyncCheckResult CheckSyncPath(FeatureCache* cache, const char* name, const FeatureValue& value);
    // The same for one type each.
    SyncCheckResult IntFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                            std::int64_t value);
    SyncCheckResult FloatFeatureCheckSyncPath(FeatureCache* cache, const char* name, double value);
    SyncCheckResult EnumFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                             const char* value);
    SyncCheckResult StringFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                               const char* value);
    SyncCheckResult BoolFeatureCheckSyncPath(FeatureCache* cache, const char* name, bool value);

    /// True when writing the feature changes the frame buffer layout.
    static bool IsBufferImpactingFeature(FeatureCache* cache, const char* featureName);

private:
    class PathCheck;

    int CopyValue(FeatureCache* source, const char* sourceName, FeatureCache* target,
                  const char* targetName, bool onlyIfDifferent);
    int SyncDependencies(FeatureCache* cache, const char* featureName,
                         const std::vector<FeatureRef>& dependencies, bool onlyIfDifferent);

    CPyxenAPIAccess& api;
    const FeatureSyncher& syncher;
    IFeatureCaches& moduleCaches;
    Logger log;
};

} // namespace pyxen
