// xml_reader.cpp - checked access to an XML document
#include "pxnc/skeleton/xml_reader.h"

#include "pxnc/skeleton/number_text.h"

#include <algorithm>
#include <cstring>

namespace skeleton {
namespace {

bool Contains(std::initializer_list<const char*> names, const char* name) {
    return std::any_of(names.begin(), names.end(),
                       [name](const char* candidate) { return std::strcmp(candidate, name) == 0; });
}

} // namespace

XmlReader::XmlReader(const std::string& newText, const std::string& newName)
    : text(newText), name(newName) {
    const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
    if (!result) {
        throw XmlError(name + ":" + std::to_string(LineAt(result.offset)) + ": " +
                       result.description());
    }
}

pugi::xml_node XmlReader::Root(const char* element) const {
    const pugi::xml_node root = document.document_element();
    if (std::strcmp(root.name(), element) != 0) {
        Fail(root,
             "the root element is <" + std::string(root.name()) + ">, expected <" + element + ">");
    }
    return root;
}

void XmlReader::AllowAttributes(pugi::xml_node node,
                                std::initializer_list<const char*> attributes) const {
    for (const pugi::xml_attribute attribute : node.attributes()) {
        if (!Contains(attributes, attribute.name())) {
            Fail(node, "unknown attribute \"" + std::string(attribute.name()) + "\" of <" +
                           node.name() + ">");
        }
    }
}

void XmlReader::Allow(pugi::xml_node node, std::initializer_list<const char*> attributes,
                      std::initializer_list<const char*> children) const {
    AllowAttributes(node, attributes);
    for (const pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_element && !Contains(children, child.name())) {
            Fail(child,
                 "unknown element <" + std::string(child.name()) + "> in <" + node.name() + ">");
        }
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            Fail(child, "text is not expected in <" + std::string(node.name()) + ">");
        }
    }
}

std::string XmlReader::Text(pugi::xml_node node, const char* attribute) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    if (found.empty() || *found.value() == 0) {
        Fail(node, "<" + std::string(node.name()) + "> needs the attribute \"" + attribute + "\"");
    }
    return found.value();
}

std::string XmlReader::TextOr(pugi::xml_node node, const char* attribute,
                              const std::string& fallback) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    return found.empty() ? fallback : found.value();
}

std::uint32_t XmlReader::NumberOr(pugi::xml_node node, const char* attribute,
                                  std::uint32_t fallback, std::uint32_t lowest,
                                  std::uint32_t highest) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    if (found.empty()) {
        return fallback;
    }
    std::int64_t value = 0;
    if (!ParseInt(found.value(), value)) {
        Fail(node, std::string("\"") + attribute + "\" is not a number: \"" + found.value() + "\"");
    }
    if (value < std::int64_t{lowest} || value > std::int64_t{highest}) {
        Fail(node, std::string("\"") + attribute + "\" must lie between " + std::to_string(lowest) +
                       " and " + std::to_string(highest));
    }
    return static_cast<std::uint32_t>(value);
}

bool XmlReader::FlagOr(pugi::xml_node node, const char* attribute, bool fallback) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    bool value = fallback;
    if (!found.empty() && !ParseBool(found.value(), value)) {
        Fail(node, std::string("\"") + attribute + "\" must be true or false");
    }
    return value;
}

std::size_t XmlReader::LineOf(pugi::xml_node node) const {
    // A text begins behind the tag before it; what people see of it may be lines below.
    const char* const value = node.value();
    const std::size_t blank = std::strspn(value, " \t\r\n");
    return LineAt(node.offset_debug()) +
           static_cast<std::size_t>(std::count(value, value + blank, '\n'));
}

void XmlReader::Fail(pugi::xml_node node, const std::string& reason) const {
    throw XmlError(name + ":" + std::to_string(LineOf(node)) + ": " + reason);
}

std::size_t XmlReader::LineAt(std::ptrdiff_t offset) const {
    const auto length = static_cast<std::ptrdiff_t>(text.size());
    const auto end = text.begin() + std::clamp<std::ptrdiff_t>(offset, 0, length);
    return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

} // namespace skeleton
