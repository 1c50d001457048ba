// log_file_posix_test.cpp - the log sink of the programs with an allocator that refuses
#include "apps/common/log_file.h"

#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// A sink that throws ends the work of the module in the middle: a camera stayed open.
TEST(LogFileOutOfMemory, LosesTheLineAndSaysSoOnce) {
    const support::TemporaryDirectory directory;
    LogFile log;
    log.Open(directory.PathOf("log.txt"));
    ILogSink& sink = log;
    const std::string text(600, 'x');
    testing::internal::CaptureStderr();
    EXPECT_GT(support::RefuseEachAllocation([&] {
                  sink.Write(kMvLogError, "%s", text.c_str());
                  sink.WriteError(text.c_str());
              }),
              3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "the log lacks lines that could not be written: out of memory\n");
    log.TakeErrors();
    sink.WriteError("last");
    EXPECT_EQ(log.TakeErrors(), std::deque<std::string>{"last"});
}

TEST(LogFileOutOfMemory, IsQuietWithoutAFile) {
    LogFile log;
    ILogSink& sink = log;
    testing::internal::CaptureStderr();
    EXPECT_GT(support::RefuseEachAllocation(
                  [&] { sink.WriteError("a line that is longer than a short text"); }),
              0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(LogFileOutOfMemory, TakesASynchronisationFileForUnread) {
    LogFile log;
    ILogSink& sink = log;
    const std::string path(600, 'x');
    const auto write = [&] {
        sink.Write(kMvLogInformation, "FeatureSyncher::Init: Loading %s...", path.c_str());
    };
    support::RefuseAllocationsAfter(0);
    write();
    support::GrantAllocations();
    EXPECT_EQ(log.TakeUnreadSyncFile(), "Loading it...");
    EXPECT_GT(support::RefuseEachAllocation(write), 0);
    EXPECT_EQ(log.TakeUnreadSyncFile(), "FeatureSyncher::Init: Loading " + path + "...");
}

} // namespace
