// feature_caches.h - finding the caches of the open camera's modules
#pragma once

#include "pxnc.h"

class FeatureCache;

namespace pyxen {

/// What the synchronisation engine needs to know of the grabber.
class IFeatureCaches {
public:
    /// The cache whose module name equals `name` without regard to case, or null.
    virtual FeatureCache* FindCacheByName(const char* name) = 0;

protected:
    ~IFeatureCaches() = default;
};

} // namespace pyxen
