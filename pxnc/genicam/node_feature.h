// node_feature.h - features described by a camera's GenICam description
#pragma once

#include "pxnc/genicam/feature.h"
#include "pxnc/skeleton/text_pool.h"

#include <arv.h>

#include <memory>

namespace genicam {

/// Makes the feature for one node of the description, or null for a node that is none (a category,
/// a port, a structure). `category` is the path under which it is listed. The node must outlive
/// the feature.
std::unique_ptr<Feature> MakeNodeFeature(skeleton::TextPool& texts, ArvGcFeatureNode* node,
                                         const std::string& category);

} // namespace genicam
