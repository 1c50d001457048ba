// description_walk.cpp - all nodes of a camera's GenICam description
#include "pxnc/genicam/description_walk.h"

namespace genicam {

ArvDomNode* NextOf(ArvDomNode* node) {
    if (ArvDomNode* const child = arv_dom_node_get_first_child(node)) {
        return child;
    }
    for (; node; node = arv_dom_node_get_parent_node(node)) {
        if (ArvDomNode* const sibling = arv_dom_node_get_next_sibling(node)) {
            return sibling;
        }
    }
    return nullptr;
}

} // namespace genicam
