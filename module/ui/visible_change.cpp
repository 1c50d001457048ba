// visible_change.cpp - which features have come into sight and which have gone
#include "ui/visible_change.h"

#include <algorithm>

namespace pyxen {

VisibleChange CompareVisible(const std::vector<FeatureLeaf>& leaves,
                             const std::vector<std::size_t>& before,
                             const std::vector<std::size_t>& now) {
    const auto lacking = [&](const std::vector<std::size_t>& these,
                             const std::vector<std::size_t>& those) {
        std::vector<std::size_t> result;
        for (const std::size_t index : these) {
            const FeatureLeaf& leaf = leaves[index];
            if (std::none_of(those.begin(), those.end(), [&](std::size_t other) {
                    return leaves[other].name == leaf.name &&
                           leaves[other].moduleName == leaf.moduleName;
                })) {
                result.push_back(index);
            }
        }
        return result;
    };
    return {lacking(now, before), lacking(before, now)};
}

} // namespace pyxen
