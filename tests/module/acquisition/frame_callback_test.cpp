// frame_callback_test.cpp - frames as they come from the SDK
#include "tests/module/acquisition/snap_fixture.h"

namespace {

class FrameCallback : public SnapFixture {
protected:
    void Run(uint64_t buffers) {
        Ready(buffers);
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        Forget();
    }
    static std::string Received(unsigned buffer, unsigned count, const std::string& id) {
        return "1 CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = " +
               std::to_string(buffer) + ", total count = " + std::to_string(count) +
               ". [RcvSize = 307200, 640x480, PixelFmt = 01080001, UniqueId = " + id + "]";
    }
    static std::string ReceiveError(const std::string& text) {
        return "0 CMivoraKVNPyxenClass::FrameCallback: Receive error: \"" + text +
               "\" at buffer idx = 1. [RcvSize = 307200, 640x480, PixelFmt = 01080001, UniqueId = "
               "9]";
    }
};

TEST_F(FrameCallback, HandsGoodFramesOverAndQueuesThemAgain) {
    Run(3);
    ASSERT_TRUE(sdk.Deliver(0, 0, 5, 0x11));
    ASSERT_TRUE(sdk.Deliver(2, 0, 0xFFFFFFFFFFFFFFFFu, 0x22));
    EXPECT_EQ(Log(), (Texts{Received(0, 1, "5"), Received(2, 2, "18446744073709551615")}));
    EXPECT_EQ(Calls(), (Texts{Queue(0), Queue(2)}));
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 1}, {2, 1}}));
    EXPECT_EQ(FramesReceived(), 2u);
    EXPECT_EQ(static_cast<const uint8_t*>(Grabber().GetFrameBuffer(2))[0], 0x22);
    uint64_t index = 99;
    EXPECT_EQ(Grabber().GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(Grabber().ReleaseFrameBuffer(index), MV_OK);
}

TEST_F(FrameCallback, LogsBadFramesAndQueuesThemAgain) {
    Run(2);
    const std::pair<std::int32_t, std::string> cases[] = {
        {-3, "Frame buffer was invalid"},
        {-2, "Frame buffer was too small"},
        {-1, "Frame could not be filled to the end"},
        {1, "Unknown error: 1"},
        {-4, "Unknown error: -4"},
        {-2147483647 - 1, "Unknown error: -2147483648"},
    };
    for (const auto& [status, text] : cases) {
        ASSERT_TRUE(sdk.Deliver(1, status, 9));
        EXPECT_EQ(Log(), Texts{ReceiveError(text)});
        EXPECT_EQ(Calls(), Texts{Queue(1)});
    }
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    EXPECT_EQ(FramesReceived(), 0u);
}

TEST_F(FrameCallback, ConvertsIntoTheHostsImage) {
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    Run(1);
    ASSERT_TRUE(sdk.Deliver(0, 0, 1, 0xAB));
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = 0, total count = 1. [RcvSize = 460800, 640x480, PixelFmt = 010C0047, UniqueId = 1]",
            "1 CMivoraKVNPyxenClass::FrameCallback: Image conversion done.",
        }));
    const auto* const pixels = static_cast<const uint16_t*>(Grabber().GetFrameBuffer(0));
    EXPECT_EQ(pixels[0], 0xBAB);
    EXPECT_EQ(pixels[640 * 480 - 1], 0xABA);
}

TEST_F(FrameCallback, HasCountedAndConvertedWhatItHandsOver) {
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    Run(1);
    uint64_t count = 0;
    uint16_t pixel = 0;
    onHandOver = [&](uint64_t index) {
        count = FramesReceived();
        pixel = static_cast<const uint16_t*>(Grabber().GetFrameBuffer(index))[0];
    };
    ASSERT_TRUE(sdk.Deliver(0, 0, 1, 0xAB));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(pixel, 0xBAB);
}

TEST_F(FrameCallback, DoesNotConvertBadFrames) {
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    Run(1);
    ASSERT_TRUE(sdk.Deliver(0, 0, 1, 0x00));
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete, 2, 0xFF));
    EXPECT_EQ(static_cast<const uint16_t*>(Grabber().GetFrameBuffer(0))[0], 0);
}

TEST_F(FrameCallback, ReportsAFrameThatCannotBeQueuedAgain) {
    Run(1);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(
        Log().back(),
        "0 CMivoraKVNPyxenClass::FrameCallback: Cannot requeue frame: Low level IO error in transport layer");
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
}

TEST_F(FrameCallback, LogsTheSizeOfTheBufferWhateverWasReceived) {
    Ready(1);
    PxnFrame frame{};
    frame.bufferSize = 4096;
    frame.imageSize = 1234;
    frame.width = 64;
    frame.height = 32;
    frame.pixelFormat = 0x01080001;
    frame.frameId = 7;
    Grabber().FrameCallback(&frame);
    frame.receiveStatus = PxnFrameStatusIncomplete;
    Grabber().FrameCallback(&frame);
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = 0, total count = 1. [RcvSize = 4096, 64x32, PixelFmt = 01080001, UniqueId = 7]",
            "0 CMivoraKVNPyxenClass::FrameCallback: Receive error: \"Frame could not be filled to the end\" at buffer idx = 0. [RcvSize = 4096, 64x32, PixelFmt = 01080001, UniqueId = 7]",
        }));
}

TEST_F(FrameCallback, OnlyHandsOverWhileIdle) {
    Run(1);
    Grabber().SetAcquisitionState(0);
    ASSERT_TRUE(sdk.Deliver(0, 0, 5));
    EXPECT_EQ(Log(), Texts{Received(0, 1, "5")});
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 1}}));
}

TEST_F(FrameCallback, WondersAtOtherModes) {
    for (const uint32_t mode : {3u, 4u, 5u, 6u, 0xFFFFFFFFu}) {
        Run(2);
        Grabber().SetAcquisitionState(mode);
        ASSERT_TRUE(sdk.Deliver(0, 0, 5));
        ASSERT_TRUE(sdk.Deliver(1, PxnFrameStatusInvalid, 9));
        const std::string unknown = "0 CMivoraKVNPyxenClass::FrameCallback: unknown snap type";
        EXPECT_EQ(Log(), (Texts{Received(0, 1, "5"), unknown,
                                ReceiveError("Frame buffer was invalid"), unknown}));
        EXPECT_EQ(Calls(), Texts{});
        Destroy();
        sdk.Reset();
    }
}

TEST_F(FrameCallback, GoesByTheModeAtItsBegin) {
    Run(1);
    onHandOver = [&](uint64_t) {
        Grabber().SetAcquisitionState(5);
    };
    ASSERT_TRUE(sdk.Deliver(0, 0, 5));
    EXPECT_EQ(Log(), Texts{Received(0, 1, "5")});
    EXPECT_EQ(Calls(), Texts{Queue(0)});
}

TEST_F(FrameCallback, QueuesWhatTheHostHasNotReleased) {
    Run(1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(sdk.Deliver(0));
    }
    EXPECT_EQ(FramesReceived(), 3u);
    EXPECT_EQ(Calls().size(), 3u);
}

TEST_F(FrameCallback, WorksWithoutASink) {
    WithoutSink();
    Ready(1);
    // Without a sink a continuous snap needs its announcement to fail, and an SDK that queues the
    // frame all the same.
    sdk.Data().broken.unannouncedFramesAreQueued = true;
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusTooSmall));
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 1}}));
    EXPECT_EQ(FramesReceived(), 1u);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{0});
}

} // namespace
