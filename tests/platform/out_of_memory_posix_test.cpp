// out_of_memory_posix_test.cpp - objects for which there is no memory
#include "platform/event.h"
#include "platform/file_version.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(OutOfMemory, AnEventIsNeverSet) {
    support::RefuseAllocationsAfter(0);
    Event event;
    support::GrantAllocations();
    EXPECT_FALSE(event.IsValid());
    event.Set();
    EXPECT_FALSE(event.IsSet());
    EXPECT_FALSE(event.Wait(0));
    EXPECT_FALSE(event.Wait(1));
    event.Reset();
    EXPECT_FALSE(event.IsSet());
}

TEST(OutOfMemory, AFileVersionIsNotRead) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.Write("libX.so.1.2.3.4", "");
    FileVersion version;
    support::RefuseAllocationsAfter(0);
    const bool isRead = version.Read(path);
    support::GrantAllocations();
    EXPECT_FALSE(isRead);
    EXPECT_FALSE(version.HasBlock());
}

} // namespace
} // namespace platform
