// node_description.cpp - properties of a node of a GenICam description
#include "pxnc/genicam/node_description.h"

#include "pxnc/genicam/glib_owner.h"

#include <cstring>

namespace genicam {
namespace {

// A chain of values longer than this is a description that runs in circles.
constexpr int kLongestChain = 16;

bool Reads(ArvGcAccessMode mode) {
    return mode == ARV_GC_ACCESS_MODE_RO || mode == ARV_GC_ACCESS_MODE_RW;
}

bool Writes(ArvGcAccessMode mode) {
    return mode == ARV_GC_ACCESS_MODE_WO || mode == ARV_GC_ACCESS_MODE_RW;
}

std::uint32_t PollingTime(ArvGcFeatureNode* node) {
    ArvGcPropertyNode* property = FindProperty(node, "PollingTime");
    if (!property) {
        return 0;
    }
    ErrorOwner error;
    const gint64 time = arv_gc_property_node_get_int64(property, error.Receive());
    return error || time < 0 || time > G_MAXUINT32 ? 0 : static_cast<std::uint32_t>(time);
}

bool IsStreamable(ArvGcFeatureNode* node) {
    ArvGcPropertyNode* property = FindProperty(node, "Streamable");
    return property && arv_gc_property_node_get_streamable(property, ARV_GC_STREAMABLE_NO) ==
                           ARV_GC_STREAMABLE_YES;
}

/// The node that the property of that name refers to, or null.
ArvGcFeatureNode* FindLinked(ArvGcFeatureNode* node, const char* name) {
    ArvGcPropertyNode* property = FindProperty(node, name);
    ArvGcNode* linked = property ? arv_gc_property_node_get_linked_node(property) : nullptr;
    return linked && ARV_IS_GC_FEATURE_NODE(linked) ? ARV_GC_FEATURE_NODE(linked) : nullptr;
}

/// Whether `matches` is true for the node or one of those that its value comes from.
template <typename Matches>
bool AnyBehind(ArvGcFeatureNode* node, Matches matches) {
    for (int step = 0; node && step < kLongestChain; ++step) {
        if (matches(node)) {
            return true;
        }
        node = FindLinked(node, "pValue");
    }
    return false;
}

/// Whether the register behind the node must not be cached: the camera changes it by itself.
bool IsVolatile(ArvGcFeatureNode* node) {
    return AnyBehind(node, [](ArvGcFeatureNode* one) {
        ArvGcPropertyNode* cachable = FindProperty(one, "Cachable");
        return cachable && arv_gc_property_node_get_cachable(cachable, ARV_GC_CACHABLE_UNDEFINED) ==
                               ARV_GC_CACHABLE_NO_CACHE;
    });
}

} // namespace

ArvGcPropertyNode* FindProperty(ArvGcFeatureNode* node, const char* name) {
    for (ArvDomNode* child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child;
         child = arv_dom_node_get_next_sibling(child)) {
        if (ARV_IS_GC_PROPERTY_NODE(child) &&
            std::strcmp(arv_dom_node_get_node_name(child), name) == 0) {
            return ARV_GC_PROPERTY_NODE(child);
        }
    }
    return nullptr;
}

bool IsChunk(ArvGcFeatureNode* node) {
    return AnyBehind(node, [](ArvGcFeatureNode* one) {
        ArvGcFeatureNode* port = FindLinked(one, "pPort");
        return port && FindProperty(port, "ChunkID");
    });
}

ArvGcAccessMode StaticAccessMode(ArvGcFeatureNode* node) {
    const ArvGcFeatureNodeClass* type = ARV_GC_FEATURE_NODE_GET_CLASS(node);
    const ArvGcAccessMode own =
        type->get_access_mode ? type->get_access_mode(node) : ARV_GC_ACCESS_MODE_RO;
    const ArvGcAccessMode imposed = arv_gc_feature_node_get_imposed_access_mode(node);
    const bool reads = Reads(own) && Reads(imposed);
    const bool writes = Writes(own) && Writes(imposed);
    if (reads) {
        return writes ? ARV_GC_ACCESS_MODE_RW : ARV_GC_ACCESS_MODE_RO;
    }
    return writes ? ARV_GC_ACCESS_MODE_WO : ARV_GC_ACCESS_MODE_UNDEFINED;
}

std::uint32_t ToVisibility(ArvGcVisibility visibility) {
    switch (visibility) {
    case ARV_GC_VISIBILITY_BEGINNER:
        return PxnVisibilityBeginner;
    case ARV_GC_VISIBILITY_EXPERT:
        return PxnVisibilityExpert;
    case ARV_GC_VISIBILITY_GURU:
        return PxnVisibilityGuru;
    case ARV_GC_VISIBILITY_INVISIBLE:
        return PxnVisibilityInvisible;
    default:
        return PxnVisibilityUnknown;
    }
}

const char* RepresentationName(ArvGcRepresentation representation) {
    switch (representation) {
    case ARV_GC_REPRESENTATION_LINEAR:
        return "Linear";
    case ARV_GC_REPRESENTATION_LOGARITHMIC:
        return "Logarithmic";
    case ARV_GC_REPRESENTATION_BOOLEAN:
        return "Boolean";
    case ARV_GC_REPRESENTATION_PURE_NUMBER:
        return "PureNumber";
    case ARV_GC_REPRESENTATION_HEX_NUMBER:
        return "HexNumber";
    case ARV_GC_REPRESENTATION_IPV4_ADDRESS:
        return "IPV4Address";
    case ARV_GC_REPRESENTATION_MAC_ADDRESS:
        return "MACAddress";
    default:
        return "";
    }
}

PxnFeatureInfo DescribeNode(skeleton::TextPool& texts, ArvGcFeatureNode* node,
                            const char* category) {
    const auto intern = [&texts](const char* text) {
        return texts.Intern(text ? text : "");
    };
    PxnFeatureInfo info = {};
    info.name = intern(arv_gc_feature_node_get_name(node));
    info.category = intern(category);
    const char* displayName = arv_gc_feature_node_get_display_name(node);
    info.displayName = displayName ? intern(displayName) : info.name;
    info.tooltip = intern(arv_gc_feature_node_get_tooltip(node));
    info.description = intern(arv_gc_feature_node_get_description(node));
    const bool standard = arv_gc_feature_node_get_name_space(node) == ARV_GC_NAME_SPACE_STANDARD;
    info.sfncNamespace = intern(standard ? "Standard" : "Custom");
    info.unit = intern("");
    info.representation = info.unit;
    const ArvGcAccessMode mode = StaticAccessMode(node);
    info.pollingTime = PollingTime(node);
    info.featureFlags =
        (Reads(mode) ? std::uint32_t{PxnFeatureFlagRead} : 0u) |
        (Writes(mode) ? std::uint32_t{PxnFeatureFlagWrite} : 0u) |
        (info.pollingTime != 0 || IsVolatile(node) ? std::uint32_t{PxnFeatureFlagVolatile} : 0u);
    info.visibility = ToVisibility(arv_gc_feature_node_get_visibility(node));
    info.isStreamable = IsStreamable(node) ? 1 : 0;
    info.hasSelectedFeatures =
        ARV_IS_GC_SELECTOR(node) && arv_gc_selector_is_selector(ARV_GC_SELECTOR(node)) ? 1 : 0;
    return info;
}

} // namespace genicam
