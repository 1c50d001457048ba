// get_set_commands.cpp - reads and writes features
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/feature_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

/// Prints the value alone where only one was asked for.
void PrintValue(const FeatureName& name, const std::string& value, bool isOnly) {
    const std::string line = isOnly ? value : name.Text() + "=" + value;
    std::printf("%s\n", platform::PrintableText(line).c_str());
}

void GetFeatures(Session& session, const Names& texts) {
    std::vector<FeatureName> names;
    for (const std::string& text : texts) {
        names.push_back(ParseFeatureName(text));
    }
    ServiceClient& services = session.Services();
    session.OpenCamera();
    for (const FeatureName& name : names) {
        const ServiceValue value = services.ReadFeature(name.module, name.feature);
        PrintValue(name, ServiceValueText(value), names.size() == 1);
    }
}

void SetFeatures(Session& session, const Names& texts) {
    const std::vector<FeatureAssignment> assignments = ParseFeatureAssignments(texts);
    ServiceClient& services = session.Services();
    session.OpenCamera();
    ApplyFeatureAssignments(
        services, assignments,
        [&](const FeatureAssignment& applied, const std::optional<ServiceValue>& value) {
            const std::string name = platform::PrintableText(applied.name.Text());
            if (value) {
                PrintValue(applied.name, ServiceValueText(*value), assignments.size() == 1);
            } else {
                std::printf("%s was %s\n", name.c_str(), applied.value ? "written" : "executed");
            }
        });
}

} // namespace

void AddGetCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("get", "Print the values of features");
    const auto names = std::make_shared<Names>();
    command.AddOption("FEATURE", *names, "Module and feature, as in Camera/Width")
        .Required()
        .TypeName("MODULE/FEATURE");
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
    const auto assignments = std::make_shared<Names>();
    command
        .AddOption("FEATURE", *assignments,
                   "Module, feature and value: a number, a text, the name of an entry, true or "
                   "false; none for a command")
        .Required()
        .TypeName("MODULE/FEATURE=VALUE");
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
