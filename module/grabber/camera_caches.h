// camera_caches.h - the feature caches of the open camera's modules
#pragma once

#include "sync/feature_cache.h"
#include "sync/feature_caches.h"

#include <array>
#include <cstdint>

namespace pyxen {

// Indices of GetFeatureCache.
inline constexpr std::uint32_t kInterfaceCache = 0;
inline constexpr std::uint32_t kTransportLayerCache = 1;
inline constexpr std::uint32_t kLocalDeviceCache = 2;
inline constexpr std::uint32_t kCameraCache = 3;
inline constexpr std::uint32_t kStreamCache = 4;

/// The caches of the five modules that belong to an open camera, empty while none is open.
///
/// Filled and emptied on the thread that opens and closes the camera. Any thread may look a cache
/// up by name or handle at any time; see FeatureCache for what it may read of it.
class CameraCaches final : public IFeatureCaches {
public:
    std::uint32_t GetCount() const { return static_cast<std::uint32_t>(caches.size()); }
    FeatureCache& operator[](std::uint32_t index) { return caches[index]; }
    const FeatureCache& operator[](std::uint32_t index) const { return caches[index]; }
    /// Null past the end.
    FeatureCache* Get(std::uint32_t index);
    /// Ignores case; null when there is none of that name.
    FeatureCache* FindCacheByName(const char* name) override;
    /// Null when no module has that handle.
    FeatureCache* FindByHandle(PxnHandle handle);
    void Clear();

private:
    std::array<FeatureCache, 5> caches;
};

} // namespace pyxen
