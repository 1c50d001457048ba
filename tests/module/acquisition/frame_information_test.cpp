// frame_information_test.cpp - what an acquisition keeps and reports of each frame
#include "tests/module/acquisition/acquisition_insides.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

class FrameInformation : public SnapFixture {
protected:
    void TearDown() override {
        Frames().Listener().Install(nullptr, nullptr);
        SnapFixture::TearDown();
    }

    Acquisition& Frames() { return AcquisitionInsides::Of(Grabber()); }
    MV_FRAME_INFO Info(uint64_t index) {
        MV_FRAME_INFO info{};
        EXPECT_TRUE(Frames().LoadFrameInfo(index, info));
        return info;
    }
    uint32_t Picture(uint64_t index) { return Info(index).picture; }
    void Listen() { Frames().Listener().Install(&Receive, this); }
    void UseConvertedFormat() {
        Camera()["PixelFormat"].text = "Mono12p";
        Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    }

    std::vector<MV_FRAME_INFO> reported;
    std::function<void(const MV_FRAME_INFO&)> onReport;

private:
    static void Receive(const MV_FRAME_INFO* frame, void* context) {
        auto& test = *static_cast<FrameInformation*>(context);
        test.reported.push_back(*frame);
        if (test.onReport) {
            test.onReport(*frame);
        }
    }
};

TEST_F(FrameInformation, SaysThatAPictureIsCurrentUntilItsBufferIsQueuedAgain) {
    Ready(2);
    EXPECT_EQ(Picture(1), MV_PICTURE_NONE);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    std::vector<uint32_t> pictures;
    onHandOver = [&](uint64_t index) {
        pictures.push_back(Picture(index));
    };
    sdk.OnCall("PxnCaptureFrameQueue", [&] { pictures.push_back(Picture(1)); });
    ASSERT_TRUE(sdk.Deliver(1, PxnFrameStatusComplete, 17));
    EXPECT_EQ(pictures, (std::vector<uint32_t>{MV_PICTURE_CURRENT, MV_PICTURE_GONE}));
    const MV_FRAME_INFO info = Info(1);
    EXPECT_EQ(info.picture, MV_PICTURE_GONE);
    EXPECT_EQ(info.frameId, 17u);
    EXPECT_EQ(info.received, 1u);
    EXPECT_EQ(info.status, MV_FRAME_COMPLETE);
    EXPECT_EQ(info.width, 640u);
    EXPECT_EQ(info.height, 480u);
    EXPECT_EQ(Picture(0), MV_PICTURE_NONE);
}

TEST_F(FrameInformation, SaysThatAPictureIsStillCurrentWhenItsBufferCannotBeQueued) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
}

TEST_F(FrameInformation, SaysThatAPictureIsCurrentAfterTheStopUntilTheNextSnap) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Picture(0), MV_PICTURE_GONE);
}

TEST_F(FrameInformation, SaysThatAConvertedPictureIsCurrentUntilTheNextConversion) {
    UseConvertedFormat();
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 1));
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<uint64_t>{0});
    // The raw image of an incomplete frame is not converted: the picture is not its own.
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete, 2));
    EXPECT_EQ(Picture(0), MV_PICTURE_GONE);
    EXPECT_EQ(Info(0).frameId, 2u);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 3));
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
    EXPECT_EQ(Info(0).frameId, 3u);
}

// Seen from another thread while a conversion runs.
TEST_F(FrameInformation, SaysThatThePictureIsGoneWhileTheNextOneIsConverted) {
    UseConvertedFormat();
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    std::atomic<bool> isGoneSeen{false};
    std::atomic<bool> ended{false};
    std::thread reader([&] {
        while (!isGoneSeen && !ended) {
            isGoneSeen = Picture(0) == MV_PICTURE_GONE;
        }
    });
    for (int frame = 0; frame < 10000 && !isGoneSeen; ++frame) {
        EXPECT_TRUE(sdk.Deliver(0));
    }
    ended = true;
    reader.join();
    EXPECT_TRUE(isGoneSeen);
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
}

TEST_F(FrameInformation, CountsFramesOfAnyStatusSinceTheLastSnap) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(1, PxnFrameStatusTooSmall));
    ASSERT_TRUE(sdk.Deliver(0, 77));
    EXPECT_EQ(Info(1).received, 2u);
    EXPECT_EQ(Info(1).status, MV_FRAME_TOO_SMALL);
    EXPECT_EQ(Info(0).received, 3u);
    EXPECT_EQ(Info(0).status, 77);
    EXPECT_EQ(Picture(1), MV_PICTURE_GONE);
    EXPECT_EQ(FramesReceived(), 1u);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Info(0).received, 1u);
}

TEST_F(FrameInformation, ReportsEachFrameBeforeItIsHandedOver) {
    Ready(2);
    Listen();
    std::vector<std::string> events;
    onReport = [&](const MV_FRAME_INFO& frame) {
        events.push_back("reported " + std::to_string(frame.bufferIndex));
        EXPECT_EQ(Info(frame.bufferIndex).frameId, frame.frameId);
    };
    onHandOver = [&](uint64_t index) {
        events.push_back("handed over " + std::to_string(index));
    };
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 5));
    ASSERT_TRUE(sdk.Deliver(1, PxnFrameStatusIncomplete, 6));
    EXPECT_EQ(events, (std::vector<std::string>{"reported 0", "handed over 0", "reported 1"}));
    ASSERT_EQ(reported.size(), 2u);
    EXPECT_EQ(reported[0].size, sizeof(MV_FRAME_INFO));
    EXPECT_EQ(reported[0].picture, MV_PICTURE_CURRENT);
    EXPECT_EQ(reported[0].frameId, 5u);
    EXPECT_EQ(reported[1].picture, MV_PICTURE_GONE);
    EXPECT_EQ(reported[1].status, MV_FRAME_INCOMPLETE);
    EXPECT_EQ(reported[1].received, 2u);
}

TEST_F(FrameInformation, ReportsTheFrameOfASynchronousSnap) {
    Ready(1);
    Listen();
    sdk.Data().completeWaitsAtOnce = true;
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(reported.size(), 1u);
        EXPECT_TRUE(Frames().IsHandingOver(0));
        EXPECT_FALSE(Frames().IsHandingOver(1));
    };
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0].received, 1u);
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
    reported.clear();
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(Info(0).received, 1u);
    EXPECT_FALSE(Frames().IsHandingOver(0));
}

// A synchronous snap converts nothing, so that the host's image is none of its frame.
TEST_F(FrameInformation, SaysThatASynchronousSnapLeavesNoConvertedPicture) {
    UseConvertedFormat();
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(Picture(0), MV_PICTURE_GONE);
}

TEST_F(FrameInformation, IsForgottenWhenBuffersArePrepared) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    // What is refused changes nothing.
    EXPECT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    EXPECT_EQ(Picture(0), MV_PICTURE_CURRENT);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Picture(0), MV_PICTURE_NONE);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    MV_FRAME_INFO info{};
    EXPECT_FALSE(Frames().LoadFrameInfo(1, info));
}

TEST_F(FrameInformation, KnowsNoBuffersOfACameraThatHasTakenThemAlong) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    Grabber().CloseActCamera();
    sdk.ClearFailures();
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    MV_FRAME_INFO info{};
    EXPECT_FALSE(Frames().LoadFrameInfo(0, info));
}

} // namespace
