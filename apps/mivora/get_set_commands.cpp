// get_set_commands.cpp - reads and writes features
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/feature_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

struct NamesOptions {
    Names texts;
    bool json = false;
};

/// Prints the value alone where only one was asked for.
void PrintValue(const FeatureName& name, const std::string& value, bool isOnly) {
    const std::string line = isOnly ? value : name.Text() + "=" + value;
    std::printf("%s\n", platform::PrintableText(line).c_str());
}

JsonValue ValueObject(const FeatureName& name, const std::optional<ServiceValue>& value) {
    return JsonObject({{"module", name.module},
                       {"name", name.feature},
                       {"value", value ? ServiceValueJson(*value) : nullptr}});
}

void GetFeatures(Session& session, const NamesOptions& options) {
    std::vector<FeatureName> names;
    for (const std::string& text : options.texts) {
        names.push_back(ParseFeatureName(text));
    }
    ServiceClient& services = session.Services();
    session.OpenCamera();
    std::vector<JsonValue> objects;
    for (const FeatureName& name : names) {
        if (!name.category.empty()) {
            name.CheckCategory(services.DescribeFeature(name.module, name.feature).category);
        }
        const ServiceValue value = services.ReadFeature(name.module, name.feature);
        if (options.json) {
            objects.push_back(ValueObject(name, value));
        } else {
            PrintValue(name, ServiceValueText(value), names.size() == 1);
        }
    }
    if (options.json) {
        PrintReport({{"features", JsonArray(objects)}});
    }
}

void SetFeatures(Session& session, const NamesOptions& options) {
    const std::vector<FeatureAssignment> assignments = ParseFeatureAssignments(options.texts);
    ServiceClient& services = session.Services();
    session.OpenCamera();
    std::vector<JsonValue> objects;
    ApplyFeatureAssignments(
        services, assignments,
        [&](const FeatureAssignment& applied, const std::optional<ServiceValue>& value) {
            const std::string name = platform::PrintableText(applied.name.Text());
            if (options.json) {
                objects.push_back(ValueObject(applied.name, value));
            } else if (value) {
                PrintValue(applied.name, ServiceValueText(*value), assignments.size() == 1);
            } else {
                std::printf("%s was %s\n", name.c_str(), applied.value ? "written" : "executed");
            }
        });
    if (options.json) {
        PrintReport({{"features", JsonArray(objects)}});
    }
}

} // namespace

void AddGetCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("get", "Print the values of features");
    const auto names = std::make_shared<NamesOptions>();
    command.AddOption("FEATURE", names->texts, "Module and feature, as in Camera/Width")
        .Required()
        .TypeName("MODULE/FEATURE");
    command.AddJson(names->json);
    command.SetFooter("The value alone, or MODULE/FEATURE=VALUE for each of several.\n\n"
                      "Examples:\n"
                      "  mivora get Camera/ExposureTime\n"
                      "  mivora get Camera/Width Camera/Height\n");
    command.OnRun([&options, maker, names] {
        Session session(options, maker());
        GetFeatures(session, *names);
    });
}

void AddSetCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("set", "Write features, and those that depend on them");
    const auto assignments = std::make_shared<NamesOptions>();
    command
        .AddOption("FEATURE", assignments->texts,
                   "Module, feature and value: a number, a text, the name of an entry, true or "
                   "false; none for a command")
        .Required()
        .TypeName("MODULE/FEATURE=VALUE");
    command.AddJson(assignments->json);
    command.SetFooter(
        "Before each write it is checked whether the feature and all features that depend on\n"
        "it by the feature synchronisation file can take the value; what refuses is named. The\n"
        "first failure ends the command and names what was written before it. Prints the value\n"
        "that the feature has then.\n"
        "\n"
        "Examples:\n"
        "  mivora set Camera/Width=640 Camera/Height=480\n"
        "  mivora set Camera/PixelFormat=Mono12p\n"
        "  mivora set Camera/AcquisitionStop\n");
    command.OnRun([&options, maker, assignments] {
        Session session(options, maker());
        SetFeatures(session, *assignments);
    });
}
