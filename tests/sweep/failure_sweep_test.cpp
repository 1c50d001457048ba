// failure_sweep_test.cpp - every call of the SDK and every allocation fails, in every use
//
// Each run has one failure. What it changes of the sound run is compared with the scenario's list
// in tests/sweep/lists. Without MIVORA_SWEEP=all a part of the runs is made, always the same; with
// it all of them, and the lists as they would have to be are written to the directory
// MIVORA_SWEEP_OUTPUT.
#include "tests/support/allocations/failing_allocations.h"
#include "tests/sweep/bench.h"
#include "tests/sweep/list_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace sweep {
namespace {

class FailureSweep : public ::testing::TestWithParam<Scenario> {
protected:
    void SetUp() override {
        std::vector<std::string> calls[2];
        for (const bool isBeside : {false, true}) {
            sound[isBeside] = bench.RunSoundly(isBeside, calls[isBeside]);
        }
        callsOf[false] = calls[false];
        callsOf[true] = calls[true];
        found.sound = Print(WithoutUseAgain(sound[false]));
        if (const std::string beside = Differences(sound[false], sound[true]);
            beside != Differences(sound[false], sound[false])) {
            found.soundBeside = beside;
        }
        found.calls = calls[false];
        for (const std::string& call : calls[true]) {
            if (std::find(found.calls.begin(), found.calls.end(), call) == found.calls.end()) {
                found.calls.push_back(call);
            }
        }
        expected = LoadList(GetParam().name);
        EXPECT_EQ(expected.sound, found.sound);
        EXPECT_EQ(expected.soundBeside, found.soundBeside);
        EXPECT_EQ(expected.calls.size(), found.calls.size());
    }
    void TearDown() override { StoreList(GetParam().name, found); }

    /// The part that is the same after every scenario is checked here and not listed.
    static Transcript WithoutUseAgain(const Transcript& transcript) {
        const std::size_t count = GetParam().swept.size() + GetParam().after.size();
        const std::vector<std::string>& results = ResultsOfUseAgain();
        for (std::size_t index = 0; index < UseAgain().size(); ++index) {
            const Step& step = transcript.at(count + index);
            if (index % results.size() != 0) {
                EXPECT_EQ(step.result, results[index % results.size()]) << step.operation;
            }
            EXPECT_EQ(step.lines, std::vector<std::string>{}) << step.operation;
        }
        EXPECT_EQ(transcript.back().result, "0 0 0 0") << "left";
        return {transcript.begin(), transcript.begin() + static_cast<std::ptrdiff_t>(count)};
    }

    void SweepCalls() {
        for (const bool isBeside : {false, true}) {
            for (std::size_t index = 0; index < callsOf[isBeside].size(); ++index) {
                if (!callsOf[isBeside][index].starts_with("PxnShutdown")) {
                    FailCall(index, isBeside);
                }
            }
        }
        for (const std::string& call : found.calls) {
            if (call.starts_with("PxnShutdown")) {
                for (const Variant& variant : AllVariants()) {
                    found.outcomes[call][variant] = "cannot fail\n";
                }
            }
        }
    }

    void FailCall(std::size_t index, bool isBeside) {
        const std::string& call = callsOf[isBeside][index];
        for (std::size_t number = 0; number < AllVariants().size(); ++number) {
            const Variant& variant = AllVariants()[number];
            if (variant.isBeside != isBeside || !(IsWholeSweep() || IsInShare(index, number))) {
                continue;
            }
            const GateOrder order{static_cast<std::uint32_t>(index + 1), variant.code,
                                  variant.isDone};
            const Transcript transcript = bench.Run(isBeside, {[&] { bench.GiveOrder(&order); },
                                                               [&] {
                                                                   bench.GiveOrder(nullptr);
                                                               }});
            const std::string outcome =
                WithoutErrorText(Differences(sound[isBeside], transcript), variant.code);
            found.outcomes[call][variant] = outcome;
            const auto known = expected.outcomes.find(call);
            EXPECT_EQ(known == expected.outcomes.end() ? "not listed" : known->second[variant],
                      outcome)
                << call << " " << variant.Text();
            ++failedCalls;
        }
    }

    /// Each call fails once with a grabber beside and once without, in the six ways by turns. The
    /// numbers of the variants alternate between without and with.
    static bool IsInShare(std::size_t index, std::size_t number) {
        return (index + number / 2 + 3 * (number % 2)) % 6 == 0;
    }

    /// In a part of the runs, more at the begin than later.
    static int StepOf(int granted, bool isBeside) {
        constexpr int kStride = 7;
        return IsWholeSweep() ? 1 : (isBeside ? 5 : 1) * (kStride + granted / 8);
    }

    void SweepAllocations() {
        for (const bool isBeside : {false, true}) {
            bool isRefused = true;
            for (int granted = 0; isRefused; granted += StepOf(granted, isBeside)) {
                const Transcript transcript = bench.Run(
                    isBeside,
                    {[&] { support::RefuseAllocationsAfter(granted, support::Refusal::kOne); },
                     [&] {
                         isRefused = support::GrantAllocations();
                     }});
                const std::string outcome = Differences(sound[isBeside], transcript);
                EXPECT_EQ(expected.allocations.count(outcome), 1u)
                    << "not listed, with allocation " << granted + 1
                    << (isBeside ? " beside another grabber" : "") << " refused:\n"
                    << outcome;
                found.allocations.insert(outcome);
                ++refusedAllocations;
            }
        }
    }

    Bench bench{GetParam()};
    Transcript sound[2]; // without and with another grabber
    std::vector<std::string> callsOf[2];
    ExpectedList expected;
    ExpectedList found;
    unsigned failedCalls = 0;
    unsigned refusedAllocations = 0;
};

TEST_P(FailureSweep, GivesWhatIsListedAndTheProcessWorksAgain) {
    SweepCalls();
    SweepAllocations();
    std::printf("%u runs with a failing call, %u with a refused allocation\n", failedCalls,
                refusedAllocations);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FailureSweep, ::testing::ValuesIn(Scenarios()),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace sweep
