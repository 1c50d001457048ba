// feature_leaf.cpp - a feature's row in the feature control dialog
#include "ui/feature_leaf.h"

#include "sync/feature_cache.h"

using namespace pyxen;

bool FeatureLeaf::IsOpen() const {
    return cache && cache->GetModuleName() && cache->GetHandle() == handle;
}
