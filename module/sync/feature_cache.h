// feature_cache.h - the feature descriptions of one SDK module
#pragma once

#include "pxnc.h"
#include "sdk/feature.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"

#include <atomic>
#include <cstdint>
#include <string>

class CPyxenAPIAccess;

/// Holds one module's feature descriptions as the SDK last listed them.
///
/// Filled and read on the thread that opens the camera and on the user-interface thread, and read
/// by services, which exclude opening and closing by a lock of their own. Takes no lock.
/// Invalidation callbacks on SDK threads may come at any time; they read name and handle only.
class FeatureCache {
public:
    FeatureCache() = default;
    virtual ~FeatureCache() = default;
    FeatureCache(const FeatureCache&) = delete;
    FeatureCache& operator=(const FeatureCache&) = delete;

    /// Lists the features of `moduleHandle` anew. `name` must live as long as the cache is filled.
    /// False and a log line when the SDK refuses or memory runs out; what the cache held before
    /// stays unless the SDK failed half-way. An empty list is success.
    bool Init(const char* name, CPyxenAPIAccess* access, PxnHandle moduleHandle,
              pyxen::Logger sink);
    /// Forgets the list, the name and the SDK access.
    void Clear();

    /// Null when the cache has no name.
    const char* GetModuleName() const { return moduleName; }
    PxnHandle GetHandle() const { return handle; }
    std::uint32_t GetFeatureCount() const { return features ? count : 0; }
    const PxnFeatureInfo* GetFeatureList() const { return features.Get(); }

    /// The first record whose name equals `name` byte for byte, or null; none has an empty name.
    const PxnFeatureInfo* Find(const char* name) const;
    /// The feature of a record of this module, for as long as the record and the SDK stay.
    pyxen::Feature GetFeature(const PxnFeatureInfo& record) const {
        return {*api, handle, record.name, static_cast<pyxen::FeatureType>(record.featureDataType)};
    }
    /// "/", module name, category, "/", feature name; "<not available>" when it is not here.
    std::string GetFeaturePath(const char* name) const;
    /// Writes every feature with its current value to the log.
    void PrintParameters() const;

private:
    void PrintFeature(const pyxen::Feature& feature) const;

    // Atomic: events on SDK threads look modules up while the host's thread opens a camera.
    std::atomic<const char*> moduleName{nullptr};
    std::atomic<PxnHandle> handle{nullptr};
    CPyxenAPIAccess* api = nullptr;
    pyxen::Logger log;
    pyxen::MallocArray<PxnFeatureInfo> features;
    std::uint32_t count = 0;
};
