// visible_change.h - which features have come into sight and which have gone
#pragma once

#include "ui/feature_leaf.h"

#include <cstddef>
#include <vector>

namespace pyxen {

/// Indices of leaves, in order.
struct VisibleChange {
    std::vector<std::size_t> appeared;
    std::vector<std::size_t> vanished;
};

/// Compares what is visible now with what was. Features are the same when module and feature have
/// the same names.
VisibleChange CompareVisible(const std::vector<FeatureLeaf>& leaves,
                             const std::vector<std::size_t>& before,
                             const std::vector<std::size_t>& now);

} // namespace pyxen
