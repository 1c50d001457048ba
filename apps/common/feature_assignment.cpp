// feature_assignment.cpp - MODULE/FEATURE=VALUE, as the command line has it
#include "apps/common/feature_assignment.h"

#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/feature_text.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"

#include <cstdint>

namespace {

constexpr std::uint32_t kCommandLimitMs = 5000;

/// The value to write; none for a command.
std::optional<ServiceValue> CheckedValue(ServiceClient& services,
                                         const FeatureAssignment& assignment) {
    const FeatureDescription feature =
        services.DescribeFeature(assignment.name.module, assignment.name.feature);
    assignment.name.CheckCategory(feature.category);
    if (assignment.value) {
        return ParseServiceValue(feature, *assignment.value);
    }
    if (feature.type != MV_FEATURE_COMMAND) {
        throw MissingArgument("VALUE of " + assignment.name.Text());
    }
    return std::nullopt;
}

std::optional<ServiceValue> Apply(ServiceClient& services, const FeatureAssignment& assignment,
                                  const std::optional<ServiceValue>& value) {
    const FeatureName& name = assignment.name;
    if (value) {
        return services.WriteFeature(name.module, name.feature, *value, *assignment.value);
    }
    services.RunCommand(name.module, name.feature, kCommandLimitMs);
    return std::nullopt;
}

} // namespace

FeatureName ParseFeatureName(const std::string& text) {
    const std::size_t begin = text.starts_with('/') ? 1 : 0;
    const std::size_t first = text.find('/', begin);
    if (first == std::string::npos || first == begin || text.ends_with('/')) {
        throw CommandFailure("\"" + text + "\" is not of the form MODULE/FEATURE");
    }
    const std::size_t last = text.rfind('/');
    return {text.substr(begin, first - begin), text.substr(last + 1),
            text.substr(first, last - first)};
}

void FeatureName::CheckCategory(const std::string& actual) const {
    const std::string own = actual.ends_with('/') ? actual.substr(0, actual.size() - 1) : actual;
    if (!category.empty() && category != own) {
        throw CommandFailure(module + " has no feature \"" + feature + "\" in the category \"" +
                             category + "\"; there is /" + module + own + "/" + feature);
    }
}

FeatureAssignment ParseFeatureAssignment(const std::string& text) {
    const std::size_t sign = text.find('=');
    FeatureAssignment assignment{ParseFeatureName(text.substr(0, sign)), std::nullopt};
    if (sign != std::string::npos) {
        assignment.value = text.substr(sign + 1);
    }
    return assignment;
}

std::vector<FeatureAssignment> ParseFeatureAssignments(const std::vector<std::string>& texts) {
    std::vector<FeatureAssignment> assignments;
    assignments.reserve(texts.size());
    for (const std::string& text : texts) {
        assignments.push_back(ParseFeatureAssignment(text));
    }
    return assignments;
}

void ApplyFeatureAssignments(ServiceClient& services,
                             const std::vector<FeatureAssignment>& assignments,
                             const AppliedReceiver& onApplied) {
    std::vector<std::optional<ServiceValue>> values;
    values.reserve(assignments.size());
    for (const FeatureAssignment& assignment : assignments) {
        values.push_back(CheckedValue(services, assignment));
    }
    std::string applied;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        const FeatureAssignment& assignment = assignments[i];
        std::optional<ServiceValue> after;
        try {
            after = Apply(services, assignment, values[i]);
        } catch (const CommandFailure& failure) {
            throw applied.empty() ? failure : failure.With("applied before: " + applied);
        }
        applied += (applied.empty() ? "" : ", ") + assignment.name.Text();
        if (onApplied) {
            onApplied(assignment, after);
        }
    }
}

std::vector<FeatureAssignment> ParseFeatureAssignments(Session& session,
                                                       const std::vector<std::string>& texts) {
    std::vector<FeatureAssignment> assignments = ParseFeatureAssignments(texts);
    if (!assignments.empty()) {
        session.Services();
    }
    return assignments;
}

void ApplyFeatureAssignments(Session& session, const std::vector<FeatureAssignment>& assignments) {
    if (!assignments.empty()) {
        ApplyFeatureAssignments(session.Services(), assignments);
    }
}

void AddSetOption(Command& command, std::vector<std::string>& assignments) {
    command
        .AddOption("-S,--set", assignments,
                   "Write a feature after the camera has been opened; may be given several times, "
                   "in the order wanted. A command has no value")
        .TypeName("MODULE/FEATURE=VALUE");
}
