// settings_file.cpp - the stored values of a module in an XML file
#include "pxnc/skeleton/settings_file.h"

#include "platform/file_system.h"
#include "platform/printable_text.h"
#include "pxnc/skeleton/xml_reader.h"

#include <cstdio>
#include <sstream>
#include <utility>
#include <vector>

namespace skeleton {
namespace {

constexpr const char* kSettingsRoot = "PxnSettings";

std::vector<StoredValue> ParseSettings(const std::string& text, const std::string& path) {
    const XmlReader xml(text, path);
    const pugi::xml_node root = xml.Root(kSettingsRoot);
    xml.Allow(root, {"version"}, {"feature"});
    std::vector<StoredValue> values;
    for (const pugi::xml_node node : root.children("feature")) {
        xml.Allow(node, {"name", "value"}, {"selector"});
        StoredValue stored{xml.Text(node, "name")};
        stored.value = xml.TextOr(node, "value", "");
        for (const pugi::xml_node selector : node.children("selector")) {
            xml.Allow(selector, {"name", "value"}, {});
            stored.selectors.emplace_back(xml.Text(selector, "name"), xml.Text(selector, "value"));
        }
        values.push_back(std::move(stored));
    }
    return values;
}

void AppendElement(pugi::xml_node& node, const std::string& name, const std::string& value) {
    node.append_attribute("name") = name.c_str();
    node.append_attribute("value") = value.c_str();
}

} // namespace

PxnError SaveSettings(Module& module, const std::string& path) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(kSettingsRoot);
    root.append_attribute("version") = "1";
    for (const StoredValue& stored : module.GetStoredValues()) {
        pugi::xml_node node = root.append_child("feature");
        AppendElement(node, stored.feature, stored.value);
        for (const auto& [name, state] : stored.selectors) {
            pugi::xml_node selector = node.append_child("selector");
            AppendElement(selector, name, state);
        }
    }
    std::ostringstream text;
    document.save(text, "  ");
    return platform::ReplaceWholeFile(path, text.str()) ? PxnErrSuccess : PxnErrIO;
}

PxnError LoadSettings(Module& module, const std::string& path) {
    std::string text;
    if (!platform::ReadWholeFile(path, text)) {
        return PxnErrNotFound;
    }
    std::vector<StoredValue> values;
    try {
        values = ParseSettings(text, path);
    } catch (const XmlError& error) {
        std::fprintf(stderr, "PxnC: %s\n", platform::PrintableText(error.what()).c_str());
        return PxnErrXml;
    }
    return module.ApplyStoredValues(std::move(values));
}

} // namespace skeleton
