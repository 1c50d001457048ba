// selftest.h - checks that a camera does with this module what hosts expect
#pragma once

#include "apps/common/json_text.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class IGrabberMaker;
class SelftestBench;
struct AppOptions;

enum class SelftestOutcome { kPass, kFail, kNotApplicable };

/// "pass", "fail" or "not applicable".
const char* OutcomeText(SelftestOutcome outcome);

struct SelftestCheck {
    const char* name;
    /// Runs with the camera open and no acquisition; returns what it has seen, in a few words.
    /// Throws CommandFailure when the check fails, and SelftestNotApplicable.
    std::string (*run)(SelftestBench& bench);
};

struct SelftestResult {
    SelftestOutcome outcome = SelftestOutcome::kPass;
    std::string name;
    std::string detail; ///< what was seen, why it failed, or why it does not apply
};

struct SelftestReport {
    std::string camera;
    std::vector<SelftestResult> results;

    std::uint64_t Count(SelftestOutcome outcome) const;
    JsonValue Json() const;
};

struct SelftestOptions {
    std::vector<std::string> only;  ///< names of checks; empty: all
    std::uint64_t timeoutMs = 5000; ///< longest wait for a frame
    bool json = false;
};

/// All checks, in their order.
std::vector<SelftestCheck> AllSelftestChecks();

/// Opens the camera of the options, or the first, and runs the checks; `onBegin` is called before
/// and `onEnd` after each. Whatever happens the camera's settings are put back as they were, which
/// is the last result. Throws CommandFailure when the camera cannot be opened.
SelftestReport RunSelftest(const SelftestOptions& options, const AppOptions& app,
                           IGrabberMaker& maker,
                           const std::function<void(const std::string&)>& onBegin,
                           const std::function<void(const SelftestResult&)>& onEnd);
