// frame_buffers_test.cpp - giving every buffer of the host a frame record
#include "tests/module/grabber_fixture.h"

#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "tests/module/mutex_probe.h"

#include <string_view>
#include <thread>

namespace {

class FrameBuffers : public GrabberFixture {
protected:
    std::string Address(uint64_t index) {
        char text[32];
        std::snprintf(text, sizeof text, "%016llX",
                      static_cast<unsigned long long>(
                          reinterpret_cast<std::uintptr_t>(Grabber().GetFrameBuffer(index))));
        return text;
    }
    std::string Allocated(uint64_t index, uint64_t size) {
        return "1 Allocated buffer " + std::to_string(index) + " adr = 0x" + Address(index) +
               ", size = " + std::to_string(size);
    }
    const std::string entered = "1 CMivoraKVNPyxenClass::PrepareFrameBuffers";
    const std::string gotMutex = "1   CMivoraKVNPyxenClass::PrepareFrameBuffers: got mutex";
    const std::string left = "1 CMivoraKVNPyxenClass::PrepareFrameBuffers EXIT";
};

TEST_F(FrameBuffers, AreRefusedBeforeInit) {
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_NOT_INITIALISED);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(FrameBuffers, AreRefusedWithoutAnOpenCamera) {
    Init();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_CAMERA_NOT_OPEN);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(FrameBuffers, AreRefusedWithoutAVideoMode) {
    Open();
    Grabber().GetActCamera()->DeleteGfxModes();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_NO_VIDEO_MODE);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(FrameBuffers, AreRefusedForAClosedCameraThenForAMissingModeThenForAnAcquisition) {
    Open();
    Grabber().GetActCamera()->DeleteGfxModes();
    Grabber().SetAcquisitionState(1);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_NO_VIDEO_MODE);
    Grabber().SetAcquisitionState(0);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_CAMERA_NOT_OPEN);
    Grabber().SetAcquisitionState(1);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_CAMERA_NOT_OPEN);
    Grabber().SetAcquisitionState(0);
}

TEST_F(FrameBuffers, AreRefusedWhileAnAcquisitionRuns) {
    Prepare(2);
    for (uint32_t state = 1; state < 6; ++state) {
        Grabber().SetAcquisitionState(state);
        EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_BUSY);
    }
    Grabber().SetAcquisitionState(0);
    EXPECT_EQ(Log(), Texts{});
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_NE(Grabber().GetFrameBuffer(1), nullptr);
    EXPECT_EQ(Grabber().Snap(0), MV_BAD_VALUE); // still prepared
}

TEST_F(FrameBuffers, AreAllocatedOneByOne) {
    Open();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(3), MV_OK);
    const uint64_t size = 640 * 480;
    EXPECT_EQ(Log(),
              (Texts{entered, gotMutex, Allocated(0, size), Allocated(1, size), Allocated(2, size),
                     "1 3 Framebuffers are currently allocated.", left}));
    EXPECT_NE(Grabber().GetFrameBuffer(0), nullptr);
    EXPECT_NE(Grabber().GetFrameBuffer(2), nullptr);
    EXPECT_EQ(Grabber().GetFrameBuffer(3), nullptr);
    EXPECT_EQ(Grabber().GetFrameBuffer(~uint64_t{0}), nullptr);
    EXPECT_EQ(Grabber().GetRequestedBufferCount(), 3u);
}

TEST_F(FrameBuffers, AreNoneBeforeTheyArePrepared) {
    EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
}

TEST_F(FrameBuffers, MayBeAHundred) {
    Open();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(100), MV_OK);
    EXPECT_NE(Grabber().GetFrameBuffer(99), nullptr);
    const Texts log = Log();
    EXPECT_EQ(log[log.size() - 2], "1 100 Framebuffers are currently allocated.");
}

TEST_F(FrameBuffers, MayNotBeAHundredAndOne) {
    Prepare(3);
    void* const before = Grabber().GetFrameBuffer(2);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    EXPECT_EQ(Log(),
              (Texts{entered, gotMutex,
                     "0   ERROR: Requested 101 buffers, but device supports only 100", left}));
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().GetFrameBuffer(2), before);
    EXPECT_EQ(Grabber().GetFrameBuffer(3), nullptr);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
}

TEST_F(FrameBuffers, MayNotBeMoreThanAnyMemoryHolds) {
    Open();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(~uint64_t{0}), MV_REFUSED);
    EXPECT_EQ(Log()[2],
              "0   ERROR: Requested 18446744073709551615 buffers, but device supports only 100");
}

TEST_F(FrameBuffers, AreReusedByALaterCall) {
    Prepare(3);
    void* const first = Grabber().GetFrameBuffer(0);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(3), MV_OK);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), first);
}

TEST_F(FrameBuffers, GoFromTheEndWhenThereAreFewer) {
    Prepare(4);
    void* const first = Grabber().GetFrameBuffer(0);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), first);
    EXPECT_EQ(Grabber().GetFrameBuffer(1), nullptr);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
    EXPECT_EQ(Log().back(), left);
}

TEST_F(FrameBuffers, FollowTheSizeOfTheImage) {
    Prepare(1);
    Camera()["Width"].intValue = 1024;
    Camera()["Height"].intValue = 2;
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(Log()[2], Allocated(0, 2048));
}

TEST_F(FrameBuffers, MayBeEmpty) {
    Open();
    Camera()["Width"].intValue = 0;
    EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
    EXPECT_EQ(Log()[2], "1 Allocated buffer 0 adr = 0x0000000000000000, size = 0");
    EXPECT_EQ(Grabber().Snap(0), MV_BAD_VALUE); // prepared all the same
}

TEST_F(FrameBuffers, StopAtTheFirstThatCannotBeHad) {
    Open();
    // The pixel format is read twice for a buffer; the fifth time is the third buffer's.
    sdk.Fail("PxnFeatureEnumGet", PxnErrIO, 5);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(5), MV_REFUSED);
    const uint64_t size = 640 * 480;
    EXPECT_EQ(
        Log(),
        (Texts{
            entered,
            gotMutex,
            Allocated(0, size),
            Allocated(1, size),
            "0 CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: PxnFeatureEnumGet reports error -> cannot get pixelformat",
            "0   ERROR: could not allocate memory for frame buffers 2",
            "1 5 Framebuffers are currently allocated.",
            left,
        }));
    EXPECT_NE(Grabber().GetFrameBuffer(1), nullptr);
    EXPECT_EQ(Grabber().GetFrameBuffer(2), nullptr);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(5), MV_OK);
    EXPECT_NE(Grabber().GetFrameBuffer(4), nullptr);
}

TEST_F(FrameBuffers, AreRefusedWhenThereIsNoMemory) {
    Open();
    Camera()["Width"].intValue = 1 << 24;
    Camera()["Height"].intValue = 1 << 20;
    Camera()["PixelFormat"].text = "Mono12p";
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    EXPECT_EQ(Log()[2], "0   ERROR: could not allocate memory for frame buffers 0");
}

TEST_F(FrameBuffers, ForgetThatTheyWerePreparedWhenALaterCallFails) {
    Prepare(1);
    Camera()["PixelFormat"].readable = false;
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
}

TEST_F(FrameBuffers, ExcludeSerialTraffic) {
    Open();
    std::thread preparing;
    {
        const platform::MutexLock traffic(Grabber().SerialMutex());
        preparing = std::thread([&] { EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK); });
        ASSERT_TRUE(sink.WaitForLine(entered));
        // The mutex is this thread's.
        EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
    }
    preparing.join();
    EXPECT_EQ(Log()[1], gotMutex);
    EXPECT_NE(Grabber().GetFrameBuffer(0), nullptr);
}

TEST_F(FrameBuffers, LeaveNothingQueuedThatAFailedSynchronousSnapLeft) {
    Prepare(2);
    const std::pair<const char*, const char*> failures[] = {
        {"PxnFeatureCommandRun", "AcquisitionStart"}, {"PxnCaptureFrameWait", ""}};
    for (const auto& [entry, feature] : failures) {
        sdk.Fail(entry, PxnErrIO);
        ASSERT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED) << entry << feature;
        ASSERT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{0});
        Forget();
        // The SDK would fill what is freed here.
        EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
        EXPECT_EQ(Calls(), (Texts{"PxnCaptureQueueFlush(camera0)", "PxnFrameRevokeAll(camera0)"}));
        EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    }
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureQueueFlush", "PxnFrameRevokeAll"}), Texts{});
}

TEST_F(FrameBuffers, AskNothingOfTheSdkWhenAFailedSynchronousSnapLeftNothing) {
    for (const char* const entry :
         {"PxnFrameAnnounce", "PxnCaptureStart", "PxnCaptureFrameQueue"}) {
        Prepare(2);
        sdk.Fail(entry, PxnErrIO);
        ASSERT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED) << entry;
        Forget();
        EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
        EXPECT_EQ(Calls(), Texts{}) << entry;
        Destroy();
        sdk.Reset();
    }
}

TEST_F(FrameBuffers, AskNothingOfTheSdkAfterASynchronousSnap) {
    Prepare(1);
    sdk.Data().completeWaitsAtOnce = true;
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

/// Notes whether the mutex was free when a line with that end was written.
class MutexSink final : public ILogSink {
public:
    explicit MutexSink(std::string_view end) : watched(end) {}
    void Write(int, const char* format, ...) override {
        if (mutex && std::string_view(format).ends_with(watched)) {
            seen.push_back(IsFree(*mutex));
        }
    }
    void WriteError(const char*) override {}

    platform::Mutex* mutex = nullptr;
    std::vector<bool> seen;

private:
    const std::string_view watched;
};

TEST_F(FrameBuffers, GiveTheMutexBackBeforeTheirLastLine) {
    MutexSink exitSink(" EXIT");
    UseSink(&exitSink);
    Open();
    exitSink.mutex = &Grabber().SerialMutex();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    EXPECT_EQ(exitSink.seen, (std::vector<bool>{true, true}));
    Destroy();
}

TEST_F(FrameBuffers, SayThatTheyHaveTheMutexWhenTheyHaveIt) {
    MutexSink mutexSink(": got mutex");
    UseSink(&mutexSink);
    Open();
    mutexSink.mutex = &Grabber().SerialMutex();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(mutexSink.seen, std::vector<bool>{false});
    Destroy();
}

TEST_F(FrameBuffers, WorkWithoutASink) {
    WithoutSink();
    Open();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    EXPECT_NE(Grabber().GetFrameBuffer(1), nullptr);
}

} // namespace
