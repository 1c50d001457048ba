// features_command.cpp - lists the features of the open camera's modules
#include "apps/common/command_line.h"
#include "apps/common/session.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/feature_access.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "grabber/mivora_kvn_pyxen_class.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

struct FeaturesOptions {
    std::string module;
    std::string filter;
    bool json = false;
};

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::vector<FeatureCache*> Modules(CMivoraKVNPyxenClass& grabber, const std::string& name) {
    if (!name.empty()) {
        return {&FeatureAccess::RequireModule(grabber, name)};
    }
    std::vector<FeatureCache*> modules{&grabber.SystemCache()};
    for (std::uint32_t i = 0; i < grabber.GetNumFeatureCaches(); ++i) {
        modules.push_back(grabber.GetFeatureCache(i));
    }
    return modules;
}

Json Describe(const FeatureAccess& feature) {
    const PxnFeatureInfo& info = feature.Info();
    Json object = {{"path", feature.Path()},
                   {"module", feature.Cache().GetModuleName()},
                   {"name", info.name},
                   {"type", feature.TypeName()},
                   {"access", feature.Access()},
                   {"value", feature.Value()},
                   {"unit", info.unit ? info.unit : ""}};
    feature.AddRange(object);
    return object;
}

/// Limits that the type itself has tell nobody anything.
template <typename Number>
bool IsWholeRange(const Json& object) {
    return object["min"] == std::numeric_limits<Number>::lowest() &&
           object["max"] == std::numeric_limits<Number>::max();
}

std::string RangeText(const Json& object) {
    std::string text;
    if (object.contains("min")) {
        if (IsWholeRange<std::int64_t>(object) || IsWholeRange<double>(object)) {
            return text;
        }
        text = JsonDump(object["min"]) + ".." + JsonDump(object["max"]);
        if (object.contains("increment")) {
            text += " step " + JsonDump(object["increment"]);
        }
    } else if (object.contains("maxLength")) {
        text = "at most " + JsonDump(object["maxLength"]) + " bytes";
    } else if (object.contains("entries")) {
        for (const Json& entry : object["entries"]) {
            text += text.empty() ? "" : "|";
            text += entry["name"].get<std::string>();
            text += entry["available"].get<bool>() ? "" : "(unavailable)";
        }
    }
    return text;
}

void PrintLine(const Json& object) {
    const Json& value = object["value"];
    std::string text = value.is_null() ? "-" : JsonDump(value);
    const std::string unit = object["unit"].get<std::string>();
    text += unit.empty() || value.is_null() ? "" : " " + unit;
    const std::string range = RangeText(object);
    std::printf("%-64s %-11s %-2s %s%s%s\n", object["path"].get<std::string>().c_str(),
                object["type"].get<std::string>().c_str(),
                object["access"].get<std::string>().c_str(), text.c_str(),
                range.empty() ? "" : "  ", range.c_str());
}

void PrintFeatures(CMivoraKVNPyxenClass& grabber, const FeaturesOptions& options) {
    Json list = Json::array();
    const std::string filter = Lower(options.filter);
    for (FeatureCache* const cache : Modules(grabber, options.module)) {
        for (std::uint32_t i = 0; i < cache->GetFeatureCount(); ++i) {
            const FeatureAccess feature(grabber.Api(), *cache, cache->GetFeatureList()[i]);
            if (Lower(feature.Path()).find(filter) != std::string::npos) {
                list.push_back(Describe(feature));
            }
        }
    }
    if (options.json) {
        std::printf("%s\n", JsonDump(list).c_str());
    } else {
        std::for_each(list.begin(), list.end(), PrintLine);
    }
}

} // namespace

void AddFeaturesCommand(CLI::App& app, const AppOptions& options, LinkedMaker& maker) {
    CLI::App* const command =
        app.add_subcommand("features", "List every feature of the open camera's modules");
    const auto features = std::make_shared<FeaturesOptions>();
    command->add_option("--module", features->module,
                        "Only this module: PxnSystem, Interface, Transportlayer, Localdevice, "
                        "Camera or Stream0");
    command->add_option("--filter", features->filter,
                        "Only features whose path has this text in it, case ignored");
    command->add_flag("--json", features->json, "Print JSON");
    command->footer("Path, type, access, value with unit, and range or entries.\n\n"
                    "Examples:\n"
                    "  pyxen-tool features --module Camera --filter exposure\n"
                    "  pyxen-tool features --json\n");
    command->callback([&options, &maker, features] {
        Session session(options, maker);
        session.OpenCamera();
        PrintFeatures(maker.Grabber(), *features);
    });
}
