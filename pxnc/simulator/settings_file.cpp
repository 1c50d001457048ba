#include "pxnc/simulator/settings_file.h"

#include "platform/file_system.h"
#include "pxnc/simulator/number_text.h"
#include "pxnc/simulator/xml_reader.h"

#include <algorithm>
#include <any>
#include <cstdio>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

namespace pxsim {
namespace {

constexpr const char* kRoot = "PxnSettings";

struct StoredValue {
    std::string feature;
    std::vector<std::pair<std::string, std::string>> selectors; // name and value, outermost first
    std::string value;
};

using Snapshot = std::map<Feature*, std::any>;

Snapshot Remember(const Module& module) {
    Snapshot snapshot;
    for (const auto& feature : module.Features()) {
        if (feature->DataType() != PxnFeatureDataCommand) {
            snapshot.emplace(feature.get(), feature->Snapshot());
        }
    }
    return snapshot;
}

void Return(const Snapshot& snapshot) {
    for (const auto& [feature, value] : snapshot) {
        feature->Restore(value);
    }
}

/// Turns the selectors of a feature through all their states and calls `visit` in each.
template <class Visit>
void ForEachState(const std::vector<Feature*>& selectors, std::size_t depth, Visit visit) {
    if (depth == selectors.size()) {
        return visit();
    }
    for (const std::string& state : selectors[depth]->States()) {
        if (selectors[depth]->PutText(state)) {
            ForEachState(selectors, depth + 1, visit);
        }
    }
}

std::vector<StoredValue> Collect(Module& module) {
    std::vector<StoredValue> values;
    for (const auto& feature : module.Features()) {
        if (!feature->IsStored() || feature->IsHidden()) {
            continue;
        }
        ForEachState(feature->Selectors(), 0, [&] {
            StoredValue stored;
            stored.feature = feature->Name();
            if (!feature->IsReadable() || feature->ToText(stored.value) != PxnErrSuccess) {
                return;
            }
            for (const Feature* selector : feature->Selectors()) {
                std::string state;
                selector->ToText(state);
                stored.selectors.emplace_back(selector->Name(), state);
            }
            values.push_back(std::move(stored));
        });
    }
    return values;
}

PxnError Apply(Module& module, const StoredValue& stored) {
    Feature* feature = module.FindVisible(stored.feature.c_str());
    if (feature == nullptr) {
        return PxnErrNotFound;
    }
    for (const auto& [name, state] : stored.selectors) {
        Feature* selector = module.Find(name.c_str());
        if (selector == nullptr || !selector->PutText(state)) {
            return PxnErrInvalidValue;
        }
    }
    std::string present;
    if (feature->ToText(present) == PxnErrSuccess && present == stored.value) {
        return PxnErrSuccess; // also where it cannot be written at present
    }
    return feature->FromText(stored.value);
}

// Selectors come last, so that they end as the file has them; the inner ones before the outer.
void Order(const Module& module, std::vector<StoredValue>& values) {
    const auto rank = [&module](const StoredValue& value) {
        const Feature* feature = module.FindVisible(value.feature.c_str());
        const bool selects = feature != nullptr && feature->Info().hasSelectedFeatures != 0;
        constexpr std::size_t kDeepest = 8;
        return selects ? kDeepest - value.selectors.size() : 0;
    };
    std::stable_sort(values.begin(), values.end(),
                     [&](const StoredValue& left, const StoredValue& right) {
                         return rank(left) < rank(right);
                     });
}

PxnError ApplyAll(Module& module, std::vector<StoredValue> values) {
    Order(module, values);
    for (std::size_t before = values.size() + 1; values.size() < before;) {
        before = values.size();
        std::vector<StoredValue> refused;
        for (StoredValue& value : values) {
            if (Apply(module, value) != PxnErrSuccess) {
                refused.push_back(std::move(value));
            }
        }
        values = std::move(refused);
    }
    // What only other settings lock was valid together with them when it was saved.
    for (const StoredValue& value : values) {
        if (Apply(module, value) != PxnErrInvalidAccess ||
            !module.FindVisible(value.feature.c_str())->PutText(value.value)) {
            return PxnErrInvalidValue;
        }
    }
    return PxnErrSuccess;
}

std::vector<StoredValue> Parse(const std::string& text, const std::string& path) {
    const XmlReader xml(text, path);
    const pugi::xml_node root = xml.Root(kRoot);
    xml.Allow(root, {"version"}, {"feature"});
    std::vector<StoredValue> values;
    for (const pugi::xml_node node : root.children("feature")) {
        xml.Allow(node, {"name", "value"}, {"selector"});
        StoredValue stored;
        stored.feature = xml.Text(node, "name");
        stored.value = xml.TextOr(node, "value", "");
        for (const pugi::xml_node selector : node.children("selector")) {
            xml.Allow(selector, {"name", "value"}, {});
            stored.selectors.emplace_back(xml.Text(selector, "name"), xml.Text(selector, "value"));
        }
        values.push_back(std::move(stored));
    }
    return values;
}

} // namespace

PxnError SaveSettings(Module& module, const std::string& path) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(kRoot);
    root.append_attribute("version") = "1";
    {
        platform::MutexLock lock(module.ValueMutex());
        const Module::Quiet quiet(module); // turning the selectors is nobody's business
        const Snapshot before = Remember(module);
        for (const StoredValue& stored : Collect(module)) {
            pugi::xml_node node = root.append_child("feature");
            node.append_attribute("name") = stored.feature.c_str();
            node.append_attribute("value") = stored.value.c_str();
            for (const auto& [name, state] : stored.selectors) {
                pugi::xml_node selector = node.append_child("selector");
                selector.append_attribute("name") = name.c_str();
                selector.append_attribute("value") = state.c_str();
            }
        }
        Return(before);
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
        values = Parse(text, path);
    } catch (const XmlError& error) {
        std::fprintf(stderr, "PxnC: %s\n", error.what());
        return PxnErrXml;
    }
    platform::MutexLock lock(module.ValueMutex());
    if (module.IsStreaming()) {
        return PxnErrInvalidAccess;
    }
    const Snapshot before = Remember(module);
    PxnError result = PxnErrSuccess;
    {
        const Module::Quiet quiet(module);
        result = ApplyAll(module, std::move(values));
        if (result != PxnErrSuccess) {
            Return(before);
        }
    }
    module.InvalidateAll();
    return result;
}

} // namespace pxsim
