// feature_assignment.h - MODULE/FEATURE=VALUE, as the command line has it
#pragma once

#include "apps/common/service_client.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class Command;
class Session;

struct FeatureName {
    std::string module;
    std::string feature;
    std::string category; ///< "/ImageFormatControl" where the name contains it, else empty

    /// "Camera/Width".
    std::string Text() const { return module + "/" + feature; }
    /// Throws CommandFailure when the name contains another category than the feature has.
    void CheckCategory(const std::string& actual) const;
};

/// Parses "MODULE/FEATURE", or a whole path including the categories. Throws CommandFailure.
FeatureName ParseFeatureName(const std::string& text);

struct FeatureAssignment {
    FeatureName name;
    std::optional<std::string> value; ///< none for a command
};

/// Splits at the first "=" and parses what is before it. Throws CommandFailure.
FeatureAssignment ParseFeatureAssignment(const std::string& text);
std::vector<FeatureAssignment> ParseFeatureAssignments(const std::vector<std::string>& texts);

/// Called for each assignment that was applied, with the value that the feature has afterwards;
/// none for a command, and where it cannot be read.
using AppliedReceiver =
    std::function<void(const FeatureAssignment& applied, const std::optional<ServiceValue>& value)>;

/// Checks that all features are there and all values suit their types; then writes them in order,
/// and runs commands, for each of which it waits at most five seconds. Throws CommandFailure, which
/// names what was applied before the failure, and MissingArgument when a feature that is no command
/// has no value.
void ApplyFeatureAssignments(ServiceClient& services,
                             const std::vector<FeatureAssignment>& assignments,
                             const AppliedReceiver& onApplied = {});

/// Parses what --set was given. When there is any, the session's grabber must have services.
std::vector<FeatureAssignment> ParseFeatureAssignments(Session& session,
                                                       const std::vector<std::string>& texts);
/// Applies what that returned.
void ApplyFeatureAssignments(Session& session, const std::vector<FeatureAssignment>& assignments);

/// Adds the repeatable option --set to a command that opens a camera.
void AddSetOption(Command& command, std::vector<std::string>& assignments);
