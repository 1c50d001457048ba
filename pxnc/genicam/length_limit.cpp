// length_limit.cpp - registers whose length another node names
#include "pxnc/genicam/length_limit.h"

#include "pxnc/genicam/description_check.h"
#include "pxnc/genicam/description_walk.h"

#include <cstring>
#include <string>
#include <vector>

namespace genicam {
namespace {

/// Takes the texts of a property away and returns them as one. The parser makes several of a text
/// with character references, or when elements within it are not well-formed.
std::string TakeText(ArvDomNode* property) {
    std::string text;
    while (ArvDomNode* const child = arv_dom_node_get_first_child(property)) {
        if (ARV_IS_DOM_TEXT(child)) {
            text += arv_dom_node_get_node_value(child);
        }
        arv_dom_node_remove_child(property, child);
    }
    return text;
}

void AppendWithText(ArvDomDocument* document, ArvDomNode* parent, const char* element,
                    const std::string& text, const char* name = nullptr) {
    ArvDomNode* const child = ARV_DOM_NODE(arv_dom_document_create_element(document, element));
    arv_dom_node_append_child(parent, child);
    if (name) {
        arv_dom_element_set_attribute(ARV_DOM_ELEMENT(child), "Name", name);
    }
    arv_dom_node_append_child(
        child, ARV_DOM_NODE(arv_dom_document_create_text_node(document, text.c_str())));
}

/// Adds a formula with the limited value of the node `length`; it gets the name `limited`.
void AddFormula(ArvDomDocument* document, const std::string& length, const std::string& limited) {
    ArvDomNode* const root = ARV_DOM_NODE(arv_dom_document_get_document_element(document));
    ArvDomNode* const formula =
        ARV_DOM_NODE(arv_dom_document_create_element(document, "IntSwissKnife"));
    arv_dom_node_append_child(root, formula);
    arv_dom_element_set_attribute(ARV_DOM_ELEMENT(formula), "Name", limited.c_str());
    AppendWithText(document, formula, "pVariable", length, "LENGTH");
    AppendWithText(document, formula, "Formula",
                   "(LENGTH < 0) || (LENGTH > " + std::to_string(kLongestRegister) +
                       ") ? 0 : LENGTH");
}

} // namespace

void LimitRegisterLengths(ArvGc* description) {
    ArvDomDocument* const document = ARV_DOM_DOCUMENT(description);
    std::vector<ArvDomNode*> links; // before any is added
    for (ArvDomNode* node = ARV_DOM_NODE(description); node; node = NextOf(node)) {
        if (ARV_IS_GC_PROPERTY_NODE(node) &&
            std::strcmp(arv_dom_node_get_node_name(node), "pLength") == 0) {
            links.push_back(node);
        }
    }
    for (ArvDomNode* const link : links) {
        const std::string length = TakeText(link);
        // Longer than the other name, so that limits cannot be each other's.
        const std::string limited = length + ", limited";
        AddFormula(document, length, limited);
        arv_dom_node_append_child(
            link, ARV_DOM_NODE(arv_dom_document_create_text_node(document, limited.c_str())));
    }
}

} // namespace genicam
