// feature_tree.cpp - the rows of the feature control dialog's tree
#include "ui/feature_tree.h"

#include "sync/feature_cache.h"
#include "ui/feature_value_text.h"
#include "ui/restart_rule.h"

#include <algorithm>

namespace pyxen {

void FeatureTree::Clear() {
    rows.clear();
    leaves.clear();
    rowsByName.clear();
    leavesByName.clear();
}

void FeatureTree::AddModule(FeatureCache& cache) {
    const std::uint32_t count = cache.GetFeatureCount();
    if (count == 0 || !cache.GetModuleName()) {
        return;
    }
    const std::string moduleName = cache.GetModuleName();
    const std::size_t module = InsertRow(kNone, moduleName, kNone);
    for (std::uint32_t index = 0; index < count; ++index) {
        const PxnFeatureInfo& feature = cache.GetFeatureList()[index];
        if (!feature.name || !feature.category) {
            continue;
        }
        const std::size_t category = InsertCategoryPath(module, feature.category);
        FeatureLeaf leaf;
        leaf.cache = &cache;
        leaf.handle = cache.GetHandle();
        leaf.moduleName = moduleName;
        leaf.name = feature.name;
        leaf.path = "/" + moduleName + feature.category + "/" + feature.name;
        leaf.sdkName = feature.name;
        leaf.flags = feature.featureFlags;
        leaf.triggersRestart = DoesFeatureTriggerRestart(feature);
        InsertRow(category, leaf.name + "\t" + FormatFeatureValue(cache.GetFeature(feature)),
                  leaves.size());
        leavesByName.try_emplace({leaf.handle, leaf.name}, leaves.size());
        leaves.push_back(std::move(leaf));
    }
}

// The first character is skipped unread: every category has a slash there. Compatibility: one that
// has none loses its first character.
std::size_t FeatureTree::InsertCategoryPath(std::size_t parent, std::string_view path) {
    std::size_t start = 1;
    while (start < path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        if (end > start) {
            std::string piece(path.substr(start, end - start));
            const auto known = rowsByName.find({parent, piece});
            parent = known != rowsByName.end() ? known->second
                                               : InsertRow(parent, std::move(piece), kNone);
        }
        start = end + 1;
    }
    return parent;
}

std::size_t FeatureTree::InsertRow(std::size_t parent, std::string text, std::size_t leaf) {
    const std::size_t row = rows.size();
    rowsByName.try_emplace({parent, text.substr(0, text.find('\t'))}, row);
    rows.push_back({parent, std::move(text), leaf});
    return row;
}

std::optional<std::size_t> FeatureTree::FindLeaf(PxnHandle handle, const char* name) const {
    const auto found = leavesByName.find({handle, name});
    return found == leavesByName.end() ? std::nullopt : std::optional(found->second);
}

} // namespace pyxen
