// grab_console_test.cpp - tests of what the runs of the command "grab" show
#include "apps/mivora/grab_console.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

std::uint64_t consoleTime = 0;

TEST(GrabConsole, ShowsTheSumOfAllRuns) {
    consoleTime = 1;
    platform::SetClockFunction([] { return consoleTime; });
    testing::internal::CaptureStderr();
    GrabConsole console(true, 2);
    GrabProgress progress;
    progress.taken = 10;
    progress.wanted = 50;
    progress.lost = 1;
    progress.written = 7;
    progress.waiting = 2;
    progress.bytes = 3000000;
    progress.isRecorded = true;
    console.Show(0, progress);
    consoleTime += 2000000000;
    progress.taken = 20;
    console.Show(1, progress);
    console.Say("something has happened");
    platform::SetClockFunction(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "mivora: taken 30 of 100, lost 2, written 14, waiting 4, 3.0 MB/s\n"
              "mivora: something has happened\n");
}

} // namespace
