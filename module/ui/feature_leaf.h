// feature_leaf.h - a feature's row in the feature control dialog
#pragma once

#include "pxnc.h"
#include "sdk/feature.h"

#include <cstdint>
#include <string>

class FeatureCache;

/// What is known of a row since the tree was built. The cache may have been filled anew or cleared
/// meanwhile; what was registered with the SDK belongs to `handle`.
struct FeatureLeaf {
    /// Whether the cache still holds the module that `handle` stands for. The SDK must not be asked
    /// about the handle of one that was closed.
    bool IsOpen() const;

    FeatureCache* cache = nullptr;
    PxnHandle handle = nullptr;
    std::string moduleName;
    std::string name;
    std::string path;              ///< the qualified name
    const char* sdkName = nullptr; ///< the SDK's text, which lasts until its last shutdown
    std::uint32_t flags = 0;       ///< PxnFeatureFlag...
    bool triggersRestart = false;  ///< a change of it invalidates the frame buffers

    /// The row's feature, of the type in `description`, for as long as the leaf stays.
    pyxen::Feature In(const CPyxenAPIAccess& api, const PxnFeatureInfo& description) const {
        return {api, handle, name.c_str(),
                static_cast<pyxen::FeatureType>(description.featureDataType)};
    }
};
