#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/pattern.h"

#include <atomic>

namespace simulator_tests {
namespace {

// Queues every frame again and counts them, until told to stop.
struct Requeuer {
    Counter frames;
    std::atomic<bool> stop = false;
    std::atomic<int> bad = 0;

    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle, PxnFrame* frame) {
        auto* self = static_cast<Requeuer*>(frame->context[0]);
        if (frame->receiveStatus != PxnFrameStatusComplete) {
            ++self->bad;
        }
        self->frames.Add();
        if (!self->stop) {
            EXPECT_EQ(PxnCaptureFrameQueue(camera, frame, &Requeuer::OnFrame), 0);
        }
    }
};

class AcquisitionTest : public SimulatorTest {};

TEST_F(AcquisitionTest, WaitDeliversTheDocumentedPattern) {
    const PxnHandle camera = Open(kGigECamera);
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    const PxnFrame& frame = buffers[0].frame;
    EXPECT_EQ(frame.receiveStatus, PxnFrameStatusComplete);
    EXPECT_EQ(frame.width, 640u);
    EXPECT_EQ(frame.height, 480u);
    EXPECT_EQ(frame.imageSize, 640u * 480u);
    EXPECT_EQ(frame.pixelFormat, 0x01080001u);
    for (std::uint32_t y = 0; y < frame.height; y += 7) {
        for (std::uint32_t x = 0; x < frame.width; x += 3) {
            ASSERT_EQ(buffers[0].memory[y * 640 + x], (x + y + frame.frameId) % 256);
        }
    }
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    EXPECT_EQ(PxnCameraClose(camera), 0);
}

TEST_F(AcquisitionTest, CallbackRequeuesContinuously) {
    const PxnHandle camera = Open(kGigECamera);
    std::vector<Buffer> buffers = Announce(camera, 4);
    Requeuer requeuer;
    for (Buffer& buffer : buffers) {
        buffer.frame.context[0] = &requeuer;
        ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, &Requeuer::OnFrame), 0);
    }
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_TRUE(requeuer.frames.WaitFor(30));
    requeuer.stop = true;
    EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    EXPECT_EQ(requeuer.bad, 0);
    EXPECT_EQ(Count("announced"), Count("revoked"));
    EXPECT_EQ(Count("queued"), Count("completed") + Count("flushed"));
    EXPECT_EQ(PxnCameraClose(camera), 0);
}

} // namespace
} // namespace simulator_tests
