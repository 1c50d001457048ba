// log_sink_test.cpp - the installed log sink and lines of several threads
#include "tests/host/test_grabber.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace {

// Before any test installs one.
ILogSink* const sinkAtStart = MivoraInstalledLogSink();

TEST(LogSink, DiscardsLinesUntilOneIsInstalled) {
    ASSERT_TRUE(sinkAtStart);
    const InstalledSink installed(sinkAtStart);
    TestGrabber grabber;
    ASSERT_EQ(grabber.GetLogSink(), sinkAtStart);
    grabber.GetLogSink()->Write(kMvLogError, "%s %d", "text", 1);
    grabber.GetLogSink()->WriteError(nullptr);
    grabber.PrepareFrameBuffers(0);
    grabber.DoPostProcess(1, 0); // logs that there is no such buffer
}

TEST(LogSink, IsTheOneInstalledWhenTheGrabberWasCreated) {
    support::RecordingSink first;
    support::RecordingSink second;
    const InstalledSink installed(&first);
    EXPECT_EQ(MivoraInstalledLogSink(), &first);
    TestGrabber grabber;
    MivoraInstallLogSink(&second);
    TestGrabber later;
    EXPECT_EQ(grabber.GetLogSink(), &first);
    EXPECT_EQ(later.GetLogSink(), &second);
}

TEST(LogSink, IsNoneAfterNullWasInstalled) {
    const InstalledSink installed(nullptr);
    EXPECT_EQ(MivoraInstalledLogSink(), nullptr);
    TestGrabber grabber;
    EXPECT_EQ(grabber.GetLogSink(), nullptr);
}

TEST(LogSink, NeverMixesLinesOfSeveralThreads) {
    support::RecordingSink sink;
    const InstalledSink installed(&sink);
    TestGrabber grabber;
    grabber.PrepareFrameBuffers(0);
    constexpr std::uint64_t kThreads = 4;
    constexpr std::uint64_t kLines = 200;
    std::vector<std::thread> threads;
    for (std::uint64_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::uint64_t line = 0; line < kLines; ++line) {
                grabber.DoPostProcess(thread * kLines + line, 1);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::vector<std::string> expected;
    for (std::uint64_t index = 0; index < kThreads * kLines; ++index) {
        expected.push_back("0 Mivora: DoPostProcess: There is no frame buffer " +
                           std::to_string(index));
    }
    std::vector<std::string> lines = sink.Take();
    std::sort(lines.begin(), lines.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(lines, expected);
}

} // namespace
