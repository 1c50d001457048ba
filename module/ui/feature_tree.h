// feature_tree.h - the rows of the feature control dialog's tree
#pragma once

#include "ui/feature_leaf.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pyxen {

/// Modules, their categories and in these the features, in the order of insertion: a row follows
/// its parent, and rows of one parent stand in their order. User-interface thread only.
class FeatureTree {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    struct Row {
        std::size_t parent = kNone; ///< index of the row above, kNone for a module
        std::string text;           ///< the columns, joined by tabs
        std::size_t leaf = kNone;   ///< index of the feature, kNone for modules and categories
    };

    void Clear();
    /// Adds a module with its features and their present values, while the SDK is valid. A module
    /// without features is left out.
    void AddModule(FeatureCache& cache);

    const std::vector<Row>& GetRows() const { return rows; }
    const std::vector<FeatureLeaf>& GetLeaves() const { return leaves; }
    /// The first feature of that module handle and name.
    std::optional<std::size_t> FindLeaf(PxnHandle handle, const char* name) const;

private:
    std::size_t InsertCategoryPath(std::size_t parent, std::string_view path);
    std::size_t InsertRow(std::size_t parent, std::string text, std::size_t leaf);

    std::vector<Row> rows;
    std::vector<FeatureLeaf> leaves;
    /// By parent and name, the first row of each name.
    std::map<std::pair<std::size_t, std::string>, std::size_t> rowsByName;
    std::map<std::pair<PxnHandle, std::string>, std::size_t> leavesByName;
};

} // namespace pyxen
