// trace_reader_test.cpp - traces that are read, whole and damaged
#include "pxnc/trace/trace_reader.h"

#include "tests/pxnc/trace/trace_fixture.h"

#include <cstddef>
#include <random>
#include <thread>

namespace trace_tests {
namespace {

class TraceReaderTest : public TraceTest {
protected:
    void WriteCalls(int count) {
        for (int i = 0; i < count; ++i) {
            std::int64_t value = i;
            Call(Entry::kPxnFeatureIntGet, 0, PXN_SYSTEM_HANDLE, "Width", &value);
        }
    }
    static std::string Problem(const std::string& content) {
        sdktrace::Trace trace;
        std::string error;
        return ParseTrace(content, trace, error) ? "" : error;
    }
};

TEST_F(TraceReaderTest, ReadsUpToWhereTheWriterCrashed) {
    WriteCalls(10);
    recorder->BeginCall(Entry::kPxnCameraClose, ToWords(PXN_SYSTEM_HANDLE));
    const sdktrace::Trace trace = Read(); // the file is as a crash would leave it
    ASSERT_EQ(trace.events.size(), 21u);
    EXPECT_EQ(trace.events[20].entry, Entry::kPxnCameraClose);
    EXPECT_EQ(trace.events[20].partner, Event::kNone);
}

TEST_F(TraceReaderTest, ReadsWhatIsThereOfAShortFile) {
    WriteCalls(40);
    recorder->Finish();
    const std::string whole = directory.Read("a.trace");
    std::size_t most = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        sdktrace::Trace trace;
        std::string error;
        const bool isRead = ParseTrace(whole.substr(0, length), trace, error);
        EXPECT_EQ(isRead, length >= sdktrace::kHeaderSize) << length;
        EXPECT_GE(trace.events.size(), most);
        most = trace.events.size();
    }
    EXPECT_EQ(most, 80u);
}

TEST_F(TraceReaderTest, SurvivesDamage) {
    WriteCalls(40);
    FilledFrame filled;
    const auto words = ToWords(nullptr, nullptr, nullptr, &filled.frame);
    recorder->BeginCallback(Entry::kFrameCallback, words);
    recorder->Finish();
    const std::string whole = directory.Read("a.trace");
    std::mt19937 random(1);
    unsigned refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string damaged = whole;
        for (int change = 0; change < 3; ++change) {
            const std::size_t at =
                sdktrace::kHeaderSize + random() % (whole.size() - sdktrace::kHeaderSize);
            damaged[at] = static_cast<char>(random());
        }
        refused += Problem(damaged).empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 100u);
    EXPECT_LT(refused, 2900u);
}

TEST_F(TraceReaderTest, RefusesCallsOfCallbacksAndCallbacksOfCalls) {
    recorder->BeginCallback(Entry::kPxnCameraClose, ToWords(PXN_SYSTEM_HANDLE));
    EXPECT_EQ(Problem(directory.Read("a.trace")), "it is damaged behind event 0");
    Begin(1, true);
    recorder->BeginCall(Entry::kInvalidationCallback, ToWords(nullptr, nullptr, "Width", nullptr));
    EXPECT_EQ(Problem(directory.Read("a.trace")), "it is damaged behind event 0");
}

TEST_F(TraceReaderTest, TakesNoEndOfAnotherThreadForThatOfACall) {
    const auto words = ToWords(PXN_SYSTEM_HANDLE);
    const std::uint64_t call = recorder->BeginCall(Entry::kPxnCameraClose, words);
    std::thread([&] { recorder->EndCall(call, Entry::kPxnCameraClose, words, 0); }).join();
    const sdktrace::Trace trace = Read();
    ASSERT_EQ(trace.events.size(), 2u);
    EXPECT_EQ(trace.events[0].partner, Event::kNone);
    EXPECT_EQ(trace.events[1].partner, Event::kNone);
}

TEST_F(TraceReaderTest, TakesNoEndBeforeItsBeginning) {
    const auto words = ToWords(PXN_SYSTEM_HANDLE);
    const std::uint64_t call = recorder->BeginCall(Entry::kPxnCameraClose, words);
    recorder->EndCall(call, Entry::kPxnCameraClose, words, 0);
    recorder->Finish();
    std::string content = directory.Read("a.trace");
    content[sdktrace::kHeaderSize + sizeof(sdktrace::BlockHeader) +
            offsetof(sdktrace::RecordHeader, time) + 7] = 1;
    sdktrace::Trace trace;
    std::string error;
    ASSERT_TRUE(ParseTrace(content, trace, error)) << error;
    ASSERT_EQ(trace.events.size(), 2u);
    EXPECT_EQ(trace.events[0].partner, Event::kNone);
}

TEST_F(TraceReaderTest, RefusesTimesThatCannotBeAddedUp) {
    WriteCalls(1);
    recorder->Finish();
    std::string content = directory.Read("a.trace");
    const std::size_t time = sdktrace::kHeaderSize + sizeof(sdktrace::BlockHeader) +
                             offsetof(sdktrace::RecordHeader, time);
    content[time + 7] = 1; // two years
    EXPECT_EQ(Problem(content), "");
    content[time + 7] = 0x40;
    EXPECT_EQ(Problem(content), "it is damaged behind event 0");
}

TEST_F(TraceReaderTest, SaysWhatIsWrong) {
    WriteCalls(2);
    recorder->Finish();
    std::string content = directory.Read("a.trace");
    EXPECT_EQ(Problem(""), "it is no trace");
    EXPECT_EQ(Problem(std::string(10000, 'x')), "it is no trace");
    EXPECT_EQ(Problem(content), "");
    content[sdktrace::kHeaderSize + sizeof(sdktrace::BlockHeader) + 4] = 77;
    EXPECT_EQ(Problem(content), "it is damaged behind event 0");
    content[8] = 9;
    EXPECT_EQ(Problem(content), "it has been written by another version");
    sdktrace::Trace trace;
    std::string error;
    EXPECT_FALSE(ReadTrace(directory.PathOf("none"), trace, error));
    EXPECT_NE(error, "");
}

} // namespace
} // namespace trace_tests
