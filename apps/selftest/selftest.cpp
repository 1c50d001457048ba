// selftest.cpp - checks that a camera does with this module what hosts expect
#include "apps/selftest/selftest.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/one_line.h"
#include "apps/common/session.h"
#include "apps/selftest/acquisition_checks.h"
#include "apps/selftest/bench.h"
#include "apps/selftest/feature_checks.h"
#include "mivora/grabber.h"
#include "platform/interrupt.h"

#include <algorithm>

namespace {

constexpr const char* kRestored = "restored";

SelftestResult RunOne(const SelftestCheck& check, SelftestBench& bench) {
    try {
        if (platform::InterruptRequested()) {
            throw SelftestNotApplicable("interrupted");
        }
        return {SelftestOutcome::kPass, check.name, check.run(bench)};
    } catch (const SelftestNotApplicable& reason) {
        return {SelftestOutcome::kNotApplicable, check.name, OneLine(reason.what())};
    } catch (const CommandFailure& failure) {
        return {SelftestOutcome::kFail, check.name, OneLine(failure.what())};
    }
}

/// What a check left behind must not fail the next one; a camera that has gone fails it by itself.
void RecoverIfPossible(SelftestBench& bench) {
    try {
        bench.Recover();
    } catch (const CommandFailure&) {
        return;
    }
}

} // namespace

const char* OutcomeText(SelftestOutcome outcome) {
    switch (outcome) {
    case SelftestOutcome::kPass:
        return "pass";
    case SelftestOutcome::kFail:
        return "fail";
    case SelftestOutcome::kNotApplicable:
        break;
    }
    return "not applicable";
}

std::uint64_t SelftestReport::Count(SelftestOutcome outcome) const {
    return static_cast<std::uint64_t>(
        std::count_if(results.begin(), results.end(), [outcome](const SelftestResult& result) {
            return result.outcome == outcome;
        }));
}

JsonValue SelftestReport::Json() const {
    std::vector<JsonValue> checks;
    checks.reserve(results.size());
    for (const SelftestResult& result : results) {
        checks.push_back(JsonObject({{"name", result.name},
                                     {"result", OutcomeText(result.outcome)},
                                     {"detail", result.detail}}));
    }
    return JsonObject({{"schema", 1},
                       {"camera", camera},
                       {"checks", JsonArray(checks)},
                       {"pass", Count(SelftestOutcome::kPass)},
                       {"fail", Count(SelftestOutcome::kFail)},
                       {"notApplicable", Count(SelftestOutcome::kNotApplicable)}});
}

std::vector<SelftestCheck> AllSelftestChecks() {
    std::vector<SelftestCheck> all = AcquisitionSelftestChecks();
    const std::vector<SelftestCheck> others = FeatureSelftestChecks();
    all.insert(all.end(), others.begin(), others.end());
    return all;
}

SelftestReport RunSelftest(const SelftestOptions& options, const AppOptions& app,
                           IGrabberMaker& maker,
                           const std::function<void(const std::string&)>& onBegin,
                           const std::function<void(const SelftestResult&)>& onEnd) {
    Session session(app, maker);
    session.OpenCamera();
    std::string reason;
    SelftestBench bench(session, maker.Services(&session.Grabber(), reason), options.timeoutMs);
    SelftestReport report;
    report.camera = session.ActCameraText();
    bench.KeepSettings();
    const auto run = [&](const SelftestCheck& check) {
        onBegin(check.name);
        report.results.push_back(RunOne(check, bench));
        onEnd(report.results.back());
    };
    for (const SelftestCheck& check : AllSelftestChecks()) {
        if (options.only.empty() ||
            std::find(options.only.begin(), options.only.end(), check.name) != options.only.end()) {
            run(check);
            RecoverIfPossible(bench);
        }
    }
    // Also after an interrupt.
    onBegin(kRestored);
    SelftestResult restored{SelftestOutcome::kPass, kRestored, ""};
    try {
        restored.detail = bench.Restore();
    } catch (const SelftestNotApplicable& problem) {
        restored = {SelftestOutcome::kNotApplicable, kRestored, OneLine(problem.what())};
    } catch (const CommandFailure& failure) {
        restored = {SelftestOutcome::kFail, kRestored, OneLine(failure.what())};
    }
    report.results.push_back(restored);
    onEnd(report.results.back());
    return report;
}
