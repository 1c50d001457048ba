// event_text_test.cpp - calls and callbacks of a trace as text
#include "pxnc/trace/event_text.h"

#include "tests/pxnc/trace/trace_fixture.h"

namespace trace_tests {
namespace {

using sdktrace::Detail;
using sdktrace::EventText;
using sdktrace::Identity;

class EventTextTest : public TraceTest {
protected:
    /// The last call.
    std::string Text(Identity identity = Identity::kAddress, Detail detail = Detail::kShort) const {
        const sdktrace::Trace trace = Read();
        EventText text(identity, detail);
        const std::size_t last = trace.events.size() - 2;
        return text.Begin(trace.events[last]) + text.End(trace.events[last + 1]);
    }
    static void* Address(std::uintptr_t value) { return reinterpret_cast<void*>(value); }
};

TEST_F(EventTextTest, WritesNumbersByTheirTypes) {
    std::int64_t integer = -5;
    Call(Entry::kPxnFeatureIntGet, 0, Address(0x20), "Width", &integer);
    EXPECT_EQ(Text(), "PxnFeatureIntGet(handle=0x20, name=\"Width\") = 0, value=-5");
    Call(Entry::kPxnFeatureFloatSet, -11, PXN_SYSTEM_HANDLE, "Gain", 0.1);
    EXPECT_EQ(Text(), "PxnFeatureFloatSet(handle=system, name=\"Gain\", value=0.1) = -11");
    PxnBool flag = 1;
    Call(Entry::kPxnFeatureAccessQuery, 0, Address(0x20), "Gain", nullptr, &flag);
    EXPECT_EQ(Text(), "PxnFeatureAccessQuery(handle=0x20, name=\"Gain\", readable=null) = 0, "
                      "writeable=1");
    std::uint32_t done = 2;
    Call(Entry::kPxnMemoryWrite, -19, Address(0x20), std::uint64_t{0x1F0}, std::uint32_t{4}, "abcd",
         &done);
    EXPECT_EQ(Text(), "PxnMemoryWrite(handle=0x20, address=0x1f0, size=4, buffer=[61626364]) = "
                      "-19, sizeComplete=2");
}

TEST_F(EventTextTest, LeavesOutWhatAFailureHasNotStored) {
    std::int64_t integer = -5;
    Call(Entry::kPxnFeatureIntGet, -6, Address(0x20), nullptr, &integer);
    EXPECT_EQ(Text(), "PxnFeatureIntGet(handle=0x20, name=null) = -6");
    Call(Entry::kPxnShutdown, 0);
    EXPECT_EQ(Text(), "PxnShutdown()");
}

TEST_F(EventTextTest, CutsTextsAndListsUnlessWhole) {
    const std::string text(100, 'x');
    const char* entries[10] = {"One", "Two", text.c_str(), nullptr, "5", "6", "7", "8", "9", "10"};
    std::uint32_t found = 10;
    Call(Entry::kPxnFeatureEnumRangeQuery, 0, Address(0x20), "Mode", entries, std::uint32_t{10},
         &found);
    const std::string begin =
        "PxnFeatureEnumRangeQuery(handle=0x20, name=\"Mode\", capacity=10) = 0, "
        "entries=[\"One\", \"Two\", \"";
    EXPECT_EQ(Text(), begin + std::string(80, 'x') +
                          "...\", null, \"5\", \"6\", \"7\", \"8\", ...], found=10");
    EXPECT_EQ(Text(Identity::kAddress, Detail::kWhole),
              begin + text + "\", null, \"5\", \"6\", \"7\", \"8\", \"9\", \"10\"], found=10");
}

TEST_F(EventTextTest, ShowsControlCharactersAsNumbers) {
    Call(Entry::kPxnFeatureEnumSet, 0, Address(0x20), "A\nB", "\x1B[31m");
    EXPECT_EQ(Text(), "PxnFeatureEnumSet(handle=0x20, name=\"A\\x0AB\", value=\"\\x1B[31m\") = 0");
}

TEST_F(EventTextTest, CountsPointersOnRequest) {
    PxnFrame frame{};
    Call(Entry::kPxnCaptureFrameQueue, 0, Address(0x20), &frame, nullptr);
    EXPECT_EQ(Text(Identity::kNumber),
              "PxnCaptureFrameQueue(handle=handle1, frame=frame2, callback=null) = 0");
}

TEST_F(EventTextTest, WritesRecordsAndFrames) {
    PxnVersionInfo version{1, 4, 0};
    Call(Entry::kPxnVersionQuery, 0, &version, std::uint32_t{12});
    EXPECT_EQ(Text(), "PxnVersionQuery(size=12) = 0, info={major=1, minor=4, patch=0}");
    FilledFrame filled;
    const auto words = ToWords(nullptr, Address(0x20), Address(0x21), &filled.frame);
    recorder->EndCallback(recorder->BeginCallback(Entry::kFrameCallback, words),
                          Entry::kFrameCallback, 0);
    EXPECT_EQ(Text(Identity::kNumber),
              "FrameCallback(callback=null, camera=handle1, stream=handle2, "
              "frame=frame3{receiveStatus=0, receiveFlags=17, frameId=41, timestamp=*, "
              "pixelFormat=17301505, width=3, height=2, offsetX=0, offsetY=0, imageSize=6, "
              "imageData=2, payloadType=1, chunkDataPresent=0}+8 bytes)");
}

TEST_F(EventTextTest, MarksWhatIsWithoutContent) {
    const std::string text(sdktrace::kMegabyte, 'x');
    Call(Entry::kPxnFeatureStringSet, 0, Address(0x20), "Name", text.c_str());
    EXPECT_EQ(Text(), "PxnFeatureStringSet(...) = 0");
}

} // namespace
} // namespace trace_tests
