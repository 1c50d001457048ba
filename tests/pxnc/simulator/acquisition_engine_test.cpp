// acquisition_engine_test.cpp - frames and captures
#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/pattern.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace simulator_tests {
namespace {

// Notes every frame; queues it again until told to stop.
struct Receiver {
    Counter frames;
    std::atomic<bool> requeue = true;
    std::mutex mutex;
    std::vector<PxnFrame> seen;
    std::function<void(PxnHandle, PxnFrame*)> inside; // set before the first frame

    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame) {
        auto* self = static_cast<Receiver*>(frame->context[0]);
        EXPECT_NE(stream, nullptr);
        {
            std::lock_guard lock(self->mutex);
            self->seen.push_back(*frame);
        }
        if (self->inside) {
            self->inside(camera, frame);
        }
        if (self->requeue) {
            PxnCaptureFrameQueue(camera, frame, &Receiver::OnFrame);
        }
        self->frames.Add();
    }
    std::vector<PxnFrame> Seen() {
        std::lock_guard lock(mutex);
        return seen;
    }
};

class AcquisitionTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kGigECamera);
    }
    void TearDown() override {
        PxnCameraClose(camera); // -4 where the test unplugged it
        EXPECT_EQ(Count("announced"), Count("revoked") + Count("revokedByClose"));
        EXPECT_EQ(Count("queued"), Count("completed") + Count("flushed"));
        EXPECT_EQ(Count("openCameras"), 0);
        SimulatorTest::TearDown();
    }
    void Queue(std::vector<Buffer>& buffers, Receiver& receiver) {
        for (Buffer& buffer : buffers) {
            buffer.frame.context[0] = &receiver;
            ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, &Receiver::OnFrame), 0);
        }
    }
    void Start() {
        ASSERT_EQ(PxnCaptureStart(camera), 0);
        ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    }
    void Stop() {
        EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
        EXPECT_EQ(PxnCaptureEnd(camera), 0);
        EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
        EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    }
    void SetFast() { ASSERT_EQ(PxnFeatureBoolSet(camera, "SimulatorFreeRunning", 1), 0); }

    PxnHandle camera = nullptr;
};

TEST_F(AcquisitionTest, EveryMemberOfTheFrameIsFilled) {
    ASSERT_EQ(PxnFeatureIntSet(camera, "OffsetX", 8), 0);
    ASSERT_EQ(PxnFeatureIntSet(camera, "OffsetY", 4), 0);
    std::vector<Buffer> buffers = Announce(camera, 1);
    int context = 0;
    buffers[0].frame.context[3] = &context;
    Snap(camera, buffers[0]);
    const PxnFrame& frame = buffers[0].frame;
    EXPECT_EQ(frame.receiveStatus, PxnFrameStatusComplete);
    EXPECT_EQ(frame.receiveFlags, 1u | 2u | 4u | 8u | 16u | 32u);
    EXPECT_EQ(frame.width, 640u);
    EXPECT_EQ(frame.height, 480u);
    EXPECT_EQ(frame.offsetX, 8u);
    EXPECT_EQ(frame.offsetY, 4u);
    EXPECT_EQ(frame.imageSize, 640u * 480u);
    EXPECT_EQ(frame.imageData, frame.buffer);
    EXPECT_EQ(frame.pixelFormat, 0x01080001u);
    EXPECT_EQ(frame.payloadType, std::uint32_t{PxnPayloadImage});
    EXPECT_EQ(frame.chunkDataPresent, 0u);
    EXPECT_GT(frame.timestamp, 0u);
    EXPECT_EQ(frame.context[3], &context);
    for (std::uint32_t y = 0; y < frame.height; y += 7) {
        for (std::uint32_t x = 0; x < frame.width; x += 3) {
            ASSERT_EQ(buffers[0].memory[y * 640 + x],
                      pxsim::GradientMono(x + 8, y + 4, frame.frameId, 8));
        }
    }
}

TEST_F(AcquisitionTest, ThePictureMovesWithTheFrameNumber) {
    std::vector<Buffer> buffers = Announce(camera, 5);
    Receiver receiver;
    receiver.requeue = false;
    Queue(buffers, receiver);
    Start();
    ASSERT_TRUE(receiver.frames.WaitFor(5));
    Stop();
    for (std::uint64_t n = 0; n < 5; ++n) {
        EXPECT_EQ(buffers[n].frame.frameId, n) << "frames are filled in the order of the queue";
        for (std::uint32_t at : {0u, 639u, 640u * 100u + 7u, 640u * 480u - 1u}) {
            EXPECT_EQ(buffers[n].memory[at], (at % 640 + at / 640 + n) % 256);
        }
    }
}

TEST_F(AcquisitionTest, PatternsDiffer) {
    std::vector<std::vector<std::uint8_t>> pictures;
    for (const char* pattern :
         {"GreyDiagonalRamp", "ColorBar", "ResolutionChart", "Noise", "Black", "White"}) {
        ASSERT_EQ(PxnFeatureEnumSet(camera, "TestPattern", pattern), 0);
        std::vector<Buffer> buffers = Announce(camera, 1);
        Snap(camera, buffers[0]);
        for (const auto& other : pictures) {
            EXPECT_NE(other, buffers[0].memory) << pattern;
        }
        const auto kind = static_cast<pxsim::Pattern>(pictures.size());
        for (std::uint32_t at : {0u, 12345u, 200000u}) {
            EXPECT_EQ(buffers[0].memory[at], pxsim::PictureMono(kind, 1, at % 640, at / 640) >> 8)
                << pattern;
        }
        pictures.push_back(buffers[0].memory);
        EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    }
}

TEST_F(AcquisitionTest, NoiseDependsOnItsSeed) {
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TestPattern", "Noise"), 0);
    std::vector<Buffer> first = Announce(camera, 1);
    Snap(camera, first[0]);
    std::vector<Buffer> again = Announce(camera, 1);
    Snap(camera, again[0]);
    ASSERT_EQ(PxnFeatureIntSet(camera, "TestPatternSeed", 99), 0);
    std::vector<Buffer> other = Announce(camera, 1);
    Snap(camera, other[0]);
    EXPECT_EQ(first[0].memory, again[0].memory);
    EXPECT_NE(first[0].memory, other[0].memory);
}

TEST_F(AcquisitionTest, ReverseMirrorsTheImage) {
    ASSERT_EQ(PxnFeatureBoolSet(camera, "ReverseX", 1), 0);
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    EXPECT_EQ(buffers[0].memory[0], (1280 - 1) % 256);
    EXPECT_EQ(buffers[0].memory[1], (1280 - 2) % 256);
}

TEST_F(AcquisitionTest, ContinuousAcquisitionCountsUpWithoutGaps) {
    std::vector<Buffer> buffers = Announce(camera, 4);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    EXPECT_TRUE(receiver.frames.WaitFor(30));
    Stop();
    const std::vector<PxnFrame> seen = receiver.Seen();
    for (std::size_t i = 1; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].frameId, seen[i - 1].frameId + 1);
        EXPECT_GT(seen[i].timestamp, seen[i - 1].timestamp);
        EXPECT_EQ(seen[i].receiveStatus, PxnFrameStatusComplete);
    }
    const std::uint64_t after = receiver.frames.Value();
    EXPECT_EQ(after, static_cast<std::uint64_t>(Count("callbacks")));
}

TEST_F(AcquisitionTest, FramesKeepTheFrameRate) {
    ASSERT_EQ(PxnFeatureFloatSet(camera, "AcquisitionFrameRate", 50.0), 0);
    Control("clock stop");
    std::vector<Buffer> buffers = Announce(camera, 4);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    EXPECT_TRUE(receiver.frames.WaitFor(1));
    for (std::uint64_t n = 1; n <= 10 && !HasFailure(); ++n) {
        EXPECT_TRUE(IsNextTime(20 * kNanosecondsPerMillisecond));
        Control("clock advance 19");
        EXPECT_TRUE(IsNextTime(kNanosecondsPerMillisecond)) << "a frame before its time";
        Control("clock advance 1");
        EXPECT_TRUE(receiver.frames.WaitFor(n + 1));
    }
    Stop();
    const std::vector<PxnFrame> seen = receiver.Seen();
    ASSERT_EQ(seen.size(), 11u);
    for (std::size_t n = 1; n < seen.size(); ++n) {
        EXPECT_EQ(seen[n].timestamp - seen[n - 1].timestamp, 20 * kNanosecondsPerMillisecond);
    }
}

TEST_F(AcquisitionTest, APictureThatTakesItsTimeLeadsToNoBurst) {
    ASSERT_EQ(PxnFeatureIntSet(camera, "Width", 1280), 0);
    ASSERT_EQ(PxnFeatureIntSet(camera, "Height", 16), 0);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TestPattern", "Noise"), 0);
    ASSERT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 100), 0);
    ASSERT_EQ(PxnFeatureFloatSet(camera, "AcquisitionFrameRate", 500), 0);
    // A machine that stands still leads to one, too.
    std::uint64_t interval = 0;
    for (std::int64_t seed = 1; seed <= 20 && interval < kNanosecondsPerMillisecond; ++seed) {
        ASSERT_EQ(PxnFeatureIntSet(camera, "TestPatternSeed", seed), 0); // another picture
        std::vector<Buffer> buffers = Announce(camera, 4);
        Receiver receiver;
        Queue(buffers, receiver);
        Start();
        EXPECT_TRUE(receiver.frames.WaitFor(3));
        Stop();
        const std::vector<PxnFrame> seen = receiver.Seen();
        interval = seen[2].timestamp - seen[1].timestamp;
    }
    EXPECT_GE(interval, kNanosecondsPerMillisecond);
}

TEST_F(AcquisitionTest, FreeRunningIsFast) {
    SetFast();
    std::vector<Buffer> buffers = Announce(camera, 8);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    EXPECT_TRUE(receiver.frames.WaitFor(500));
    Stop();
    EXPECT_EQ(Count("dropped"), 0) << "the camera waits for buffers";
}

TEST_F(AcquisitionTest, AcquisitionModesEndByThemselves) {
    for (const auto& [mode, frames] : {std::pair{"SingleFrame", 1u}, std::pair{"MultiFrame", 3u}}) {
        ASSERT_EQ(PxnFeatureEnumSet(camera, "AcquisitionMode", mode), 0);
        if (frames > 1) {
            ASSERT_EQ(PxnFeatureIntSet(camera, "AcquisitionFrameCount", frames), 0);
        }
        std::vector<Buffer> buffers = Announce(camera, 5);
        Receiver receiver;
        receiver.requeue = false;
        Queue(buffers, receiver);
        Start();
        EXPECT_TRUE(receiver.frames.WaitFor(frames));
        EXPECT_EQ(PxnCaptureEnd(camera), 0);
        EXPECT_EQ(receiver.frames.Value(), frames);
        EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
        EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
        EXPECT_TRUE(IsWritable(camera, "Width")) << "the acquisition is over";
    }
}

TEST_F(AcquisitionTest, SoftwareTriggersMakeOneFrameEach) {
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TriggerMode", "On"), 0);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TriggerSource", "Software"), 0);
    std::vector<Buffer> buffers = Announce(camera, 4);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    for (std::uint64_t n = 1; n <= 3; ++n) {
        EXPECT_EQ(receiver.frames.Value(), n - 1);
        EXPECT_EQ(PxnFeatureCommandRun(camera, "TriggerSoftware"), 0);
        EXPECT_TRUE(receiver.frames.WaitFor(n));
    }
    Stop();
    EXPECT_EQ(receiver.frames.Value(), 3u);
}

TEST_F(AcquisitionTest, LinesTriggerFromOutside) {
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TriggerMode", "On"), 0);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "TriggerSource", "Line1"), 0);
    EXPECT_FALSE(IsWritable(camera, "TriggerSoftware"));
    std::vector<Buffer> buffers = Announce(camera, 1);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    Control(std::string("trigger ") + kGigECamera);
    EXPECT_TRUE(receiver.frames.WaitFor(1));
    Stop();
}

TEST_F(AcquisitionTest, FramesWithoutABufferAreDroppedAndCounted) {
    std::vector<Buffer> buffers = Announce(camera, 1);
    Receiver receiver;
    receiver.requeue = false;
    Queue(buffers, receiver);
    Start();
    ASSERT_TRUE(receiver.frames.WaitFor(1));
    const PxnHandle stream = InfoOf(camera).streamHandles[0];
    while (GetInt(stream, "StreamBufferUnderrunCount") < 3) {
        std::this_thread::yield();
    }
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, &Receiver::OnFrame), 0);
    EXPECT_TRUE(receiver.frames.WaitFor(2));
    Stop();
    EXPECT_GE(Count("dropped"), 3);
    EXPECT_GE(receiver.Seen()[1].frameId, 4u) << "dropped frames have numbers too";
}

TEST_F(AcquisitionTest, SmallBuffersAreReported) {
    std::vector<Buffer> buffers = Announce(camera, 1);
    buffers[0].frame.bufferSize -= 1;
    ASSERT_EQ(PxnFrameAnnounce(camera, &buffers[0].frame, sizeof(PxnFrame)), 0);
    Snap(camera, buffers[0]);
    EXPECT_EQ(buffers[0].frame.receiveStatus, PxnFrameStatusTooSmall);
    EXPECT_EQ(buffers[0].memory[0], 0xEE) << "nothing was written";
    EXPECT_EQ(Count("announced"), 1) << "announcing again updates";
}

TEST_F(AcquisitionTest, QueueAndAnnounceSayWhatIsWrong) {
    PxnFrame frame{};
    EXPECT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrNotFound);
    EXPECT_EQ(PxnCaptureFrameQueue(camera, nullptr, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &frame, 1), PxnErrNotFound);
    EXPECT_EQ(PxnCaptureFrameWait(camera, nullptr, 1), PxnErrBadParameter);
    EXPECT_EQ(PxnFrameRevoke(camera, &frame), PxnErrNotFound);
    EXPECT_EQ(PxnFrameRevoke(camera, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFrameAnnounce(camera, nullptr, sizeof frame), PxnErrBadParameter);
    EXPECT_EQ(PxnFrameAnnounce(camera, &frame, 111), PxnErrStructSize);
    frame.bufferSize = 100;
    EXPECT_EQ(PxnFrameAnnounce(camera, &frame, sizeof frame), PxnErrBadParameter) << "no memory";
    EXPECT_EQ(PxnFrameAnnounce(PXN_SYSTEM_HANDLE, &frame, sizeof frame), PxnErrBadHandle);
    EXPECT_EQ(PxnCaptureStart(nullptr), PxnErrBadHandle);
    std::vector<Buffer> buffers = Announce(camera, 1);
    EXPECT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), 0);
    EXPECT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), PxnErrAlready);
    EXPECT_EQ(PxnFrameRevoke(camera, &buffers[0].frame), PxnErrInUse);
    EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
    EXPECT_EQ(PxnFrameRevoke(camera, &buffers[0].frame), 0);
    EXPECT_EQ(PxnFrameRevoke(camera, &buffers[0].frame), PxnErrNotFound);
}

TEST_F(AcquisitionTest, StreamHandlesServeAsWell) {
    const PxnHandle stream = InfoOf(camera).streamHandles[0];
    std::vector<Buffer> buffers = Announce(stream, 1);
    EXPECT_EQ(PxnCaptureStart(stream), 0);
    EXPECT_EQ(PxnCaptureFrameQueue(stream, &buffers[0].frame, nullptr), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &buffers[0].frame, kWaitMs), 0);
    EXPECT_EQ(GetInt(stream, "StreamAnnouncedBufferCount"), 1);
    EXPECT_EQ(GetInt(stream, "StreamDeliveredFrameCount"), 1);
    EXPECT_EQ(GetInt(stream, "StreamReceivedBytes"), 640 * 480);
    Stop();
}

TEST_F(AcquisitionTest, StartingTwiceSucceeds) {
    EXPECT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
}

TEST_F(AcquisitionTest, QueueingBeforeTheStartWorks) {
    std::vector<Buffer> buffers = Announce(camera, 2);
    Receiver receiver;
    Queue(buffers, receiver);
    Start();
    EXPECT_TRUE(receiver.frames.WaitFor(4));
    Stop();
}

TEST_F(AcquisitionTest, QueuedFramesSurviveTheEndOfCapture) {
    std::vector<Buffer> buffers = Announce(camera, 1);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), 0);
    ASSERT_EQ(PxnCaptureEnd(camera), 0);
    Start();
    EXPECT_EQ(PxnCaptureFrameWait(camera, &buffers[0].frame, kWaitMs), 0);
    Stop();
}

// ---- waiting ----

TEST_F(AcquisitionTest, WaitsRunOutOfTime) {
    Control("clock stop");
    std::vector<Buffer> buffers = Announce(camera, 1);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &buffers[0].frame, kWaitMs), PxnErrNotAvailable)
        << "it is not queued";
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), 0);
    std::atomic<PxnError> result = 1;
    std::thread waiter([&] { result = PxnCaptureFrameWait(camera, &buffers[0].frame, 20); });
    EXPECT_TRUE(IsNextTime(20 * kNanosecondsPerMillisecond));
    Control("clock advance 19");
    EXPECT_TRUE(IsNextTime(kNanosecondsPerMillisecond)) << "the wait is over before its time";
    EXPECT_EQ(result, 1);
    Control("clock advance 1");
    waiter.join();
    EXPECT_EQ(result, PxnErrTimeout);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &buffers[0].frame, 0), PxnErrTimeout);
    Stop();
}

TEST_F(AcquisitionTest, EverythingThatTakesTheFrameAwayEndsItsWait) {
    const auto ways = {
        +[](PxnHandle handle) { EXPECT_EQ(PxnCaptureEnd(handle), 0); },
        +[](PxnHandle handle) { EXPECT_EQ(PxnCaptureQueueFlush(handle), 0); },
        +[](PxnHandle handle) { EXPECT_EQ(PxnFrameRevokeAll(handle), 0); },
        +[](PxnHandle handle) { EXPECT_EQ(PxnCameraClose(handle), 0); },
    };
    for (const auto way : ways) {
        const PxnHandle usb = Open(kUsbCamera);
        std::vector<Buffer> buffers = Announce(usb, 1);
        ASSERT_EQ(PxnCaptureStart(usb), 0);
        ASSERT_EQ(PxnCaptureFrameQueue(usb, &buffers[0].frame, nullptr), 0);
        std::atomic<PxnError> result = 1;
        std::thread waiter(
            [&] { result = PxnCaptureFrameWait(usb, &buffers[0].frame, 0xFFFFFFFF); });
        way(usb);
        waiter.join();
        // The wait may have come after the deed, which closing answers with the stale handle.
        EXPECT_TRUE(result == PxnErrNotAvailable || result == PxnErrBadHandle ||
                    result == PxnErrNotFound)
            << result;
        PxnCameraClose(usb);
    }
}

// ---- callbacks ----

TEST_F(AcquisitionTest, CallbacksMayNotWaitForThemselves) {
    std::vector<Buffer> buffers = Announce(camera, 2);
    Receiver receiver;
    std::vector<PxnError> results;
    PxnHandle opened = nullptr;
    receiver.inside = [&](PxnHandle handle, PxnFrame* frame) {
        results = {
            PxnCaptureEnd(handle),         PxnCaptureStart(handle),
            PxnCaptureQueueFlush(handle),  PxnFrameRevokeAll(handle),
            PxnFrameRevoke(handle, frame), PxnCaptureFrameWait(handle, frame, 1),
            PxnCameraClose(handle),        PxnCameraOpen(kUsbCamera, PxnAccessModeFull, &opened)};
        receiver.requeue = false;
    };
    Queue(buffers, receiver);
    Start();
    ASSERT_TRUE(receiver.frames.WaitFor(1));
    EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    ASSERT_EQ(results.size(), 8u);
    for (const PxnError result : results) {
        EXPECT_EQ(result, PxnErrInvalidCall);
    }
    Stop();
}

TEST_F(AcquisitionTest, CallbacksMayUseFeatures) {
    std::vector<Buffer> buffers = Announce(camera, 1);
    Receiver receiver;
    receiver.inside = [&](PxnHandle handle, PxnFrame*) {
        EXPECT_EQ(GetInt(handle, "Width"), 640);
        EXPECT_EQ(PxnFeatureFloatSet(handle, "Gain", 1.0), 0);
        EXPECT_EQ(PxnFeatureCommandRun(handle, "AcquisitionStop"), 0);
    };
    Queue(buffers, receiver);
    Start();
    ASSERT_TRUE(receiver.frames.WaitFor(1));
    Stop();
    EXPECT_EQ(receiver.frames.Value(), 1u);
}

TEST_F(AcquisitionTest, EndingAndClosingWaitForTheRunningCallback) {
    const auto ways = {
        +[](PxnHandle handle) { return PxnCaptureEnd(handle); },
        +[](PxnHandle handle) { return PxnCaptureQueueFlush(handle); },
        +[](PxnHandle handle) { return PxnFrameRevokeAll(handle); },
        +[](PxnHandle handle) { return PxnCameraClose(handle); },
    };
    for (const auto way : ways) {
        const PxnHandle usb = Open(kUsbCamera);
        std::vector<Buffer> buffers = Announce(usb, 1);
        Receiver receiver;
        Counter entered;
        Counter released;
        std::atomic<bool> finished = false;
        receiver.requeue = false;
        receiver.inside = [&](PxnHandle, PxnFrame*) {
            entered.Add();
            EXPECT_TRUE(released.WaitFor(1));
            finished = true;
        };
        buffers[0].frame.context[0] = &receiver;
        ASSERT_EQ(PxnCaptureFrameQueue(usb, &buffers[0].frame, &Receiver::OnFrame), 0);
        ASSERT_EQ(PxnCaptureStart(usb), 0);
        ASSERT_EQ(PxnFeatureCommandRun(usb, "AcquisitionStart"), 0);
        ASSERT_TRUE(entered.WaitFor(1));
        std::thread release([&released] { released.Add(); });
        EXPECT_EQ(way(usb), 0);
        EXPECT_TRUE(finished);
        release.join();
        PxnCameraClose(usb);
    }
}

TEST_F(AcquisitionTest, FlushedFramesGetNoCallback) {
    std::vector<Buffer> buffers = Announce(camera, 3);
    Receiver receiver;
    Queue(buffers, receiver);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    Stop();
    EXPECT_EQ(receiver.frames.Value(), 0u);
    EXPECT_EQ(Count("flushed"), 3);
}

TEST_F(AcquisitionTest, StartingAndStoppingWhileOthersQueueLosesNothing) {
    SetFast();
    std::vector<Buffer> buffers = Announce(camera, 4);
    Receiver receiver;
    Queue(buffers, receiver);
    std::atomic<bool> ending = false;
    std::thread restless([&] {
        while (!ending) {
            EXPECT_EQ(PxnCaptureEnd(camera), 0);
            EXPECT_EQ(PxnCaptureStart(camera), 0);
        }
    });
    std::thread reader([&] {
        while (!ending) {
            GetInt(camera, "PayloadSize");
            PxnFeatureFloatSet(camera, "Gain", 2.0);
        }
    });
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_TRUE(receiver.frames.WaitFor(200));
    ending = true;
    restless.join();
    reader.join();
    receiver.requeue = false;
    Stop();
}

TEST_F(AcquisitionTest, CameraEventsAreReportedWhenAskedFor) {
    Counter events;
    ASSERT_EQ(PxnFeatureEnumSet(camera, "EventSelector", "FrameEnd"), 0);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "EventNotification", "On"), 0);
    const auto callback = [](PxnHandle, const char*, void* context) {
        static_cast<Counter*>(context)->Add();
    };
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "EventFrameEnd", callback, &events), 0);
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    EXPECT_TRUE(events.WaitFor(1));
    EXPECT_GE(GetInt(camera, "EventFrameEnd"), 1);
    EXPECT_EQ(GetInt(camera, "EventFrameEndFrameID"), 0);
    EXPECT_EQ(GetInt(camera, "EventExposureEnd"), 0) << "nobody asked";
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "EventFrameEnd", callback), 0);
}

TEST_F(AcquisitionTest, CountersCountFrames) {
    ASSERT_EQ(PxnFeatureEnumSet(camera, "CounterEventSource", "FrameEnd"), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "CounterReset"), 0);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "AcquisitionMode", "SingleFrame"), 0);
    for (std::int64_t n = 1; n <= 3; ++n) {
        std::vector<Buffer> buffers = Announce(camera, 1);
        Snap(camera, buffers[0]);
        EXPECT_EQ(GetInt(camera, "CounterValue"), n);
        EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    }
    ASSERT_EQ(PxnFeatureCommandRun(camera, "CounterReset"), 0);
    EXPECT_EQ(GetInt(camera, "CounterValue"), 0);
    EXPECT_EQ(GetInt(camera, "CounterValueAtReset"), 3);
}

} // namespace
} // namespace simulator_tests
