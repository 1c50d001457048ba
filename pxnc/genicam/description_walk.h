// description_walk.h - all nodes of a camera's GenICam description
#pragma once

#include <arv.h>

namespace genicam {

/// The next node in the order of the document, or null.
ArvDomNode* NextOf(ArvDomNode* node);

} // namespace genicam
