// description_check.cpp - whether a camera's GenICam description can be evaluated
#include "pxnc/genicam/description_check.h"

#include "pxnc/genicam/description_walk.h"
#include "pxnc/genicam/glib_owner.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace genicam {
namespace {

// Far beyond what cameras need; a step takes up to some kilobytes of stack.
constexpr unsigned kMostSteps = 200;
constexpr std::uint64_t kMostEvaluations = 1'000'000;

/// The nodes that indices take their offsets from. Aravis knows them and names them to nobody, so
/// they are read from the text.
class IndexOffsets {
public:
    IndexOffsets(ArvGc* description, std::string_view text) {
        static constexpr GMarkupParser kParser = {OnElement, nullptr, nullptr, nullptr, nullptr};
        const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
            g_markup_parse_context_new(&kParser, G_MARKUP_TREAT_CDATA_AS_TEXT, &names, nullptr),
            g_markup_parse_context_free);
        // Letters of other encodings are of no interest.
        const MemoryOwner<char> valid(
            g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
        ErrorOwner error;
        const bool isRead =
            g_markup_parse_context_parse(context.get(), valid.get(), -1, error.Receive()) != 0 &&
            g_markup_parse_context_end_parse(context.get(), error.Receive()) != 0;
        std::vector<ArvDomNode*> indices;
        for (ArvDomNode* node = ARV_DOM_NODE(description); node; node = NextOf(node)) {
            if (ARV_IS_GC_INDEX_NODE(node)) {
                indices.push_back(node);
            }
        }
        isKnown = isRead || indices.empty();
        for (std::size_t at = 0; indices.size() == names.size() && at < indices.size(); ++at) {
            byIndex.emplace(indices[at], &names[at]);
        }
    }

    /// False when there are indices and the text cannot be read.
    bool IsKnown() const { return isKnown; }
    /// Of that index; of all where Aravis has left some out.
    std::vector<std::string> Of(ArvDomNode* index) const {
        const auto found = byIndex.find(index);
        return found == byIndex.end() ? names : std::vector<std::string>{*found->second};
    }

private:
    static void OnElement(GMarkupParseContext*, const gchar* element, const gchar** attributes,
                          const gchar** values, gpointer target, GError**) {
        if (std::strcmp(element, "pIndex") != 0) {
            return;
        }
        std::string& name = static_cast<std::vector<std::string>*>(target)->emplace_back();
        for (int at = 0; attributes[at]; ++at) {
            if (std::strcmp(attributes[at], "pOffset") == 0) {
                name = values[at];
            }
        }
    }

    std::vector<std::string> names; // one for each index, empty where there is none
    std::unordered_map<ArvDomNode*, const std::string*> byIndex;
    bool isKnown = false;
};

/// Walks from nodes to those that their values depend on.
class DependencyWalk {
public:
    explicit DependencyWalk(const IndexOffsets& indexOffsets) : offsets(indexOffsets) {}

    /// False when evaluating `node` could go wrong.
    bool IsHarmless(ArvDomNode* node, unsigned step = 1) {
        if (step > kMostSteps) {
            return false;
        }
        const auto [place, isNew] = known.try_emplace(node);
        if (!isNew) {
            // One that is not finished is reached from itself.
            return place->second.steps != 0 && step + place->second.steps <= kMostSteps + 1;
        }
        Cost cost{1, 1};
        for (ArvDomNode* const needed : DependenciesOf(node)) {
            if (!IsHarmless(needed, step + 1)) {
                return false;
            }
            const Cost& below = known.at(needed);
            cost.steps = std::max(cost.steps, below.steps + 1);
            cost.evaluations += below.evaluations;
            if (cost.evaluations > kMostEvaluations) {
                return false;
            }
        }
        known.at(node) = cost;
        return true;
    }

private:
    struct Cost {
        unsigned steps = 0; // of the longest way; 0 until it is known
        std::uint64_t evaluations = 0;
    };

    /// Whether a property of that name refers to a node whose value is part of its owner's. Limits
    /// and access are none: in good descriptions they depend on one another.
    static bool IsPartOfValue(const char* name) {
        static constexpr const char* kNames[] = {
            "pValue",  "pValueCopy", "pValueIndexed", "pValueDefault", "pIndex",        "pAddress",
            "pLength", "pVariable",  "pOnValue",      "pOffValue",     "pCommandValue",
        };
        return std::any_of(std::begin(kNames), std::end(kNames),
                           [name](const char* part) { return std::strcmp(name, part) == 0; });
    }

    std::vector<ArvDomNode*> DependenciesOf(ArvDomNode* node) const {
        std::vector<ArvDomNode*> needed;
        const auto add = [&needed](ArvGcNode* linked) {
            if (linked) {
                needed.push_back(ARV_DOM_NODE(linked));
            }
        };
        // Entries belong to their enumeration, and a formula in a register to its address.
        const bool isOwner =
            !ARV_IS_GC_REGISTER_DESCRIPTION_NODE(node) && !ARV_IS_GC_GROUP_NODE(node);
        if (ARV_IS_GC_STRUCT_ENTRY_NODE(node)) {
            needed.push_back(arv_dom_node_get_parent_node(node)); // has the address
        }
        for (ArvDomNode* child = arv_dom_node_get_first_child(node); child;
             child = arv_dom_node_get_next_sibling(child)) {
            if (isOwner && ARV_IS_GC_FEATURE_NODE(child) && !ARV_IS_GC_STRUCT_ENTRY_NODE(child)) {
                needed.push_back(child);
            } else if (ARV_IS_GC_PROPERTY_NODE(child) &&
                       IsPartOfValue(arv_dom_node_get_node_name(child))) {
                add(arv_gc_property_node_get_linked_node(ARV_GC_PROPERTY_NODE(child)));
            }
            if (ARV_IS_GC_INDEX_NODE(child)) {
                ArvGc* const description = arv_gc_node_get_genicam(ARV_GC_NODE(child));
                for (const std::string& name : offsets.Of(child)) {
                    add(arv_gc_get_node(description, name.c_str()));
                }
            }
        }
        return needed;
    }

    const IndexOffsets& offsets;
    std::unordered_map<ArvDomNode*, Cost> known;
};

/// Whether the node is a length that memory can be allocated for.
bool IsBadLength(ArvDomNode* node) {
    if (!ARV_IS_GC_PROPERTY_NODE(node) ||
        std::strcmp(arv_dom_node_get_node_name(node), "Length") != 0) {
        return false;
    }
    ErrorOwner error;
    const gint64 length =
        arv_gc_property_node_get_int64(ARV_GC_PROPERTY_NODE(node), error.Receive());
    return length < 0 || length > kLongestRegister;
}

} // namespace

PxnError CheckDescription(ArvGc* description, std::string_view text) {
    const IndexOffsets offsets(description, text);
    if (!offsets.IsKnown()) {
        return PxnErrXml;
    }
    DependencyWalk walk(offsets);
    for (ArvDomNode* node = ARV_DOM_NODE(description); node; node = NextOf(node)) {
        if (IsBadLength(node) || (ARV_IS_GC_FEATURE_NODE(node) && !walk.IsHarmless(node))) {
            return PxnErrXml;
        }
    }
    return PxnErrSuccess;
}

} // namespace genicam
