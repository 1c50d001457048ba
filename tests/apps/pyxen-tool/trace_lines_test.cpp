// trace_lines_test.cpp - a trace of the camera SDK as lines of text
#include "apps/pyxen-tool/trace_lines.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using sdktrace::Entry;
using sdktrace::Event;
using sdktrace::RecordType;
using sdktrace::Trace;
using sdktrace::Value;

/// Adds calls and callbacks to a trace, a millisecond after each other.
class TraceOfTest {
public:
    std::size_t Begin(Entry entry, std::uint32_t thread, std::vector<Value> values) {
        Event event = Next(entry, thread, std::move(values));
        event.type =
            entry >= Entry::kFrameCallback ? RecordType::kCallbackBegin : RecordType::kCallBegin;
        trace.events.push_back(event);
        return trace.events.size() - 1;
    }
    void End(std::size_t begin, std::int32_t result = 0) {
        const Event& before = trace.events[begin];
        Event event = Next(before.entry, before.thread, {});
        event.type = IsCallback(before) ? RecordType::kCallbackEnd : RecordType::kCallEnd;
        event.result = result;
        event.partner = begin;
        trace.events[begin].partner = trace.events.size();
        trace.events.push_back(event);
    }
    void Run(const char* command, std::uint32_t thread = 1, std::int32_t result = 0) {
        End(Begin(Entry::kPxnFeatureCommandRun, thread, {Word(0x20), Text(command)}), result);
    }
    static Value Word(std::uint64_t word) { return {Value::Type::kWord, word, {}, {}}; }
    static Value Text(const char* text) { return {Value::Type::kText, 0, text, {}}; }

    std::vector<std::string> Print(const TraceFilter& filter = {}) const {
        std::vector<std::string> lines;
        PrintTrace(trace, filter, [&](const std::string& line) { lines.push_back(line); });
        return lines;
    }

    Trace trace;

private:
    Event Next(Entry entry, std::uint32_t thread, std::vector<Value> values) const {
        Event event;
        event.entry = entry;
        event.time = trace.events.size() * 1000000;
        event.thread = thread;
        event.values = std::move(values);
        return event;
    }
};

using TraceLinesList = std::vector<std::string>;

TEST(TraceLines, IndentWhatHappensInsideOnTheSameThread) {
    TraceOfTest test;
    const std::size_t open = test.Begin(Entry::kPxnCameraClose, 1, {TraceOfTest::Word(0x20)});
    test.Run("Other", 2);
    const std::size_t callback = test.Begin(Entry::kInvalidationCallback, 1,
                                            {TraceOfTest::Word(0x30), TraceOfTest::Word(0x20),
                                             TraceOfTest::Text("Width"), TraceOfTest::Word(0)});
    test.Run("Inner");
    test.End(callback);
    test.End(open, -4);
    EXPECT_EQ(
        test.Print(),
        (TraceLinesList{
            "    0.000000   1 PxnCameraClose(camera=0x20) = -4 (7000.0 us)",
            "    0.001000   2 PxnFeatureCommandRun(handle=0x20, name=\"Other\") = 0 (1000.0 us)",
            "    0.003000   1   > InvalidationCallback(callback=0x30, handle=0x20, "
            "name=\"Width\", userContext=null) (3000.0 us)",
            "    0.004000   1     PxnFeatureCommandRun(handle=0x20, name=\"Inner\") = 0 "
            "(1000.0 us)"}));
}

TEST(TraceLines, ShowCallsOfWhichOneHalfIsMissing) {
    TraceOfTest test;
    Event end;
    end.type = RecordType::kCallEnd;
    end.entry = Entry::kPxnCameraOpen;
    end.thread = 1;
    end.result = -27;
    test.trace.events.push_back(end);
    test.Begin(Entry::kPxnShutdown, 1, {});
    EXPECT_EQ(test.Print(),
              (TraceLinesList{"    0.000000   1 PxnCameraOpen(...) = -27",
                              "    0.001000   1 PxnShutdown() ... has not returned"}));
}

TEST(TraceLines, LetThroughWhatAFilterWants) {
    TraceOfTest test;
    test.Run("One");
    test.Run("Two", 2, -6);
    test.End(test.Begin(Entry::kPxnCameraClose, 2, {TraceOfTest::Word(0x20)}));
    test.Begin(Entry::kPxnShutdown, 1, {});
    EXPECT_EQ(test.Print().size(), 4u);
    TraceFilter call;
    call.call = "Command";
    EXPECT_EQ(test.Print(call).size(), 2u);
    TraceFilter text;
    text.text = "\"Two\"";
    EXPECT_EQ(test.Print(text).size(), 1u);
    TraceFilter thread;
    thread.thread = 2;
    EXPECT_EQ(test.Print(thread).size(), 2u);
    TraceFilter failed;
    failed.onlyFailed = true;
    EXPECT_EQ(test.Print(failed).size(), 2u);
    failed.call = "Command";
    failed.thread = 1;
    EXPECT_EQ(test.Print(failed).size(), 0u);
}

TEST(TraceLines, CountCallsFailuresAndTimes) {
    TraceOfTest test;
    test.Run("One");
    test.Run("Two", 2, -6);
    test.Begin(Entry::kPxnShutdown, 1, {});
    const auto summaries = SummariseTrace(test.trace);
    ASSERT_EQ(summaries.size(), 2u);
    const CallSummary& run = summaries.at("PxnFeatureCommandRun");
    EXPECT_EQ(run.calls, 2u);
    EXPECT_EQ(run.failed, 1u);
    EXPECT_EQ(run.total, 2000000u);
    EXPECT_EQ(run.longest, 1000000u);
    EXPECT_EQ(summaries.at("PxnShutdown").failed, 1u);
}

TEST(TraceLines, CompareThreadsByTheirOrder) {
    TraceOfTest left;
    left.Run("One", 1);
    left.Run("Side", 5);
    left.Run("Two", 1);
    TraceOfTest right;
    right.Run("One", 3);
    right.Run("Two", 3);
    right.Run("Side", 4);
    EXPECT_EQ(CompareTraces(left.trace, right.trace), (TraceLinesList{"", ""}));
    right.Run("More", 4, -3);
    EXPECT_EQ(CompareTraces(left.trace, right.trace),
              (TraceLinesList{"", "- nothing more\n+ 0.006000 PxnFeatureCommandRun(handle=handle1, "
                                  "name=\"More\")"}));
    left.Run("More", 5, -4);
    EXPECT_EQ(CompareTraces(left.trace, right.trace)[1],
              "- 0.007000 end of PxnFeatureCommandRun = -4\n"
              "+ 0.007000 end of PxnFeatureCommandRun = -3");
    EXPECT_EQ(CompareTraces(left.trace, {})[0],
              "- 0.000000 PxnFeatureCommandRun(handle=handle1, name=\"One\")\n+ nothing more");
}

} // namespace
