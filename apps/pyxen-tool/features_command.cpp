// features_command.cpp - lists the features of the open camera's modules
#include "apps/common/command_line.h"
#include "apps/common/session.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/feature_access.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace pyxen;

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

JsonValue EntriesJson(const std::vector<ShownRange::Entry>& entries) {
    std::vector<JsonValue> list;
    list.reserve(entries.size());
    for (const auto& [name, available] : entries) {
        list.push_back(JsonObject({{"name", name}, {"available", available}}));
    }
    return JsonArray(list);
}

JsonValue Describe(const FeatureAccess& feature) {
    const PxnFeatureInfo& info = feature.Info();
    const std::string access = feature.Access();
    const std::optional<FeatureValue> value = feature.Value();
    std::vector<JsonMember> members = {{"path", feature.Path()},
                                       {"module", feature.Cache().GetModuleName()},
                                       {"name", info.name},
                                       {"type", feature.TypeName()},
                                       {"access", access},
                                       {"value", value ? ToJson(*value) : nullptr},
                                       {"unit", info.unit ? info.unit : ""}};
    const ShownRange range = feature.Range();
    const std::pair<const char*, const std::optional<JsonValue>&> limits[] = {
        {"min", range.least},
        {"max", range.most},
        {"increment", range.increment},
        {"maxLength", range.maxLength},
    };
    for (const auto& [key, limit] : limits) {
        if (limit) {
            members.push_back({key, *limit});
        }
    }
    if (range.entries) {
        members.push_back({"entries", EntriesJson(*range.entries)});
    }
    return JsonObject(members);
}

std::string RangeText(const ShownRange& range) {
    std::string text;
    if (range.least) {
        if (range.isWholeType) {
            return text;
        }
        text = range.least->Text() + ".." + range.most->Text();
        if (range.increment) {
            text += " step " + range.increment->Text();
        }
    } else if (range.maxLength) {
        text = "at most " + range.maxLength->Text() + " bytes";
    } else if (range.entries) {
        for (const auto& [name, available] : *range.entries) {
            text += text.empty() ? "" : "|";
            text += name + (available ? "" : "(unavailable)");
        }
    }
    return text;
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

/// One feature as a line of the table.
std::string Line(const FeatureAccess& feature) {
    const std::string access = feature.Access();
    const std::optional<FeatureValue> value = feature.Value();
    const std::string range = RangeText(feature.Range());
    std::string line = Padded(feature.Path(), 64) + " " + Padded(feature.TypeName(), 11) + " " +
                       Padded(access, 2) + " " + (value ? ToJson(*value).Text() : "-");
    const char* const unit = feature.Info().unit;
    if (value && unit && *unit) {
        line += std::string(" ") + unit;
    }
    return platform::PrintableText(line + (range.empty() ? "" : "  ") + range) + "\n";
}

void PrintFeatures(CMivoraKVNPyxenClass& grabber, const FeaturesOptions& options) {
    std::vector<JsonValue> list;
    std::string table;
    const std::string filter = Lower(options.filter);
    for (FeatureCache* const cache : Modules(grabber, options.module)) {
        for (std::uint32_t i = 0; i < cache->GetFeatureCount(); ++i) {
            const FeatureAccess feature(*cache, cache->GetFeatureList()[i]);
            if (Lower(feature.Path()).find(filter) == std::string::npos) {
                continue;
            }
            if (options.json) {
                list.push_back(Describe(feature));
            } else {
                table += Line(feature);
            }
        }
    }
    if (options.json) {
        std::printf("%s\n", JsonArray(list).Text().c_str());
    } else {
        std::printf("%s", table.c_str());
    }
}

} // namespace

void AddFeaturesCommand(CommandLine& program, const AppOptions& options, LinkedMaker& maker) {
    Command command =
        program.AddCommand("features", "List every feature of the open camera's modules");
    const auto features = std::make_shared<FeaturesOptions>();
    command.AddOption("--module", features->module,
                      "Only this module: PxnSystem, Interface, Transportlayer, Localdevice, "
                      "Camera or Stream0");
    command.AddOption("--filter", features->filter,
                      "Only features whose path has this text in it, case ignored");
    command.AddFlag("--json", features->json, "Print JSON");
    command.SetFooter("Path, type, access, value with unit, and range or entries.\n\n"
                      "Examples:\n"
                      "  pyxen-tool features --module Camera --filter exposure\n"
                      "  pyxen-tool features --json\n");
    command.OnRun([&options, &maker, features] {
        Session session(options, maker);
        session.OpenCamera();
        PrintFeatures(maker.Grabber(), *features);
    });
}
