// describe_command.cpp - all that is known about a feature
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
#include <utility>
#include <vector>

namespace {

constexpr const char* kUnread = "-"; // as in the list of features

struct DescribeOptions {
    std::string feature;
    bool json = false;
};

void PrintMember(const char* name, const std::string& text) {
    if (!text.empty()) {
        std::printf("%-14s %s\n", name, platform::PrintableText(text).c_str());
    }
}

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

void PrintDescription(const FeatureDescription& feature, const std::optional<ServiceValue>& value) {
    PrintMember("path", feature.Path());
    PrintMember("name", feature.displayName);
    PrintMember("type", FeatureTypeText(feature.type));
    PrintMember("access", AccessText(feature));
    if (value || feature.isReadable) {
        PrintMember("value", value ? ServiceValueText(*value) : kUnread);
    }
    PrintMember("unit", feature.unit);
    PrintMember("range", RangeText(feature));
    PrintMember("selects", Joined(feature.selected));
    PrintMember("visibility", VisibilityText(feature.visibility));
    PrintMember("namespace", feature.nameSpace);
    PrintMember("representation", feature.representation);
    PrintMember("in settings", feature.isStreamable ? "yes" : "no");
    PrintMember("tool tip", feature.toolTip);
    PrintMember("description", feature.description);
}

void Describe(Session& session, const DescribeOptions& options) {
    const FeatureName name = ParseFeatureName(options.feature);
    ServiceClient& services = session.Services();
    session.OpenCamera();
    const FeatureDescription feature = services.DescribeFeature(name.module, name.feature);
    name.CheckCategory(feature.category);
    const std::optional<ServiceValue> value =
        feature.isReadable ? services.TryReadFeature(name.module, name.feature) : std::nullopt;
    if (options.json) {
        std::vector<JsonMember> members = FeatureMembers(feature, value);
        const std::vector<JsonMember> more = MoreFeatureMembers(feature);
        members.insert(members.end(), more.begin(), more.end());
        PrintReport(std::move(members));
    } else {
        PrintDescription(feature, value);
    }
}

} // namespace

void AddDescribeCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("describe", "Show all that is known about a feature");
    const auto describe = std::make_shared<DescribeOptions>();
    command.AddOption("FEATURE", describe->feature, "Module and feature, as in Camera/Width")
        .Required()
        .TypeName("MODULE/FEATURE");
    command.AddJson(describe->json);
    command.SetFooter("Example:\n  mivora describe Camera/ExposureTime\n");
    command.OnRun([&options, maker, describe] {
        Session session(options, maker());
        Describe(session, *describe);
    });
}
