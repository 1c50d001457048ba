// acquisition_threads_test.cpp - acquiring from several threads at once
#include "tests/module/acquisition/snap_fixture.h"

#include <atomic>
#include <thread>

namespace {

class AcquisitionThreads : public SnapFixture {
protected:
    /// Delivers whatever frame is queued, until the scope ends.
    class Camera {
    public:
        explicit Camera(scripted::Sdk& target) : sdk(target) {}
        ~Camera() {
            ended = true;
            thread.join();
        }
        Camera(const Camera&) = delete;
        Camera& operator=(const Camera&) = delete;

    private:
        void Run() {
            for (std::uint64_t frame = 0; !ended; ++frame) {
                const std::int32_t status = frame % 7 == 3 ? PxnFrameStatusIncomplete : 0;
                if (!sdk.Deliver(frame % 4, status, frame)) {
                    std::this_thread::yield();
                }
            }
        }

        scripted::Sdk& sdk;
        std::atomic<bool> ended{false};
        std::thread thread{[this] {
            Run();
        }};
    };
};

TEST_F(AcquisitionThreads, FramesComeWhileTheHostStartsAndStops) {
    Ready(4);
    std::atomic<uint64_t> received{0};
    onHandOver = [&](uint64_t index) {
        ++received;
        EXPECT_NE(Grabber().GetFrameBuffer(index), nullptr);
        uint64_t filled = 0;
        if (Grabber().GetLastFilledBuffer(&filled) == MV_OK) {
            EXPECT_EQ(Grabber().ReleaseFrameBuffer(filled), MV_OK);
        }
    };
    const Camera camera(sdk);
    for (int round = 0; round < 20; ++round) {
        const uint64_t before = received;
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        ASSERT_TRUE(support::WaitUntil([&] { return received > before + 3; }));
        FramesReceived();
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
        Forget();
    }
}

TEST_F(AcquisitionThreads, SingleSnapsFollowOneAnother) {
    Ready(4);
    const Camera camera(sdk);
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(Grabber().Snap(2), MV_OK);
        if (round % 3 == 0) {
            ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        } else {
            ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
        }
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        Forget();
    }
}

TEST_F(AcquisitionThreads, TheSdkIsUnloadedWhileFramesCome) {
    for (const uint32_t mode : {1u, 2u}) {
        for (int round = 0; round < 5; ++round) {
            Ready(4);
            {
                const Camera camera(sdk);
                ASSERT_EQ(Grabber().Snap(mode), MV_OK);
                ASSERT_TRUE(sink.WaitForLine(Said("started camera acquisition")));
                EXPECT_EQ(Grabber().DeInit(), MV_OK);
                EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
                EXPECT_EQ(sdk.StartupCount(), 0);
            }
            Destroy();
            sdk.Reset();
        }
    }
}

TEST_F(AcquisitionThreads, TheGrabberGoesWhileFramesCome) {
    Ready(4);
    const Camera camera(sdk);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.WaitForCall(start));
    Grabber().InstPostProcessCallBack(nullptr, nullptr);
    Destroy();
    EXPECT_EQ(sdk.StartupCount(), 0);
}

TEST_F(AcquisitionThreads, TheCameraIsClosedWhileFramesCome) {
    Ready(4);
    const Camera camera(sdk);
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
        ASSERT_EQ(Grabber().PrepareFrameBuffers(4), MV_OK);
    }
}

} // namespace
