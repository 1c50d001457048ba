// trace_fixture.cpp - traces that tests write
#include "tests/pxnc/trace/trace_fixture.h"

namespace trace_tests {

void TraceTest::Begin(std::size_t megabytes, bool pixels) {
    recorder = std::make_unique<sdktrace::Recorder>();
    std::string error;
    EXPECT_TRUE(recorder->Create({path, megabytes, kLibrary}, pixels, error)) << error;
}

sdktrace::Trace TraceTest::Read() const {
    sdktrace::Trace trace;
    std::string error;
    EXPECT_TRUE(ReadTrace(path, trace, error)) << error;
    return trace;
}

FilledFrame::FilledFrame() {
    frame.buffer = pixels;
    frame.bufferSize = sizeof pixels;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagImageData;
    frame.frameId = 41;
    frame.timestamp = 1234567890123;
    frame.pixelFormat = 0x01080001;
    frame.width = 3;
    frame.height = 2;
    frame.imageSize = 6;
    frame.imageData = pixels + 2;
    frame.payloadType = PxnPayloadImage;
}

} // namespace trace_tests
