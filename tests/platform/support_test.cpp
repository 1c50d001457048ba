// The suites rely on these helpers: one that never fails would hide failures everywhere.
#include "platform/environment.h"
#include "platform/file_system.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace support {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kName = "MIVORA_SUPPORT_TEST";

TEST(WaitUntil, TellsWhetherTheConditionCameTrue) {
    int asked = 0;
    EXPECT_TRUE(WaitUntil([&] { return ++asked == 3; }));
    EXPECT_EQ(asked, 3);
    EXPECT_FALSE(WaitUntil([] { return false; }, 5));
    EXPECT_TRUE(WaitUntil([] { return true; }, 0));
}

TEST(RecordingSink, KeepsLinesWithTheirLevelInOrder) {
    RecordingSink sink;
    sink.Write(kMvLogInformation, "Found %s at %I64u", "it", std::uint64_t{1} << 40);
    sink.WriteError("ERROR: 100%s");
    sink.Write(kMvLogError, "done");
    const Lines expected = {"1 Found it at 1099511627776", "0 ERROR: 100%s", "0 done"};
    EXPECT_EQ(sink.Lines(), expected);
    EXPECT_EQ(sink.Take(), expected);
    EXPECT_EQ(sink.Lines(), Lines());
}

TEST(RecordingSink, KeepsLinesOfAnyLength) {
    RecordingSink sink;
    for (const std::size_t length : {0u, 254u, 255u, 256u, 257u, 5000u}) {
        const std::string text(length, 'x');
        sink.Write(kMvLogInformation, "%s", text.c_str());
        EXPECT_EQ(sink.Take(), Lines{"1 " + text});
    }
}

TEST(RecordingSink, WaitsForAWholeLine) {
    RecordingSink sink;
    std::thread writer([&] {
        sink.Write(kMvLogInformation, "first");
        sink.Write(kMvLogInformation, "second");
    });
    EXPECT_TRUE(sink.WaitForLine("1 second"));
    writer.join();
    EXPECT_FALSE(sink.WaitForLine("1 sec", 5));
    EXPECT_FALSE(sink.WaitForLine("0 second", 5));
    EXPECT_EQ(sink.Lines().size(), 2u);
}

TEST(RecordingSink, KeepsLinesOfSeveralThreadsWhole) {
    RecordingSink sink;
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([&sink, i] {
            for (int line = 0; line < 50; ++line) {
                sink.Write(kMvLogInformation, "writer %d", i);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const Lines lines = sink.Lines();
    EXPECT_EQ(lines.size(), 200u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "1 writer " + std::to_string(i)), 50);
    }
}

TEST(TemporaryDirectory, IsThereForItsScopeOnly) {
    std::string path;
    {
        const TemporaryDirectory directory;
        path = directory.Path();
        const std::string name = platform::JoinPath("below", "file");
        const std::string content("one\r\n\0two", 9);
        EXPECT_EQ(directory.Write(name, content), directory.PathOf(name));
        EXPECT_EQ(directory.Read(name), content);
        EXPECT_TRUE(platform::IsRegularFile(directory.PathOf(name)));
    }
    EXPECT_FALSE(platform::PathExists(path));
}

TEST(EnvironmentGuard, BringsBackTheFormerValue) {
    platform::SetEnvironment(kName, "before");
    {
        const EnvironmentGuard guard(kName, "during");
        EXPECT_EQ(platform::GetEnvironment(kName), "during");
        const EnvironmentGuard inner(kName);
        EXPECT_EQ(std::getenv(kName), nullptr);
    }
    EXPECT_EQ(platform::GetEnvironment(kName), "before");
    platform::UnsetEnvironment(kName);
}

TEST(EnvironmentGuard, RemovesWhatWasNotThere) {
    platform::UnsetEnvironment(kName);
    {
        const EnvironmentGuard guard(kName, "during");
        EXPECT_STREQ(std::getenv(kName), "during");
    }
    EXPECT_EQ(std::getenv(kName), nullptr);
}

} // namespace
} // namespace support
