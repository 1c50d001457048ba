// bench.cpp - runs a scenario with one failure in it
#include "tests/sweep/bench.h"

#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/sweep/sdk_pauses.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>

namespace sweep {
namespace {

constexpr std::uint8_t kWritten = 0xEE;
constexpr std::size_t kLongestCall = 100; // printed

std::string LibraryIn(const std::string& home) {
    return platform::JoinPath(platform::JoinPath(home, "Bin"), platform::LibraryFileName("PxnC"));
}

void WriteFrames() {
    scripted::GetSdk().WriteQueuedFrames(kWritten);
}

/// Errors that a use afterwards logs; what else it logs is swept elsewhere.
void KeepErrors(Transcript& transcript) {
    for (Step& step : transcript) {
        std::erase_if(step.lines, [](const std::string& line) { return line[0] != '0'; });
    }
}

std::vector<std::string> ResultsOf(const Transcript& transcript) {
    std::vector<std::string> results;
    for (const Step& step : transcript) {
        results.push_back(step.operation + " = " + step.result);
    }
    return results;
}

} // namespace

/// A second grabber that acquires images from another camera all the time.
class Bench::Beside {
public:
    explicit Beside(const std::string& directory) : station(directory, "beside.ini", 1) {
        EXPECT_EQ(station.Grabber().Init(), MV_OK);
        EXPECT_EQ(station.Grabber().SetActCameraIndex(1), MV_OK);
        EXPECT_EQ(station.Grabber().OpenActCamera(), MV_OK);
        EXPECT_EQ(station.Grabber().PrepareFrameBuffers(kFrames), MV_OK);
        EXPECT_EQ(station.Grabber().Snap(1), MV_OK);
    }
    void ExpectImages() {
        for (std::uint64_t frame = 0; frame < kFrames; ++frame) {
            EXPECT_TRUE(station.Deliver(frame)) << frame;
        }
        EXPECT_EQ(station.TakeHandedOver(), kFrames);
    }
    void End() {
        EXPECT_EQ(station.Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(station.Grabber().CloseActCamera(), MV_OK);
        EXPECT_EQ(station.Grabber().DeInit(), MV_OK);
    }

    static constexpr std::uint64_t kFrames = 2;

private:
    Station station;
};

Bench::Bench(const Scenario& scenarioToRun)
    : scenario(scenarioToRun),
      home("PYXEN_HOME", support::BuiltFile("sweep")),
      behind(kGateLibrary, LibraryIn(scripted::Home())) {
    directory.Write("rules.json", kSyncRules);
    std::string error;
    EXPECT_TRUE(gate.Load(LibraryIn(support::BuiltFile("sweep")), true, &error)) << error;
    giveOrder = reinterpret_cast<GiveGateOrder>(gate.FindSymbol(kGiveGateOrderName));
    countCalls = reinterpret_cast<CountGateCalls>(gate.FindSymbol(kCountGateCallsName));
    setHooks = reinterpret_cast<SetGateHooks>(gate.FindSymbol(kSetGateHooksName));
    const GateHooks hooks{&EnterSdk, &LeaveSdk, &WriteFrames};
    setHooks(&hooks);
}

Bench::~Bench() {
    setHooks(nullptr);
    sdk.Reset();
}

Transcript Bench::Run(bool isBeside, const Failure& failure) {
    sdk.Reset();
    sdk.Edit(&FillModel);
    directory.Write("host.ini", IniText(scenario));
    directory.Write("beside.ini", IniText(scenario));
    Transcript transcript;
    {
        std::optional<Beside> beside;
        if (isBeside) {
            beside.emplace(directory.Path());
        }
        Station station(directory.Path(), "host.ini", 0);
        Transcript before;
        station.Perform(scenario.before, before);
        if (soundBefore.empty()) {
            soundBefore = before;
        }
        EXPECT_EQ(ResultsOf(before), ResultsOf(soundBefore));
        sdk.ClearCalls();
        failure.begin();
        station.Perform(scenario.swept, transcript);
        failure.end();
        station.Perform(scenario.after, transcript);
        if (beside) {
            beside->ExpectImages();
        }
        Transcript again;
        station.Perform(UseAgain(), again);
        KeepErrors(again);
        transcript.insert(transcript.end(), again.begin(), again.end());
        transcript.push_back(WhatIsLeft(isBeside));
        if (beside) {
            beside->ExpectImages();
            beside->End();
        }
    }
    ExpectNothingLeft();
    return transcript;
}

Transcript Bench::RunSoundly(bool isBeside, std::vector<std::string>& calls) {
    std::vector<std::string> recorded;
    std::uint32_t counted = 0;
    const Transcript transcript = Run(isBeside, {[&] {
                                                     const GateOrder order;
                                                     giveOrder(&order);
                                                 },
                                                 [&] {
                                                     counted = countCalls();
                                                     giveOrder(nullptr);
                                                     recorded = sdk.Calls();
                                                 }});
    EXPECT_EQ(recorded.size(), counted) << "not all calls went through the gate";
    std::map<std::string, unsigned> times;
    for (std::string& call : recorded) {
        if (call.size() > kLongestCall) {
            call.replace(kLongestCall, std::string::npos, "...");
        }
        const unsigned time = ++times[call];
        calls.push_back(time == 1 ? call : call + " #" + std::to_string(time));
    }
    return transcript;
}

void Bench::ExpectNothingLeft() {
    EXPECT_EQ(sdk.StartupCount(), 0);
    EXPECT_EQ(sdk.CountOpenCameras(), 0u);
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
    EXPECT_EQ(sdk.Registrations(), std::vector<scripted::Registration>{});
}

// What a grabber beside has is left out.
Step Bench::WhatIsLeft(bool isBeside) {
    const std::size_t other = isBeside ? 1 : 0;
    return {"left: startups, cameras, frames, registrations",
            Answer(static_cast<std::size_t>(sdk.StartupCount()) - other,
                   sdk.CountOpenCameras() - other,
                   sdk.AnnouncedFrames().size() - other * Beside::kFrames,
                   sdk.Registrations().size() - other)
                .Text(),
            {}};
}

} // namespace sweep
