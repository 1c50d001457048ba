// trace_writer_test.cpp - the file that a session is traced to
#include "pxnc/trace/trace_writer.h"

#include "pxnc/trace/encoder.h"
#include "tests/pxnc/trace/trace_fixture.h"

#include <map>
#include <thread>
#include <vector>

namespace trace_tests {
namespace {

using sdktrace::kHeaderSize;
using sdktrace::kMegabyte;

class TraceWriterTest : public TraceTest {
protected:
    std::size_t FileSize() const { return directory.Read("a.trace").size(); }
    /// Writes a text of `length` to the feature of that number, and returns how much that takes.
    void WriteText(int number, std::size_t length) {
        const std::string name = std::to_string(number);
        const std::string text(length, 'x');
        Call(Entry::kPxnFeatureStringSet, number, PXN_SYSTEM_HANDLE, name.c_str(), text.c_str());
    }
    /// The events are those of the last calls, whole and in order; returns how many calls.
    static int ExpectLast(const sdktrace::Trace& trace, int last) {
        int calls = 0;
        for (auto event = trace.events.rbegin(); event != trace.events.rend(); ++event) {
            if (!IsBegin(*event)) {
                EXPECT_EQ(event->result, last - calls);
                ++calls;
            } else {
                EXPECT_EQ(event->values[1].text, std::to_string(last - calls + 1));
            }
        }
        return calls;
    }
};

TEST_F(TraceWriterTest, KeepsCallsInOrderWithTimesAndThread) {
    WriteText(1, 10);
    WriteText(2, 100);
    const sdktrace::Trace trace = Read();
    ASSERT_EQ(trace.events.size(), 4u);
    EXPECT_EQ(trace.libraryVersion, kLibrary);
    EXPECT_TRUE(trace.hasBeginning);
    EXPECT_EQ(ExpectLast(trace, 2), 2);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(trace.events[i].partner, i ^ 1);
        EXPECT_EQ(trace.events[i].entry, Entry::kPxnFeatureStringSet);
        EXPECT_EQ(trace.events[i].thread, trace.events[0].thread);
        EXPECT_GE(trace.events[i].time, trace.events[i == 0 ? 0 : i - 1].time);
    }
}

TEST_F(TraceWriterTest, ShortensTheFileAtTheEndAndWritesNothingAfterwards) {
    EXPECT_EQ(FileSize(), kHeaderSize + kMegabyte);
    WriteText(1, 10);
    recorder->Finish();
    EXPECT_LT(FileSize(), kHeaderSize + 300);
    WriteText(2, 10);
    recorder->Finish();
    EXPECT_EQ(ExpectLast(Read(), 1), 1);
}

TEST_F(TraceWriterTest, ReplacesTheOldestWhenTheFileIsFull) {
    constexpr int kCalls = 5000;
    for (int i = 1; i <= kCalls; ++i) {
        WriteText(i, 900);
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(FileSize(), kHeaderSize + kMegabyte);
        const sdktrace::Trace trace = Read();
        EXPECT_FALSE(trace.hasBeginning);
        EXPECT_GT(ExpectLast(trace, kCalls), 900);
        recorder->Finish();
    }
}

TEST_F(TraceWriterTest, KeepsRecordsThatFillSeveralBlocks) {
    for (int i = 1; i <= 30; ++i) {
        WriteText(i, 150000);
    }
    EXPECT_GE(ExpectLast(Read(), 30), 5);
}

TEST_F(TraceWriterTest, LeavesOutTheContentOfWhatIsTooBig) {
    WriteText(1, kMegabyte);
    WriteText(2, 10);
    const sdktrace::Trace trace = Read();
    ASSERT_EQ(trace.events.size(), 4u);
    EXPECT_TRUE(trace.events[0].isWithoutContent);
    EXPECT_TRUE(trace.events[0].values.empty());
    EXPECT_EQ(trace.events[1].result, 1);
    EXPECT_FALSE(trace.events[2].isWithoutContent);
    EXPECT_EQ(trace.events[2].values[2].text, std::string(10, 'x'));
}

TEST_F(TraceWriterTest, TakesThePixelsOfFramesThatFitInto) {
    Begin(1, true);
    std::vector<unsigned char> memory(2 * kMegabyte, 7);
    PxnFrame frame{};
    frame.buffer = memory.data();
    frame.bufferSize = static_cast<std::uint32_t>(memory.size());
    const auto words = ToWords(nullptr, nullptr, nullptr, &frame);
    recorder->EndCallback(recorder->BeginCallback(Entry::kFrameCallback, words),
                          Entry::kFrameCallback, 0);
    const sdktrace::Trace trace = Read();
    ASSERT_EQ(trace.events.size(), 2u);
    EXPECT_GT(trace.events[0].values[3].parts[1].text.size(), kMegabyte / 5);
}

TEST_F(TraceWriterTest, ServesThreadsAtOnce) {
    constexpr int kThreads = 4;
    constexpr int kCalls = 1000;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int call = 1; call <= kCalls; ++call) {
                WriteText(call, 20);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::map<std::uint32_t, int> last;
    for (const Event& event : Read().events) {
        if (!IsBegin(event)) {
            EXPECT_EQ(event.result, ++last[event.thread]);
        }
    }
    EXPECT_EQ(last.size(), std::size_t{kThreads});
    for (const auto& [thread, calls] : last) {
        EXPECT_EQ(calls, kCalls) << thread;
    }
}

TEST_F(TraceWriterTest, ReportsAFileThatCannotBeWritten) {
    sdktrace::Recorder other;
    std::string error;
    EXPECT_FALSE(other.Create({directory.PathOf("none/a.trace"), 1, kLibrary}, false, error));
    EXPECT_NE(error, "");
}

} // namespace
} // namespace trace_tests
