// restart_rule.h - which changes invalidate the frame buffers
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

class FeatureCache;

namespace pyxen {

/// Whether a change of `path` invalidates the frame buffers: the path of a category when it begins
/// with "/", else the name of a feature of the cache. A name that the cache does not hold is
/// reported to `log`, which may be null.
bool DoesPathTriggerRestart(const FeatureCache& cache, const char* path, Logger log);
/// The same for a feature at hand.
bool DoesFeatureTriggerRestart(const PxnFeatureInfo& feature);

} // namespace pyxen
