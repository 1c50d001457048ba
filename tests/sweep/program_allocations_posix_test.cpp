// program_allocations_posix_test.cpp - every allocation fails in runs of the programs
//
// Each run has one refused allocation, of all that the program and what it loads make on its main
// thread. What that changes has to be in the list of the use in tests/sweep/lists. On Windows a
// program's allocator is not that of its libraries.
#include "tests/support/temporary_directory.h"
#include "tests/sweep/gate/sweep_gate.h"
#include "tests/sweep/list_files.h"
#include "tests/sweep/program_runs.h"
#include "tests/sweep/refusal/refused_main.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace sweep {
namespace {

// What every start of a program allocates before it looks at its arguments, at least. One use of
// each program has these refused; the others begin behind.
constexpr unsigned kCommonOfMivora = 1400;
constexpr unsigned kCommonOfTool = 400;

struct RefusedUse {
    ProgramUse use;
    unsigned common = kCommonOfMivora;
    /// Output that may be another one without a failure: the lines that begin so.
    std::vector<std::string> mayDiffer{};

    friend std::ostream& operator<<(std::ostream& stream, const RefusedUse& refused) {
        return stream << refused.use;
    }
};

/// What one start of a program gave.
struct RefusedStart {
    Transcript transcript; ///< the program, and what it left in the SDK
    bool hasReturned = false;
    bool isRefused = false;
    unsigned count = 0; ///< of allocations
};

class ProgramAllocations : public ::testing::TestWithParam<RefusedUse> {
protected:
    /// The `nth` allocation is refused, from 1 on; 0: none.
    static RefusedStart Run(unsigned nth) {
        const ProgramUse& use = GetParam().use;
        const support::TemporaryDirectory directory;
        const std::string refusal = directory.PathOf("refusal");
        const std::string calls = directory.PathOf("calls");
        RefusedStart start;
        start.transcript = {RunOnGate(use, "refused-" + use.program, directory,
                                      {{kRefusedAllocation, std::to_string(nth)},
                                       {kRefusalReport, refusal},
                                       {kGateReport, calls}})};
        start.transcript.push_back(WhatIsLeft(calls));
        std::ifstream report(refusal);
        start.hasReturned = static_cast<bool>(report >> start.isRefused >> start.count);
        return start;
    }

    /// By the calls that the SDK got, none of which fails.
    static Step WhatIsLeft(const std::string& report) {
        std::map<std::string, int> calls;
        std::ifstream file(report);
        for (std::string line; std::getline(file, line);) {
            ++calls[line.substr(0, line.find('('))];
        }
        const auto difference = [&](const char* begun, const char* ended) {
            return std::to_string(calls[begun] - calls[ended]);
        };
        return {
            "left: startups, cameras, captures, frames, registrations",
            difference("PxnStartup", "PxnShutdown") + " " +
                difference("PxnCameraOpen", "PxnCameraClose") + " " +
                difference("PxnCaptureStart", "PxnCaptureEnd") + " " +
                difference("PxnFrameAnnounce", "PxnFrameRevoke") + " " +
                difference("PxnFeatureInvalidationRegister", "PxnFeatureInvalidationUnregister"),
            {}};
    }

    /// The lines of the output that are the same after every success.
    static std::vector<std::string> OutputOf(const RefusedStart& start) {
        const auto isLeftOut = [](const std::string& line) {
            const std::vector<std::string>& mayDiffer = GetParam().mayDiffer;
            return !line.starts_with("out: ") ||
                   std::any_of(mayDiffer.begin(), mayDiffer.end(),
                               [&](const std::string& begin) { return line.starts_with(begin); });
        };
        std::vector<std::string> output = start.transcript[0].lines;
        std::erase_if(output, isLeftOut);
        return output;
    }

    /// Done in spite of it, or reported: never less than asked for with status 0.
    static void ExpectHonest(const RefusedStart& sound, const RefusedStart& start) {
        const Step& program = start.transcript[0];
        EXPECT_TRUE(start.hasReturned) << "the main function did not return";
        if (program.result == sound.transcript[0].result) {
            EXPECT_EQ(OutputOf(start), OutputOf(sound));
            return;
        }
        EXPECT_EQ(program.result, "1");
        const auto isReason = [](const std::string& line) {
            // A module says no more than that it made no grabber; one that was made without memory
            // for its events snaps with 29; what is read of a synchronisation file ends where
            // there is no memory for more; a grabber without memory for a channel has none, or not
            // its settings; a thread does not start.
            const auto has = [&](const char* text) {
                return line.find(text) != std::string::npos;
            };
            return line.starts_with("err: ") &&
                   (has("memory") || has("made no grabber") || has("Snap failed with 29") ||
                    has("rules.json has a fault") || has("has no channel for") ||
                    has("GetConfig failed with 22") || has("cannot start a thread"));
        };
        EXPECT_TRUE(std::any_of(program.lines.begin(), program.lines.end(), isReason))
            << "the reason is missing";
    }

    /// The numbers of the allocations to refuse: in a part of the runs, most of them near the end.
    static std::vector<unsigned> Refused(unsigned count) {
        std::vector<unsigned> numbers;
        for (unsigned distance = 0; distance + GetParam().common < count;
             distance += IsWholeSweep() ? 1 : 23 + distance / 6) {
            numbers.push_back(count - distance);
        }
        return numbers;
    }
};

TEST_P(ProgramAllocations, GiveWhatIsListed) {
    const RefusedStart sound = Run(0);
    ASSERT_TRUE(sound.hasReturned);
    const std::string list = "allocations_" + GetParam().use.name;
    const ExpectedList expected = LoadList(list);
    ExpectedList found;
    found.sound = Print(sound.transcript);
    EXPECT_EQ(expected.sound, found.sound);
    const std::vector<unsigned> numbers = Refused(sound.count);
    std::vector<RefusedStart> starts(numbers.size());
    RunAtOnce(numbers.size(), [&](std::size_t index) { starts[index] = Run(numbers[index]); });
    for (std::size_t index = 0; index < starts.size(); ++index) {
        SCOPED_TRACE("allocation " + std::to_string(numbers[index]));
        ExpectHonest(sound, starts[index]);
        const std::string outcome = Differences(sound.transcript, starts[index].transcript);
        EXPECT_EQ(expected.allocations.count(outcome), 1u) << "not listed:\n" << outcome;
        found.allocations.insert(outcome);
    }
    std::printf("%u of %u allocations refused\n", static_cast<unsigned>(starts.size()),
                sound.count);
    StoreList(list, found);
}

const std::vector<RefusedUse>& RefusedUses() {
    static const std::string dump(8, 'x');
    static const char* const rules =
        R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"Width","Dependencies":[)"
        R"({"ModuleName":"Localdevice","FeatureName":"Width"}]}]})";
    static const char* const lines =
        "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 1\nSnap 3\nCreateCmdChannel 1\n"
        "GetGrabberParam 257\nCloseActCamera\nDeInit\n";
    static const std::vector<RefusedUse> uses{
        {{"cameras", "mivora", {"cameras", "--json"}, ""}, 0},
        // Without memory the version is the one that initialising has noted.
        {{"info", "mivora", {"info"}, ""}, kCommonOfMivora, {"out: Version: "}},
        {{"snap", "mivora", {"snap", "--mode", "3", "-o", "{directory}/image.raw"}, ""}},
        // The SDK's own counts are left out where they cannot be had.
        {{"grab", "mivora", {"grab", "--frames", "2", "--buffers", "2"}, ""},
         kCommonOfMivora,
         {"out: buffers "}},
        {{"param_get", "mivora", {"param", "get", "257"}, ""}},
        {{"param_set", "mivora", {"param", "set", "257", "2000", "500000"}, ""}},
        // A channel's settings are a text that may be empty.
        {{"channels", "mivora", {"channels"}, ""}, kCommonOfMivora, {"out: type 0 "}},
        {{"features", "mivora", {"features", "Interface"}, ""}},
        {{"get", "mivora", {"get", "Camera/Width"}, ""}},
        {{"set", "mivora", {"set", "Camera/Width=32"}, ""}},
        {{"describe", "mivora", {"describe", "Camera/ExposureTime"}, ""}},
        {{"serial", "mivora", {"serial", "1", "--linger", "100"}, "ID?\n"}},
        {{"watch", "mivora", {"watch", "--for", "100"}, ""}},
        {{"settings_save", "mivora", {"settings", "save", "{directory}/saved.json"}, ""}},
        {{"settings_load",
          "mivora",
          {"settings", "load", "{directory}/given.json"},
          "",
          {},
          {{"given.json", kSettingsOfARun}}}},
        {{"formats", "pyxen-tool", {"formats", "--json"}, "", {}, {}, true}, 0},
        {{"convert",
          "pyxen-tool",
          {"convert", "--format", "Mono8", "--width", "4", "--height", "2", "{directory}/dump.raw",
           "{directory}/image.png"},
          "",
          {},
          {{"dump.raw", dump}},
          true},
         kCommonOfTool},
        {{"sync_check",
          "pyxen-tool",
          {"sync-check", "{directory}/rules.json"},
          "",
          {},
          {{"rules.json", rules}},
          true},
         kCommonOfTool},
        // The results are in its lines; its status says that it has read them.
        {{"shell", "pyxen-tool", {"shell"}, lines}, kCommonOfTool, {"out: "}}};
    return uses;
}

INSTANTIATE_TEST_SUITE_P(Allocations, ProgramAllocations, ::testing::ValuesIn(RefusedUses()),
                         [](const auto& tested) { return tested.param.use.name; });

} // namespace
} // namespace sweep
