// checks.h - checks of a camera SDK against what pxnc.h states
#pragma once

#include "pxnc/conformance/session.h"

#include <string>
#include <vector>

namespace conformance {

/// What a check may do to a camera that somebody uses.
enum class Scope {
    kHarmless, // opens it, reads, moves frames, starts and stops the acquisition
    kThorough, // also changes settings, which it restores, or takes the camera away
};

struct Check {
    const char* group;
    const char* name; // unique in its group
    Stage stage;
    Scope scope;
    /// Notes failures. Throws NotApplicable and CheckEnded.
    void (*run)(Session& session, Findings& findings);
};

enum class Outcome { kPassed, kFailed, kSkipped };

struct CheckReport {
    Outcome outcome;
    std::string detail; // why it failed or was skipped
};

/// All checks, in an order that needs few startups.
std::vector<Check> AllChecks();
/// "passed", "failed" or "skipped".
const char* OutcomeText(Outcome outcome);

/// The columns of a table of results: group and name, and outcome with its reason behind them.
std::string CheckColumns(const Check& check);
std::string OutcomeColumn(const CheckReport& report);

/// Runs one check. After a failure the session is stopped, so that the next check starts anew.
CheckReport RunCheck(const Check& check, Session& session);

// The checks by subject.
std::vector<Check> StartupChecks();
std::vector<Check> ArgumentChecks();
std::vector<Check> ListChecks();
std::vector<Check> DescriptionChecks();
std::vector<Check> ValueChecks();
std::vector<Check> AccessChecks();
std::vector<Check> InvalidationChecks();
std::vector<Check> QueueChecks();
std::vector<Check> FrameChecks();
std::vector<Check> CallbackChecks();
std::vector<Check> ChunkChecks();
std::vector<Check> SettingsChecks();
std::vector<Check> VanishingChecks();

} // namespace conformance
