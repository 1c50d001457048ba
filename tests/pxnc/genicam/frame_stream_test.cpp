// frame_stream_test.cpp - frames and captures
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/pxnc/genicam/frame_set.h"
#include "tests/support/wait_until.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace genicam_test {
namespace {

constexpr std::uint32_t kWidth = 512;
constexpr std::uint32_t kHeight = 512;
constexpr std::uint32_t kPayload = kWidth * kHeight;

/// The fake camera's picture brightens by one from pixel to pixel and line to line, starting again
/// at a fixed count, and moves by one from frame to frame.
void ExpectDiagonalPattern(const std::vector<unsigned char>& picture) {
    ASSERT_EQ(picture.size(), kPayload);
    const auto isStep = [](unsigned char from, unsigned char to) {
        return to == from + 1 || (to == 0 && from >= 254);
    };
    std::size_t wrong = 0;
    for (std::uint32_t y = 0; y < kHeight; ++y) {
        const unsigned char* line = &picture[y * kWidth];
        for (std::uint32_t x = 0; x + 1 < kWidth; ++x) {
            wrong += isStep(line[x], line[x + 1]) ? 0 : 1;
            // One line further down stands what is one pixel further right.
            wrong += y + 1 < kHeight && line[x + kWidth] != line[x + 1] ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0u);
}

} // namespace

class StreamTest : public CameraFixture {
protected:
    void SetUp() override {
        Open();
        ASSERT_EQ(Sdk().FeatureFloatSet(camera, "AcquisitionFrameRate", 100), PxnErrSuccess);
    }

    std::int64_t StreamInt(const char* name) const {
        std::int64_t value = -1;
        EXPECT_EQ(Sdk().FeatureIntGet(stream, name, &value), PxnErrSuccess) << name;
        return value;
    }
};

TEST_F(StreamTest, StreamsAHundredFramesInOrder) {
    FrameSet frames(camera, 8, kPayload);
    frames.keepsPictures = true;
    frames.onFrame = [&](PxnFrame* frame) {
        frames.Queue(static_cast<std::size_t>(frame - frames.At(0)));
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(100));
    frames.StopAndRevoke();

    std::size_t complete = 0;
    const FrameSet::Received* before = nullptr;
    const std::vector<FrameSet::Received> all = frames.Frames();
    for (const FrameSet::Received& received : all) {
        const PxnFrame& frame = received.frame;
        EXPECT_EQ(received.camera, camera);
        EXPECT_EQ(received.stream, stream);
        EXPECT_EQ(frame.context[0], &frames);
        if (frame.receiveStatus != PxnFrameStatusComplete) {
            continue;
        }
        ++complete;
        EXPECT_EQ(frame.receiveFlags,
                  std::uint32_t{PxnFrameFlagDimension | PxnFrameFlagOffset | PxnFrameFlagFrameId |
                                PxnFrameFlagTimestamp | PxnFrameFlagImageData |
                                PxnFrameFlagPayloadType});
        EXPECT_EQ(frame.width, kWidth);
        EXPECT_EQ(frame.height, kHeight);
        EXPECT_EQ(frame.offsetX, 0u);
        EXPECT_EQ(frame.offsetY, 0u);
        EXPECT_EQ(frame.pixelFormat, 0x01080001u);
        EXPECT_EQ(frame.imageSize, kPayload);
        EXPECT_EQ(frame.payloadType, std::uint32_t{PxnPayloadImage});
        EXPECT_EQ(frame.chunkDataPresent, 0u);
        // Filled where it was announced: nothing was copied.
        EXPECT_EQ(frame.imageData, frame.buffer);
        ExpectDiagonalPattern(received.picture);
        if (before) {
            EXPECT_GT(frame.frameId, before->frame.frameId);
            EXPECT_GT(frame.timestamp, before->frame.timestamp);
            if (frame.frameId == before->frame.frameId + 1) {
                EXPECT_EQ(received.picture[0], before->picture[1]);
            }
        }
        before = &received;
    }
    // A loaded machine may lose a frame; a camera that works loses few.
    EXPECT_GE(complete, all.size() - 5);
    EXPECT_GE(StreamInt("StreamDeliveredFrameCount"), static_cast<std::int64_t>(complete));
    EXPECT_EQ(StreamInt("StreamIncompleteFrameCount"),
              static_cast<std::int64_t>(all.size() - complete));
}

TEST_F(StreamTest, WaitsForASingleFrameWithoutACallback) {
    FrameSet frames(camera, 1, kPayload);
    PxnFrame* frame = frames.At(0);
    frames.Announce();
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
        ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frame, nullptr), PxnErrSuccess);
        frames.StartAcquisition();
        ASSERT_EQ(Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF), PxnErrSuccess);
        EXPECT_EQ(frame->receiveStatus, PxnFrameStatusComplete);
        EXPECT_EQ(frame->width, kWidth);
        EXPECT_EQ(frame->context[1], frame);
        // What has come need not be waited for again.
        EXPECT_EQ(Sdk().CaptureFrameWait(stream, frame, 0), PxnErrSuccess);
        ASSERT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
        ASSERT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    }
    EXPECT_EQ(Sdk().FrameRevoke(camera, frame), PxnErrSuccess);
}

TEST_F(StreamTest, FillsFramesThatWereQueuedBeforeTheStart) {
    FrameSet frames(camera, 3, kPayload);
    frames.Announce();
    frames.Queue();
    EXPECT_EQ(StreamInt("StreamAnnouncedBufferCount"), 3);
    EXPECT_EQ(StreamInt("StreamInputBufferCount"), 3);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(3));
    frames.StopAndRevoke();
    const std::vector<FrameSet::Received> all = frames.Frames();
    ASSERT_EQ(all.size(), 3u);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].frame.context[1], frames.At(i));
    }
    EXPECT_EQ(StreamInt("StreamAnnouncedBufferCount"), 0);
}

TEST_F(StreamTest, ReportsThatABufferIsTooSmall) {
    FrameSet frames(camera, 1, kPayload / 2);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    frames.StopAndRevoke();
    EXPECT_EQ(frames.Frames()[0].frame.receiveStatus, PxnFrameStatusTooSmall);
}

TEST_F(StreamTest, TakesABufferLargerThanThePayload) {
    FrameSet frames(camera, 1, kPayload + 4096);
    frames.keepsPictures = true;
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    frames.StopAndRevoke();
    ASSERT_EQ(frames.Frames()[0].frame.receiveStatus, PxnFrameStatusComplete);
    ExpectDiagonalPattern(frames.Frames()[0].picture);
}

TEST_F(StreamTest, AnnouncingAgainUpdatesTheFrame) {
    FrameSet frames(camera, 1, kPayload / 2);
    std::vector<unsigned char> larger(kPayload);
    frames.Announce();
    frames.Queue();
    PxnFrame* frame = frames.At(0);
    frame->buffer = larger.data();
    frame->bufferSize = kPayload;
    ASSERT_EQ(Sdk().FrameAnnounce(camera, frame, sizeof *frame), PxnErrSuccess);
    EXPECT_EQ(StreamInt("StreamAnnouncedBufferCount"), 1);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    EXPECT_EQ(frames.Frames()[0].frame.receiveStatus, PxnFrameStatusComplete);
    EXPECT_EQ(frames.Frames()[0].frame.imageData, larger.data());
    frames.StopAndRevoke();
}

TEST_F(StreamTest, KeepsTheMemoryOfAFrameThatIsBeingFilled) {
    FrameSet frames(camera, 1, kPayload);
    std::vector<unsigned char> other(kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    PxnFrame* frame = frames.At(0);
    EXPECT_EQ(Sdk().FrameAnnounce(camera, frame, sizeof *frame), PxnErrSuccess);
    frame->buffer = other.data();
    EXPECT_EQ(Sdk().FrameAnnounce(camera, frame, sizeof *frame), PxnErrInUse);
    frames.StopAndRevoke();
}

TEST_F(StreamTest, RefusesWhatMakesNoSense) {
    FrameSet frames(camera, 2, kPayload);
    PxnFrame* frame = frames.At(0);
    EXPECT_EQ(Sdk().FrameAnnounce(camera, nullptr, sizeof *frame), PxnErrBadParameter);
    EXPECT_EQ(Sdk().FrameRevoke(camera, nullptr), PxnErrBadParameter);
    EXPECT_EQ(Sdk().CaptureFrameQueue(camera, nullptr, nullptr), PxnErrBadParameter);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, nullptr, 0), PxnErrBadParameter);
    EXPECT_EQ(Sdk().FrameAnnounce(camera, frame, sizeof *frame - 1), PxnErrStructSize);
    PxnFrame empty = {};
    EXPECT_EQ(Sdk().FrameAnnounce(camera, &empty, sizeof empty), PxnErrBadParameter);
    EXPECT_EQ(Sdk().CaptureFrameQueue(camera, frame, nullptr), PxnErrNotFound);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 0), PxnErrNotFound);
    EXPECT_EQ(Sdk().FrameRevoke(camera, frame), PxnErrNotFound);
    frames.Announce();
    EXPECT_EQ(frames.Queue(0), PxnErrSuccess);
    EXPECT_EQ(frames.Queue(0), PxnErrAlready);
    EXPECT_EQ(Sdk().FrameRevoke(camera, frame), PxnErrInUse);
    EXPECT_EQ(Sdk().FrameRevoke(camera, frames.At(1)), PxnErrSuccess);
    EXPECT_EQ(Sdk().FrameRevokeAll(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().FrameRevoke(camera, frame), PxnErrNotFound);
    EXPECT_EQ(frames.Count(), 0u);
    EXPECT_EQ(Sdk().CaptureStart(localDevice), PxnErrBadHandle);
}

TEST_F(StreamTest, WaitsOnlyForWhatMayCome) {
    FrameSet frames(camera, 1, kPayload);
    PxnFrame* frame = frames.At(0);
    frames.Announce();
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF), PxnErrNotAvailable);
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frame, nullptr), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF), PxnErrNotAvailable);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 1), PxnErrTimeout);
    ASSERT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF), PxnErrNotAvailable);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.StartAcquisition();
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF), PxnErrSuccess);
    frames.StopAndRevoke();
}

TEST_F(StreamTest, RevokingAllEndsWhatIsUnderWay) {
    FrameSet frames(camera, 4, kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    EXPECT_EQ(Sdk().FrameRevokeAll(camera), PxnErrSuccess);
    EXPECT_EQ(StreamInt("StreamAnnouncedBufferCount"), 0);
    EXPECT_EQ(StreamInt("StreamInputBufferCount"), 0);
    EXPECT_EQ(frames.Count(), 0u);
    // The capture still runs, for other frames.
    FrameSet others(camera, 1, kPayload);
    others.Announce();
    others.Queue();
    others.StartAcquisition();
    EXPECT_TRUE(others.WaitForCount(1));
    others.StopAndRevoke();
}

TEST_F(StreamTest, StartsAndEndsTwiceWithoutHarm) {
    EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureStart(stream), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
}

TEST_F(StreamTest, RestartsWithTheFramesThatAreStillQueued) {
    FrameSet frames(camera, 4, kPayload);
    frames.Announce();
    frames.Queue();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    EXPECT_EQ(frames.Count(), 0u);
    EXPECT_EQ(StreamInt("StreamInputBufferCount"), 4);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(4));
    frames.StopAndRevoke();
}

TEST_F(StreamTest, CapturesAgainAndAgain) {
    for (int round = 0; round < 10; ++round) {
        FrameSet frames(camera, 2, kPayload);
        frames.Announce();
        ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
        frames.Queue();
        frames.StartAcquisition();
        ASSERT_TRUE(frames.WaitForCount(2)) << round;
        frames.StopAndRevoke();
    }
}

TEST_F(StreamTest, FlushingCallsNoCallback) {
    FrameSet frames(camera, 4, kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    ASSERT_EQ(Sdk().CaptureQueueFlush(camera), PxnErrSuccess);
    EXPECT_EQ(StreamInt("StreamInputBufferCount"), 0);
    // The capture goes on with what is queued from now on.
    ASSERT_EQ(frames.Queue(2), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    frames.StopAndRevoke();
    ASSERT_EQ(frames.Count(), 1u);
    EXPECT_EQ(frames.Frames()[0].frame.context[1], frames.At(2));
}

TEST_F(StreamTest, FlushingEndsAWait) {
    FrameSet frames(camera, 1, kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frames.At(0), nullptr), PxnErrSuccess);
    std::atomic<PxnError> result = PxnErrSuccess;
    std::thread waiting([&] { result = Sdk().CaptureFrameWait(camera, frames.At(0), 0xFFFFFFFF); });
    EXPECT_EQ(Sdk().CaptureQueueFlush(camera), PxnErrSuccess);
    waiting.join();
    EXPECT_EQ(result, PxnErrNotAvailable);
    frames.StopAndRevoke();
}

TEST_F(StreamTest, ClosingEndsAWait) {
    FrameSet frames(camera, 1, kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frames.At(0), nullptr), PxnErrSuccess);
    std::atomic<PxnError> result = PxnErrSuccess;
    std::thread waiting([&] { result = Sdk().CaptureFrameWait(camera, frames.At(0), 0xFFFFFFFF); });
    Close();
    waiting.join();
    EXPECT_TRUE(result == PxnErrNotAvailable || result == PxnErrBadHandle) << result;
}

TEST_F(StreamTest, RefusesInsideAFrameCallbackWhatWouldWaitForIt) {
    FrameSet frames(camera, 2, kPayload);
    std::vector<PxnError> results;
    platform::Event asked;
    frames.onFrame = [&](PxnFrame* frame) {
        if (asked.IsSet()) {
            return;
        }
        results = {
            Sdk().CaptureEnd(camera),        Sdk().CaptureStart(camera),
            Sdk().CaptureQueueFlush(camera), Sdk().FrameRevoke(camera, frame),
            Sdk().FrameRevokeAll(camera),    Sdk().CaptureFrameWait(camera, frame, 0xFFFFFFFF),
            Sdk().CameraClose(camera),       Sdk().Startup(nullptr)};
        Sdk().Shutdown();
        asked.Set();
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(asked.Wait(10000));
    EXPECT_EQ(results, std::vector<PxnError>(8, PxnErrInvalidCall));
    frames.StopAndRevoke();
}

TEST_F(StreamTest, AllowsFeaturesAndQueueingInsideAFrameCallback) {
    FrameSet frames(camera, 1, kPayload);
    std::atomic<int> good = 0;
    frames.onFrame = [&](PxnFrame*) {
        std::int64_t width = 0;
        const bool read = Sdk().FeatureIntGet(camera, "Width", &width) == PxnErrSuccess;
        const bool stopped = Sdk().FeatureCommandRun(camera, "AcquisitionStop") == PxnErrSuccess;
        good += read && stopped && frames.Queue(0) == PxnErrSuccess ? 1 : 0;
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    EXPECT_TRUE(support::WaitUntil([&] { return good > 0; }));
    frames.StopAndRevoke();
}

TEST_F(StreamTest, EndingWaitsForTheCallbackThatRuns) {
    FrameSet frames(camera, 2, kPayload);
    platform::Event inside;
    platform::Event leave;
    std::atomic<bool> left = false;
    frames.onFrame = [&](PxnFrame*) {
        inside.Set();
        leave.Wait(10000);
        left = true;
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(inside.Wait(10000));
    std::atomic<bool> leftBeforeEnd = false;
    std::thread ending([&] {
        EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
        leftBeforeEnd = left.load();
    });
    leave.Set();
    ending.join();
    EXPECT_TRUE(leftBeforeEnd);
    const std::size_t count = frames.Count();
    frames.StopAndRevoke();
    EXPECT_EQ(frames.Count(), count);
}

TEST_F(StreamTest, EndingLeavesFilledFramesQueuedInTheirOrder) {
    FrameSet frames(camera, 3, kPayload);
    platform::Event inside;
    platform::Event leave;
    frames.onFrame = [&](PxnFrame*) {
        inside.Set();
        leave.Wait(10000);
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(inside.Wait(10000));
    // With one lost, none is left to be filled; two wait for the callback of the first.
    EXPECT_TRUE(support::WaitUntil([&] { return StreamInt("StreamLostFrameCount") > 0; }));
    ASSERT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
    std::thread ending([&] { EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess); });
    EXPECT_TRUE(support::WaitUntil([&] {
        PxnBool grabbing = 1;
        return Sdk().FeatureBoolGet(stream, "StreamIsGrabbing", &grabbing) == PxnErrSuccess &&
               grabbing == 0;
    }));
    EXPECT_EQ(StreamInt("StreamInputBufferCount"), 2);
    leave.Set();
    ending.join();
    EXPECT_EQ(frames.Count(), 1u);

    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(3));
    frames.StopAndRevoke();
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(frames.Frames()[i].frame.context[1], frames.At(i));
    }
}

TEST_F(StreamTest, ClosingInTheMiddleOfAnAcquisitionEndsTheCallbacks) {
    FrameSet frames(camera, 4, kPayload);
    frames.onFrame = [&](PxnFrame* frame) {
        frames.Queue(static_cast<std::size_t>(frame - frames.At(0)));
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(3));
    Close();
    const std::size_t count = frames.Count();
    // The camera is free at once, and a new capture has nothing to do with the old frames.
    Open();
    FrameSet next(camera, 1, kPayload);
    next.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    next.Queue();
    next.StartAcquisition();
    ASSERT_TRUE(next.WaitForCount(1));
    next.StopAndRevoke();
    EXPECT_EQ(frames.Count(), count);
}

TEST_F(StreamTest, CountsWhatComesWhileNothingIsQueued) {
    FrameSet frames(camera, 1, kPayload);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    // The frame is handed over by another thread than the one that counts.
    EXPECT_TRUE(frames.WaitForCount(1));
    EXPECT_TRUE(support::WaitUntil([&] { return StreamInt("StreamLostFrameCount") > 0; }));
    PxnBool grabbing = 0;
    EXPECT_EQ(Sdk().FeatureBoolGet(stream, "StreamIsGrabbing", &grabbing), PxnErrSuccess);
    EXPECT_EQ(grabbing, 1);
    frames.StopAndRevoke();
    EXPECT_EQ(frames.Count(), 1u);
    EXPECT_GT(StreamInt("StreamLostFrameCount"), 0);
}

TEST_F(StreamTest, HasNoChunksToOffer) {
    FrameSet frames(camera, 1, kPayload);
    PxnFrame* frame = frames.At(0);
    const PxnChunkAccessCallback callback = [](PxnHandle, void* calls) {
        ++*static_cast<int*>(calls);
        return PxnError{PxnErrSuccess};
    };
    int calls = 0;
    EXPECT_EQ(Sdk().ChunkDataAccess(frame, callback, &calls), PxnErrNotFound);
    EXPECT_EQ(Sdk().ChunkDataAccess(nullptr, callback, &calls), PxnErrBadParameter);
    EXPECT_EQ(Sdk().ChunkDataAccess(frame, nullptr, &calls), PxnErrBadParameter);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    EXPECT_EQ(Sdk().ChunkDataAccess(frame, callback, &calls), PxnErrNoData);
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    EXPECT_EQ(Sdk().ChunkDataAccess(frame, callback, &calls), PxnErrNoChunkData);
    frames.StopAndRevoke();
    EXPECT_EQ(calls, 0);
}

} // namespace genicam_test
