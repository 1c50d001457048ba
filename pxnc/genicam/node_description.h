// node_description.h - properties of a node of a GenICam description
#pragma once

#include "pxnc.h"
#include "pxnc/skeleton/text_pool.h"

#include <arv.h>

#include <cstdint>

namespace genicam {

/// The record's parts that do not depend on the node's type: everything but type, unit and
/// representation.
PxnFeatureInfo DescribeNode(skeleton::TextPool& texts, ArvGcFeatureNode* node,
                            const char* category);

std::uint32_t ToVisibility(ArvGcVisibility visibility);
/// As the description spells it; empty when it has none.
const char* RepresentationName(ArvGcRepresentation representation);

/// The property element of that name below `node` ("PollingTime", "pValue", ...), or null.
ArvGcPropertyNode* FindProperty(ArvGcFeatureNode* node, const char* name);

/// Whether the node's value comes with a frame.
bool IsChunk(ArvGcFeatureNode* node);

/// What the node could ever do, whatever is locked at the moment.
ArvGcAccessMode StaticAccessMode(ArvGcFeatureNode* node);

} // namespace genicam
