// grab_progress_test.cpp - tests of showing how far a run has come
#include "apps/mivora/grab_progress.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

namespace {

std::uint64_t fakeNow = 0;

class ProgressTest : public testing::Test {
protected:
    ProgressTest() {
        fakeNow = 5000000000;
        platform::SetClockFunction([] { return fakeNow; });
        progress.taken = 30;
        progress.bytes = 1000000;
    }
    ~ProgressTest() override { platform::SetClockFunction(nullptr); }
    /// What is shown on standard error, which is no terminal, after this time.
    std::string ShownAfter(ProgressDisplay& display, std::uint64_t milliseconds) {
        fakeNow += milliseconds * 1000000;
        testing::internal::CaptureStderr();
        display.Show(progress);
        return testing::internal::GetCapturedStderr();
    }

    GrabProgress progress;
};

TEST_F(ProgressTest, SaysWhatIsKnown) {
    EXPECT_EQ(progress.Text(12.34), "taken 30, lost 0, 12.3 MB/s");
    progress.wanted = 100;
    progress.lost = 2;
    progress.written = 20;
    progress.waiting = 10;
    progress.isRecorded = true;
    EXPECT_EQ(progress.Text(0), "taken 30 of 100, lost 2, written 20, waiting 10, 0.0 MB/s");
}

TEST_F(ProgressTest, IsALineEachSecondWhereThatIsAskedFor) {
    testing::internal::CaptureStderr(); // which is then no terminal
    ProgressDisplay display(true);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(ShownAfter(display, 999), "");
    EXPECT_EQ(ShownAfter(display, 1), "mivora: taken 30, lost 0, 1.0 MB/s\n");
    progress.bytes = 5000000;
    EXPECT_EQ(ShownAfter(display, 500), "");
    EXPECT_EQ(ShownAfter(display, 1500), "mivora: taken 30, lost 0, 2.0 MB/s\n");
    testing::internal::CaptureStderr();
    display.Clear();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ProgressTest, IsNotShownOtherwise) {
    testing::internal::CaptureStderr();
    ProgressDisplay display(false);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(ShownAfter(display, 100000), "");
}

} // namespace
