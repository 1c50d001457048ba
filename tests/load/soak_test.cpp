// soak_test.cpp - random sessions for a long time: nothing lost, nothing left, nothing growing
//
// Runs for MIVORA_SOAK_MINUTES minutes (a third of one without it) from MIVORA_SOAK_SEED (1),
// beginning with session MIVORA_SOAK_FROM (0). The first session that fails is printed with what it
// did and ends the run.
#include "process_resources.h"
#include "soak_session.h"

#include "platform/environment.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* kCameras = R"(<PxnC>
<camera id="A" kind="serial" sensorWidth="128" sensorHeight="96" freeRunning="true"/>
<camera id="B" kind="usb" sensorWidth="64" sensorHeight="64" freeRunning="true">
  <feature name="PixelFormat" value="BayerRG12p"/>
</camera>
</PxnC>
)";

constexpr bool IsMemoryWatched() {
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return false; // these keep what is freed
#endif
#endif
    return true;
}

double Number(const char* variable, double otherwise) {
    const std::string text = platform::GetEnvironment(variable);
    return text.empty() ? otherwise : std::atof(text.c_str());
}

/// What the process holds may not grow once the first sessions have been run.
class GrowthWatch {
public:
    void Look(std::uint64_t sessions) {
        if (sessions == kWarmUp) {
            first = ProcessResources::Now();
        }
    }
    void Check(std::uint64_t sessions) const {
        if (sessions <= kWarmUp) {
            return;
        }
        const ProcessResources last = ProcessResources::Now();
        EXPECT_EQ(last.threads, first.threads);
        EXPECT_LE(last.handles, first.handles + 4);
        EXPECT_LE(last.drawingObjects, first.drawingObjects + 4);
        EXPECT_LE(last.userObjects, first.userObjects + 4);
        if (IsMemoryWatched()) {
            EXPECT_LE(last.bytes, first.bytes + kMostGrowth);
        }
        std::printf("memory %+.1f MB, handles %+lld, threads %+lld, drawing objects %+lld, user "
                    "objects %+lld\n",
                    (static_cast<double>(last.bytes) - static_cast<double>(first.bytes)) / 1e6,
                    Difference(last.handles, first.handles),
                    Difference(last.threads, first.threads),
                    Difference(last.drawingObjects, first.drawingObjects),
                    Difference(last.userObjects, first.userObjects));
    }

private:
    static constexpr std::uint64_t kWarmUp = 8;
    static constexpr std::uint64_t kMostGrowth = 8'000'000;

    static long long Difference(std::uint64_t last, std::uint64_t first) {
        return static_cast<long long>(last) - static_cast<long long>(first);
    }

    ProcessResources first;
};

TEST(Soak, RandomSessionsLoseNothingAndLeaveNothing) {
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::milliseconds(
                         static_cast<long long>(Number("MIVORA_SOAK_MINUTES", 1.0 / 3) * 60'000));
    const auto seed = static_cast<std::uint64_t>(Number("MIVORA_SOAK_SEED", 1));
    const auto from = static_cast<std::uint64_t>(Number("MIVORA_SOAK_FROM", 0));
    const support::TemporaryDirectory directory;
    directory.Write("PxnC.xml", kCameras);
    FrameLines lines;
    MivoraInstallLogSink(&lines);
    {
        support::InProcess process;
        GrowthWatch watch;
        std::uint64_t sessions = 0;
        std::uint64_t frames = 0;
        while (!HasFailure() && std::chrono::steady_clock::now() < end) {
            SoakSession session(process, directory.Path(), lines, seed, from + sessions);
            session.Run();
            frames += session.Frames();
            EXPECT_FALSE(HasFailure()) << session.Story() << "to repeat it: ./dev soak --seed "
                                       << seed << " --from " << from + sessions;
            watch.Look(++sessions);
        }
        watch.Check(sessions);
        std::printf(
            "seed %llu: %llu sessions, %llu images\n", static_cast<unsigned long long>(seed),
            static_cast<unsigned long long>(sessions), static_cast<unsigned long long>(frames));
        EXPECT_GT(frames, 0u);
    }
    MivoraInstallLogSink(nullptr);
}

} // namespace
