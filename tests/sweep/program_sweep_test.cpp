// program_sweep_test.cpp - every call of the SDK fails in runs of the programs
//
// The programs load the gate as their SDK, with the simulator behind it. A call is named by its
// function, its feature or register, and its number among those of that name, since other threads'
// calls come between at different times.
#include "tests/support/temporary_directory.h"
#include "tests/sweep/gate/sweep_gate.h"
#include "tests/sweep/list_files.h"
#include "tests/sweep/program_runs.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace sweep {
namespace {

/// A call: the `nth` of this name in the run.
struct NamedCall {
    std::string name;
    std::uint32_t nth = 1;

    std::string Text() const { return nth == 1 ? name : name + " #" + std::to_string(nth); }
};

/// What one start of a program gave.
struct Start {
    Transcript transcript;
    std::vector<NamedCall> calls;
    bool isFailed = false; ///< the call that was to fail was made
};

class ProgramSweep : public ::testing::TestWithParam<ProgramUse> {
protected:
    /// Time may decide whether a call is made at all: then the program is started once more.
    Start RunUntilFailed(const NamedCall& call, const Variant& variant) const {
        constexpr int kMostStarts = 5;
        const GateOrder order{call.nth, variant.code, variant.isDone, call.name.c_str()};
        Start start = Run(order);
        for (int count = 1; count < kMostStarts && !start.isFailed; ++count) {
            start = Run(order);
        }
        return start;
    }

    Start Run(const GateOrder& order) const {
        const support::TemporaryDirectory directory;
        const std::string report = directory.PathOf("report");
        Start made;
        made.transcript = {RunOnGate(GetParam(), GetParam().program, directory,
                                     {{kGateCall, order.call ? order.call : ""},
                                      {kGateNth, std::to_string(order.nth)},
                                      {kGateCode, std::to_string(order.code)},
                                      {kGateIsDone, order.isDone ? "1" : "0"},
                                      {kGateReport, report}})};
        ReadReport(report, made);
        return made;
    }

    static void ReadReport(const std::string& path, Start& start) {
        std::ifstream report(path);
        std::string line;
        start.isFailed = std::getline(report, line) && line == "1";
        std::map<std::string, std::uint32_t> times;
        while (std::getline(report, line)) {
            start.calls.push_back({line, ++times[line]});
        }
    }

    /// The calls of a sound run that are made in every run. In the order of the first call of each
    /// name, as the others' depends on time.
    static std::vector<NamedCall> SureCalls(const Start& sound) {
        std::vector<std::string> names;
        std::map<std::string, unsigned> times;
        for (const NamedCall& call : sound.calls) {
            if (++times[call.name] == 1) {
                names.push_back(call.name);
            }
        }
        std::vector<NamedCall> calls;
        for (const std::string& name : names) {
            const auto sure = GetParam().sure.find(name);
            const unsigned count = sure == GetParam().sure.end() ? times[name] : sure->second;
            EXPECT_LE(count, times[name]) << name;
            for (std::uint32_t nth = 1; nth <= count; ++nth) {
                calls.push_back({name, nth});
            }
        }
        return calls;
    }

    struct Failing {
        NamedCall call;
        Variant variant;
        Start start;
    };

    static std::vector<Failing> AllFailing(const std::vector<NamedCall>& calls) {
        std::vector<Failing> all;
        for (const NamedCall& call : calls) {
            if (call.name == "PxnShutdown") {
                continue; // it cannot fail
            }
            for (const Variant& variant : AllVariants()) {
                if (!variant.isBeside) {
                    all.push_back({call, variant, {}});
                }
            }
        }
        return all;
    }
};

TEST_P(ProgramSweep, GivesWhatIsListed) {
    const Start sound = Run({});
    ASSERT_FALSE(sound.calls.empty());
    ExpectedList expected = LoadList("program_" + GetParam().name);
    ExpectedList found;
    found.sound = Print(sound.transcript);
    EXPECT_EQ(expected.sound, found.sound);
    std::vector<Failing> all = AllFailing(SureCalls(sound));
    if (!IsWholeSweep()) {
        constexpr std::size_t kStride = 151; // so that each way comes round
        std::vector<Failing> part;
        for (std::size_t index = 0; index < all.size(); index += kStride) {
            part.push_back(all[index]);
        }
        all = std::move(part);
    }
    RunAtOnce(all.size(), [&](std::size_t index) {
        all[index].start = RunUntilFailed(all[index].call, all[index].variant);
    });
    for (const Failing& one : all) {
        const std::string call = one.call.Text();
        EXPECT_TRUE(one.start.isFailed) << call << " was not made";
        const std::string outcome =
            WithoutErrorText(Differences(sound.transcript, one.start.transcript), one.variant.code);
        if (found.outcomes.count(call) == 0) {
            found.calls.push_back(call);
        }
        found.outcomes[call][one.variant] = outcome;
        EXPECT_EQ(expected.outcomes[call][one.variant], outcome)
            << call << " " << one.variant.Text();
    }
    std::printf("%u starts\n", static_cast<unsigned>(all.size()));
    StoreList("program_" + GetParam().name, found);
}

INSTANTIATE_TEST_SUITE_P(
    Programs, ProgramSweep,
    ::testing::Values(
        ProgramUse{"cameras", "mivora", {"cameras", "--json"}, ""},
        ProgramUse{"info", "mivora", {"info"}, ""},
        ProgramUse{"snap_2",
                   "mivora",
                   {"snap", "--timeout", "1500", "-o", "{directory}/image.raw"},
                   "",
                   // By the stop, when it comes before the thread that ends the snap.
                   {{"PxnCaptureQueueFlush", 0}}},
        ProgramUse{"snap_3", "mivora", {"snap", "--mode", "3", "-o", "{directory}/image.raw"}, ""},
        ProgramUse{"grab",
                   "mivora",
                   {"grab", "--frames", "2", "--buffers", "2", "--timeout", "1500"},
                   "",
                   // Two at first, and the one of the first frame; the second may meet the stop.
                   {{"PxnCaptureFrameQueue", 3}}},
        ProgramUse{"param_get", "mivora", {"param", "get", "257"}, ""},
        ProgramUse{"param_limits", "mivora", {"param", "limits", "257"}, ""},
        ProgramUse{"param_set", "mivora", {"param", "set", "257", "2000", "500000"}, ""},
        ProgramUse{"serial",
                   "mivora",
                   {"serial", "1", "--linger", "100"},
                   "ID?\n",
                   // How many bytes there are, asked again and again until the linger time is over.
                   {{"PxnMemoryRead(0x6014c)", 2}}},
        ProgramUse{"features", "mivora", {"features", "Interface"}, ""},
        ProgramUse{"get", "mivora", {"get", "Camera/Width"}, ""},
        ProgramUse{"set", "mivora", {"set", "Camera/Width=32"}, ""},
        ProgramUse{"describe", "mivora", {"describe", "Camera/ExposureTime"}, ""},
        ProgramUse{"settings_load",
                   "mivora",
                   {"settings", "load", "{directory}/given.json"},
                   "",
                   {},
                   {{"given.json", kSettingsOfARun}}},
        ProgramUse{"channels", "mivora", {"channels"}, ""},
        ProgramUse{"watch", "mivora", {"watch", "--for", "100"}, ""},
        ProgramUse{"doctor", "mivora", {"doctor", "--only", "camera"}, ""}),
    [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace sweep
