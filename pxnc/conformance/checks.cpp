// checks.cpp - checks of a camera SDK against what pxnc.h states
#include "pxnc/conformance/checks.h"

#include <cstdio>
#include <exception>

namespace conformance {
namespace {

CheckReport RunStages(const Check& check, Session& session, Findings& findings) {
    try {
        session.Prepare(check.stage);
        check.run(session, findings);
    } catch (const NotApplicable& reason) {
        if (!findings.HasFailures()) {
            return {Outcome::kSkipped, reason.what()};
        }
    } catch (const CheckEnded&) {
        // What failed is noted.
    } catch (const std::exception& failure) {
        findings.Expect(false, failure.what());
    }
    return {findings.HasFailures() ? Outcome::kFailed : Outcome::kPassed, findings.Text()};
}

} // namespace

std::vector<Check> AllChecks() {
    std::vector<Check> all;
    for (const auto& some :
         {StartupChecks(), ArgumentChecks(), ListChecks(), DescriptionChecks(), ValueChecks(),
          AccessChecks(), InvalidationChecks(), QueueChecks(), FrameChecks(), CallbackChecks(),
          ChunkChecks(), SettingsChecks(), VanishingChecks()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

const char* OutcomeText(Outcome outcome) {
    switch (outcome) {
    case Outcome::kPassed:
        return "passed";
    case Outcome::kFailed:
        return "failed";
    case Outcome::kSkipped:
        break;
    }
    return "skipped";
}

std::string CheckColumns(const Check& check) {
    char columns[128];
    std::snprintf(columns, sizeof columns, "%-13s %-60s ", check.group, check.name);
    return columns;
}

std::string OutcomeColumn(const CheckReport& report) {
    const std::string outcome = OutcomeText(report.outcome);
    return report.detail.empty() ? outcome : outcome + ": " + report.detail;
}

CheckReport RunCheck(const Check& check, Session& session) {
    Findings findings;
    CheckReport report = RunStages(check, session, findings);
    if (report.outcome == Outcome::kFailed) {
        session.StopForGood();
    }
    return report;
}

} // namespace conformance
