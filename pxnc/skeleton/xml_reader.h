// xml_reader.h - checked access to an XML document, with line numbers in every complaint
#pragma once

#include <pugixml.hpp>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>

namespace skeleton {

/// A document that cannot be used; what() is "FILE:LINE: reason".
class XmlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A parsed document. Everything missing, unknown or malformed throws XmlError.
class XmlReader {
public:
    /// `name` stands for the file in messages.
    XmlReader(const std::string& text, const std::string& name);

    /// The root element, which must have that name.
    pugi::xml_node Root(const char* element) const;
    /// Refuses attributes and child elements that are not listed, and stray text.
    void Allow(pugi::xml_node node, std::initializer_list<const char*> attributes,
               std::initializer_list<const char*> children) const;
    std::string Text(pugi::xml_node node, const char* attribute) const;
    std::string TextOr(pugi::xml_node node, const char* attribute,
                       const std::string& fallback) const;
    std::uint32_t NumberOr(pugi::xml_node node, const char* attribute, std::uint32_t fallback,
                           std::uint32_t lowest, std::uint32_t highest) const;
    bool FlagOr(pugi::xml_node node, const char* attribute, bool fallback) const;
    void AllowAttributes(pugi::xml_node node, std::initializer_list<const char*> attributes) const;
    std::size_t LineOf(pugi::xml_node node) const;
    [[noreturn]] void Fail(pugi::xml_node node, const std::string& reason) const;

private:
    std::size_t LineAt(std::ptrdiff_t offset) const;

    const std::string text;
    const std::string name;
    pugi::xml_document document;
};

} // namespace skeleton
