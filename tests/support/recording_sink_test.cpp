// recording_sink_test.cpp - the log sink of the tests
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace support {
namespace {

using Lines = std::vector<std::string>;

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

TEST(RecordingSink, KeepsLinesOfSeveralThreadsApart) {
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

} // namespace
} // namespace support
