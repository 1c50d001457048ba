// log_file_test.cpp - tests of the log sink of the programs
#include "apps/common/log_file.h"

#include "apps/common/command_failure.h"
#include "apps/common/log_text.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <sstream>
#include <thread>
#include <vector>

namespace {

class LogFileTest : public testing::Test {
protected:
    support::TemporaryDirectory directory;
    LogFile log;
};

TEST_F(LogFileTest, WritesLevelAndTextAndFlushesEveryLine) {
    log.Open(directory.PathOf("log"));
    ILogSink& sink = log;
    sink.Write(1, "Announced buffer %I64u", 18446744073709551615ull);
    EXPECT_EQ(directory.Read("log"), "1 Announced buffer 18446744073709551615\n");
    sink.Write(0, "bad");
    sink.WriteError("100% of %s");
    EXPECT_EQ(directory.Read("log"),
              "1 Announced buffer 18446744073709551615\n0 bad\n0 100% of %s\n");
}

class KeptLines final : public ILogObserver {
public:
    void OnLogLine(int level, const std::string& text) override {
        lines += std::to_string(level) + text + ";";
    }
    std::string lines;
};

TEST_F(LogFileTest, PassesLinesToItsObserver) {
    KeptLines kept;
    ILogSink& sink = log;
    sink.Write(1, "before");
    log.Watch(&kept);
    sink.Write(1, "a%d", 1);
    sink.WriteError("b");
    log.Watch(nullptr);
    sink.Write(1, "after");
    EXPECT_EQ(kept.lines, "1a1;0b;");
    log.Open(directory.PathOf("log"));
    log.Watch(&kept);
    log.Watch(nullptr);
    sink.Write(1, "file");
    EXPECT_EQ(directory.Read("log"), "1 file\n") << "the file goes on";
}

TEST_F(LogFileTest, BeginsLinesWithTheTimeOnRequest) {
    log.Open(directory.PathOf("log"), true);
    const std::string before = UtcTimeText(std::chrono::system_clock::now());
    ILogSink& sink = log;
    sink.Write(1, "a");
    const std::string after = UtcTimeText(std::chrono::system_clock::now());
    const std::string line = directory.Read("log");
    ASSERT_EQ(line.size(), before.size() + std::string(" 1 a\n").size()) << line;
    EXPECT_EQ(line.substr(before.size()), " 1 a\n");
    EXPECT_LE(before, line.substr(0, before.size()));
    EXPECT_LE(line.substr(0, before.size()), after);
}

TEST(LogTime, IsInUtcToTheMicrosecond) {
    using std::chrono::microseconds;
    const auto at = [](std::int64_t count) {
        return UtcTimeText(std::chrono::system_clock::time_point(microseconds(count)));
    };
    EXPECT_EQ(at(0), "1970-01-01T00:00:00.000000Z");
    EXPECT_EQ(at(1709251199000007), "2024-02-29T23:59:59.000007Z");
    EXPECT_EQ(at(1709251200000000), "2024-03-01T00:00:00.000000Z");
}

TEST_F(LogFileTest, WritesLinesOfAnyLength) {
    log.Open(directory.PathOf("log"));
    const std::string longText(70000, 'x');
    ILogSink& sink = log;
    sink.Write(1, "%s|%s", longText.c_str(), "end");
    for (const std::size_t length : {510u, 511u, 512u, 513u}) {
        sink.Write(1, "%s", std::string(length, 'y').c_str());
    }
    EXPECT_EQ(directory.Read("log"), "1 " + longText + "|end\n" + "1 " + std::string(510, 'y') +
                                         "\n1 " + std::string(511, 'y') + "\n1 " +
                                         std::string(512, 'y') + "\n1 " + std::string(513, 'y') +
                                         "\n");
}

TEST_F(LogFileTest, KeepsOneCallOnOneLine) {
    log.Open(directory.PathOf("log"));
    ILogSink& sink = log;
    sink.Write(1, "finished.\n");
    sink.WriteError("a\r\nb");
    EXPECT_EQ(directory.Read("log"), "1 finished.\\n\n0 a\\r\\nb\n");
}

TEST_F(LogFileTest, NeverMixesLinesOfSeveralThreads) {
    log.Open(directory.PathOf("log"));
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([this, thread] {
            for (int line = 0; line < kLines; ++line) {
                static_cast<ILogSink&>(log).Write(
                    1, "%d-%d-%s", thread, line,
                    std::string(static_cast<std::size_t>(line), 'x').c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(directory.Read("log"));
    std::vector<int> next(kThreads, 0);
    std::string line;
    while (std::getline(lines, line)) {
        const int thread = line.at(2) - '0';
        const int number = next.at(static_cast<std::size_t>(thread))++;
        EXPECT_EQ(line, "1 " + std::to_string(thread) + "-" + std::to_string(number) + "-" +
                            std::string(static_cast<std::size_t>(number), 'x'));
    }
    EXPECT_EQ(next, std::vector<int>(kThreads, kLines));
}

TEST_F(LogFileTest, KeepsTheLastErrors) {
    ILogSink& sink = log;
    sink.Write(1, "fine");
    for (int i = 1; i <= 9; ++i) {
        sink.Write(0, "error %d", i);
    }
    sink.WriteError("error 10");
    const std::deque<std::string> errors = log.TakeErrors();
    ASSERT_EQ(errors.size(), 8u);
    EXPECT_EQ(errors.front(), "error 3");
    EXPECT_EQ(errors.back(), "error 10");
    EXPECT_TRUE(log.TakeErrors().empty());
}

TEST_F(LogFileTest, CountsFramesReceivedInError) {
    ILogSink& sink = log;
    sink.Write(0, "CMivoraKVNPyxenClass::FrameCallback: Receive error: \"%s\" at buffer", "x");
    sink.Write(0, "CMivoraKVNPyxenClass::FrameCallback: unknown snap type");
    sink.Write(1, "CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame");
    EXPECT_EQ(log.ReceiveErrors(), 1u);
}

TEST_F(LogFileTest, RefusesAFileThatCannotBeWritten) {
    const std::string path = directory.PathOf("missing/log");
    try {
        log.Open(path);
        FAIL() << "no exception";
    } catch (const CommandFailure& failure) {
        EXPECT_NE(std::string(failure.what()).find(path), std::string::npos);
    }
}

TEST_F(LogFileTest, KnowsTheSynchronisationFileThatWasNotRead) {
    ILogSink& sink = log;
    const char* const begin = "FeatureSyncher::Init: Loading %s...";
    sink.Write(1, begin, "a.sync");
    sink.Write(1, "CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded %s.", "a.sync");
    EXPECT_EQ(log.TakeUnreadSyncFile(), "");
    sink.Write(1, begin, "b.sync");
    EXPECT_EQ(log.TakeUnreadSyncFile(), "FeatureSyncher::Init: Loading b.sync...");
    EXPECT_EQ(log.TakeUnreadSyncFile(), "");
}

} // namespace
