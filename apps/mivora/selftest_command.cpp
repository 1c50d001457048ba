// selftest_command.cpp - checks a camera with the module as hosts use it
#include "apps/common/command_line.h"
#include "apps/mivora/commands.h"
#include "apps/selftest/selftest.h"
#include "platform/interrupt.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <memory>
#include <string>

namespace {

std::string CheckNameProblem(const std::string& name) {
    std::string all;
    for (const SelftestCheck& check : AllSelftestChecks()) {
        if (name == check.name) {
            return "";
        }
        all += (all.empty() ? "" : ", ") + std::string(check.name);
    }
    return "\"" + name + "\" is none of " + all;
}

void Selftest(const SelftestOptions& options, const AppOptions& app, IGrabberMaker& maker) {
    platform::InstallInterruptHandler();
    // Before the check: an SDK that crashes has been told what it was asked.
    const auto begin = [&](const std::string& name) {
        if (!options.json) {
            std::printf("%-18s ", name.c_str());
            std::fflush(stdout);
        }
    };
    const auto end = [&](const SelftestResult& result) {
        if (!options.json) {
            std::printf("%-14s  %s\n", OutcomeText(result.outcome),
                        platform::PrintableText(result.detail).c_str());
            std::fflush(stdout);
        }
    };
    const SelftestReport report = RunSelftest(options, app, maker, begin, end);
    const std::uint64_t failed = report.Count(SelftestOutcome::kFail);
    if (options.json) {
        std::printf("%s\n", report.Json().Text().c_str());
    } else {
        std::printf("%llu passed, %llu failed, %llu not applicable: %s\n",
                    static_cast<unsigned long long>(report.Count(SelftestOutcome::kPass)),
                    static_cast<unsigned long long>(failed),
                    static_cast<unsigned long long>(report.Count(SelftestOutcome::kNotApplicable)),
                    report.camera.c_str());
    }
    if (failed > 0 || platform::InterruptRequested()) {
        throw ExitStatus{1};
    }
}

constexpr const char* kSelftestFooter =
    "Opens and closes the camera, takes frames in every mode and with 2 to 100 buffers, restarts,\n"
    "stops with frames queued, writes parameters to their limits, reads all features, writes\n"
    "settings back, loads them without effect and checks other values along all features that\n"
    "depend on them. The camera's settings are put back at the end. The status is 0 when nothing fails.\n"
    "\n"
    "Examples:\n"
    "  mivora selftest\n"
    "  mivora --sdk genicam --camera 0 selftest --json\n"
    "  mivora selftest --only buffers --only restarts\n";

} // namespace

void AddSelftestCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("selftest", "Check that a camera does what hosts expect of it");
    const auto selftest = std::make_shared<SelftestOptions>();
    command.AddOption("--only", selftest->only, "Run this check only; may be repeated")
        .Check(CheckNameProblem)
        .TypeName("CHECK");
    command.AddOption("--timeout", selftest->timeoutMs, "Longest wait for a frame, in milliseconds")
        .Check(PositiveCountProblem)
        .ShowDefault()
        .TypeName("MS");
    command.AddJson(selftest->json);
    command.SetFooter(kSelftestFooter);
    command.OnRun([&options, maker, selftest] { Selftest(*selftest, options, maker()); });
}
