// frame_player_test.cpp - tests of a camera that plays a recording, through the SDK's functions
#include "pxnc/recording/frame_player.h"

#include "pxnc.h"
#include "pxnc/skeleton/condition.h"
#include "tests/support/environment_guard.h"
#include "tests/support/wait_until.h"
#include "tests/support/written_recording.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstring>
#include <mutex>

namespace recording_tests {
namespace {

constexpr auto kPatience = std::chrono::seconds(20);

/// What a callback saw of a frame.
struct Received {
    std::int32_t status = 0;
    std::uint32_t flags = 0;
    std::uint64_t id = 0;
    std::uint64_t timestamp = 0;
    std::string image;
};

/// Takes frames until it has as many as it wants, queueing each again until then.
class Taker {
public:
    explicit Taker(std::size_t frames) : wanted(frames) {}

    void Take(PxnHandle camera, PxnFrame* frame) {
        bool isLast = false;
        {
            const std::lock_guard lock(mutex);
            Received one{
                frame->receiveStatus, frame->receiveFlags, frame->frameId, frame->timestamp, {}};
            if ((frame->receiveFlags & PxnFrameFlagImageData) != 0) {
                one.image.assign(static_cast<const char*>(frame->imageData), frame->imageSize);
            }
            received.push_back(std::move(one));
            isLast = received.size() == wanted;
        }
        if (!isLast) {
            PxnCaptureFrameQueue(camera, frame, &Taker::Callback);
        }
        changed.notify_all();
    }
    bool WaitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, kPatience, [&] { return received.size() >= count; });
    }
    std::vector<Received> All() {
        const std::lock_guard lock(mutex);
        return received;
    }

    static void PXN_CALL Callback(PxnHandle camera, PxnHandle, PxnFrame* frame) {
        static_cast<Taker*>(frame->context[0])->Take(camera, frame);
    }

private:
    const std::size_t wanted;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Received> received;
};

class PlayedRecording : public testing::Test {
protected:
    void TearDown() override {
        if (camera) {
            PxnCameraClose(camera);
        }
        if (isStarted) {
            PxnShutdown();
        }
    }
    /// Starts the SDK with the recording and opens its camera.
    void Open(const support::WrittenRecording& recording, const std::string& fast = "1") {
        const support::EnvironmentGuard name("PYXEN_RECORDING", recording.Write(directory));
        const support::EnvironmentGuard way("PYXEN_RECORDING_FAST", fast);
        isStarted = true;
        ASSERT_EQ(PxnStartup(nullptr), PxnErrSuccess);
        PxnCameraInfo info{};
        std::uint32_t found = 0;
        ASSERT_EQ(PxnCamerasList(&info, 1, &found, sizeof info), PxnErrSuccess);
        ASSERT_EQ(found, 1u);
        ASSERT_EQ(PxnCameraOpen(info.cameraIdString, PxnAccessModeFull, &camera), PxnErrSuccess);
    }
    /// Plays until so many frames have come.
    std::vector<Received> Play(std::size_t count, std::uint32_t bufferSize = 32) {
        std::vector<char> buffer(bufferSize);
        Taker taker(count);
        PxnFrame frame{};
        frame.buffer = buffer.data();
        frame.bufferSize = bufferSize;
        frame.context[0] = &taker;
        EXPECT_EQ(PxnFrameAnnounce(camera, &frame, sizeof frame), PxnErrSuccess);
        EXPECT_EQ(PxnCaptureStart(camera), PxnErrSuccess);
        EXPECT_EQ(PxnCaptureFrameQueue(camera, &frame, &Taker::Callback), PxnErrSuccess);
        EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), PxnErrSuccess);
        EXPECT_TRUE(taker.WaitFor(count));
        EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
        EXPECT_EQ(PxnCaptureEnd(camera), PxnErrSuccess);
        EXPECT_EQ(PxnCaptureQueueFlush(camera), PxnErrSuccess);
        EXPECT_EQ(PxnFrameRevoke(camera, &frame), PxnErrSuccess);
        return taker.All();
    }
    std::int64_t Int(const char* name) {
        std::int64_t value = -1;
        EXPECT_EQ(PxnFeatureIntGet(camera, name, &value), PxnErrSuccess) << name;
        return value;
    }
    double Float(const char* name) {
        double value = -1;
        EXPECT_EQ(PxnFeatureFloatGet(camera, name, &value), PxnErrSuccess) << name;
        return value;
    }
    std::string Text(const char* name) {
        char text[100] = {};
        std::uint32_t filled = 0;
        EXPECT_EQ(PxnFeatureStringGet(camera, name, text, sizeof text, &filled), PxnErrSuccess)
            << name;
        return text;
    }
    /// What starting with this recording fails with, as it is reported.
    std::string StartFailure(const std::string& path) {
        const support::EnvironmentGuard name("PYXEN_RECORDING", path);
        testing::internal::CaptureStderr();
        EXPECT_NE(PxnStartup(nullptr), PxnErrSuccess);
        PxnShutdown();
        return testing::internal::GetCapturedStderr();
    }
    static bool Contains(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    support::TemporaryDirectory directory;
    PxnHandle camera = nullptr;
    bool isStarted = false;
};

TEST_F(PlayedRecording, IsACameraAsItWasRecorded) {
    support::WrittenRecording recording;
    recording.Add();
    Open(recording);
    PxnCameraInfo info{};
    ASSERT_EQ(PxnCameraInfoQueryByHandle(camera, &info, sizeof info), PxnErrSuccess);
    EXPECT_STREQ(info.cameraIdString, "CAM-4711");
    EXPECT_STREQ(info.cameraIdExtended, "Board0|CAM-4711");
    EXPECT_STREQ(info.cameraName, "front door");
    EXPECT_STREQ(info.modelName, "Model 1");
    EXPECT_STREQ(info.serialString, "4711");
    EXPECT_EQ(Text("DeviceVendorName"), "Maker");
    EXPECT_EQ(Text("DeviceModelName"), "Model 1");
    EXPECT_EQ(Text("DeviceSerialNumber"), "4711");
    EXPECT_EQ(Text("DeviceUserID"), "front door");
    EXPECT_EQ(Int("Width"), 8);
    EXPECT_EQ(Int("Height"), 4);
    EXPECT_EQ(Int("OffsetX"), 16);
    EXPECT_EQ(Int("OffsetY"), 2);
    EXPECT_EQ(Int("PayloadSize"), 32);
    EXPECT_EQ(Float("ExposureTime"), 2500);
    EXPECT_EQ(Float("AcquisitionFrameRate"), 100);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 4), PxnErrInvalidAccess);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 2500), PxnErrInvalidAccess);
    const char* format = nullptr;
    ASSERT_EQ(PxnFeatureEnumGet(camera, "PixelFormat", &format), PxnErrSuccess);
    EXPECT_STREQ(format, "Mono8");
    std::uint32_t bytes = 0;
    EXPECT_EQ(PxnPayloadSizeGet(camera, &bytes), PxnErrSuccess);
    EXPECT_EQ(bytes, 32u);
}

TEST_F(PlayedRecording, HasNoFeaturesForWhatWasNotReadable) {
    support::WrittenRecording recording;
    recording.description.camera = {};
    recording.description.exposureUs.reset();
    recording.description.frameRate.reset();
    recording.Add();
    Open(recording);
    double value = 0;
    EXPECT_EQ(PxnFeatureFloatGet(camera, "ExposureTime", &value), PxnErrNotFound);
    EXPECT_EQ(PxnFeatureFloatGet(camera, "AcquisitionFrameRate", &value), PxnErrNotFound);
    EXPECT_EQ(Text("DeviceModelName"), "Recording");
    PxnCameraInfo info{};
    ASSERT_EQ(PxnCameraInfoQueryByHandle(camera, &info, sizeof info), PxnErrSuccess);
    EXPECT_PRED2(Contains, directory.Path(), info.cameraIdString);
}

TEST_F(PlayedRecording, SendsImagesIdsAndTimesAsTheyWereRecorded) {
    support::WrittenRecording recording;
    recording.Add();
    recording.AddMissing(FrameStatus::kDropped);
    recording.AddMissing(FrameStatus::kIncomplete);
    recording.Add(FrameStatus::kIncomplete);
    recording.Add();
    Open(recording);
    EXPECT_EQ(Int("PlaybackFrameCount"), 4);
    for (int turn = 0; turn < 2; ++turn) { // each start plays from the first frame on
        const std::vector<Received> frames = Play(4);
        ASSERT_EQ(frames.size(), 4u);
        EXPECT_EQ(frames[0].status, PxnFrameStatusComplete);
        EXPECT_EQ(frames[0].id, 17u);
        EXPECT_EQ(frames[0].timestamp, *recording.lines[0].stamp.timestampNs);
        EXPECT_EQ(frames[0].image, recording.Image(1));
        EXPECT_EQ(frames[1].status, PxnFrameStatusIncomplete);
        EXPECT_EQ(frames[1].id, 19u);
        EXPECT_EQ(frames[1].flags & PxnFrameFlagImageData, 0u);
        EXPECT_EQ(frames[2].status, PxnFrameStatusIncomplete);
        EXPECT_EQ(frames[2].id, 20u);
        EXPECT_EQ(frames[2].image, recording.Image(4));
        EXPECT_EQ(frames[3].status, PxnFrameStatusComplete);
        EXPECT_EQ(frames[3].image, recording.Image(5));
        EXPECT_EQ(Int("PlaybackPosition"), 5);
    }
}

TEST_F(PlayedRecording, GoesOnFromTheBeginningOnDemand) {
    support::WrittenRecording recording;
    recording.Add();
    recording.Add();
    Open(recording);
    PxnBool repeats = 1;
    EXPECT_EQ(PxnFeatureBoolGet(camera, "PlaybackRepeat", &repeats), PxnErrSuccess);
    EXPECT_EQ(repeats, 0);
    EXPECT_EQ(PxnFeatureBoolSet(camera, "PlaybackRepeat", 1), PxnErrSuccess);
    const std::vector<Received> frames = Play(5);
    const std::uint64_t first = *recording.lines[0].stamp.timestampNs;
    for (std::size_t at = 0; at < frames.size(); ++at) {
        EXPECT_EQ(frames[at].id, 17 + at);
        EXPECT_EQ(frames[at].timestamp, first + at * 10000000);
        EXPECT_EQ(frames[at].image, recording.Image(1 + at % 2));
    }
}

TEST_F(PlayedRecording, SendsNoMoreAfterItsLastFrame) {
    support::WrittenRecording recording;
    recording.Add();
    Open(recording);
    char buffer[32];
    PxnFrame frame{};
    frame.buffer = buffer;
    frame.bufferSize = sizeof buffer;
    ASSERT_EQ(PxnFrameAnnounce(camera, &frame, sizeof frame), PxnErrSuccess);
    ASSERT_EQ(PxnCaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrSuccess);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), PxnErrSuccess);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &frame, 20000), PxnErrSuccess);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrSuccess);
    EXPECT_EQ(PxnCaptureFrameWait(camera, &frame, 0), PxnErrTimeout);
    EXPECT_EQ(Int("PlaybackPosition"), 1);
}

TEST_F(PlayedRecording, ComesAtTheRecordedTimes) {
    struct StoppedClock {
        StoppedClock() { skeleton::StopClock(); }
        ~StoppedClock() { skeleton::StartClock(); }
    } const stopped;
    support::WrittenRecording recording;
    for (int frame = 0; frame < 4; ++frame) {
        recording.Add();
    }
    Open(recording, "");
    char buffer[32];
    PxnFrame frame{};
    frame.buffer = buffer;
    frame.bufferSize = sizeof buffer;
    ASSERT_EQ(PxnFrameAnnounce(camera, &frame, sizeof frame), PxnErrSuccess);
    ASSERT_EQ(PxnCaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), PxnErrSuccess);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrSuccess);
    // The first one, from which the times count, comes at once.
    const skeleton::Clock::time_point begin = skeleton::Clock::now();
    ASSERT_EQ(PxnCaptureFrameWait(camera, &frame, 0xFFFFFFFF), PxnErrSuccess);
    EXPECT_EQ(frame.frameId, 17u);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrSuccess);
    ASSERT_TRUE(support::WaitUntil(
        [&] { return skeleton::NextTimedWait() == begin + std::chrono::milliseconds(10); }));
    skeleton::AdvanceClock(std::chrono::milliseconds(10));
    ASSERT_EQ(PxnCaptureFrameWait(camera, &frame, 0xFFFFFFFF), PxnErrSuccess);
    EXPECT_EQ(frame.frameId, 18u);
    // One for which no buffer is queued is lost.
    ASSERT_TRUE(support::WaitUntil(
        [&] { return skeleton::NextTimedWait() == begin + std::chrono::milliseconds(20); }));
    skeleton::AdvanceClock(std::chrono::milliseconds(10));
    ASSERT_TRUE(support::WaitUntil([&] { return Int("PlaybackPosition") == 3; }));
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &frame, nullptr), PxnErrSuccess);
    skeleton::AdvanceClock(std::chrono::milliseconds(10));
    ASSERT_EQ(PxnCaptureFrameWait(camera, &frame, 0xFFFFFFFF), PxnErrSuccess);
    EXPECT_EQ(frame.frameId, 20u);
}

TEST_F(PlayedRecording, FillsNoBufferThatIsTooSmall) {
    support::WrittenRecording recording;
    recording.Add();
    Open(recording);
    const std::vector<Received> frames = Play(1, 31);
    EXPECT_EQ(frames[0].status, PxnFrameStatusTooSmall);
    EXPECT_EQ(frames[0].flags & PxnFrameFlagImageData, 0u);
}

TEST_F(PlayedRecording, NamesAFrameThatCannotBeRead) {
    support::WrittenRecording recording;
    recording.Add();
    recording.Add();
    recording.stack.pop_back();
    Open(recording);
    testing::internal::CaptureStderr();
    const std::vector<Received> frames = Play(2);
    const std::string reported = testing::internal::GetCapturedStderr();
    EXPECT_EQ(frames[0].status, PxnFrameStatusComplete);
    EXPECT_EQ(frames[1].status, PxnFrameStatusInvalid);
    EXPECT_EQ(frames[1].id, 18u);
    EXPECT_PRED2(Contains, reported, "PxnC: frame 2 cannot be played: ");
    EXPECT_PRED2(Contains, reported, "frames.stack: it ends at byte 63");
}

TEST_F(PlayedRecording, IsRefusedWithFileAndReason) {
    EXPECT_PRED2(Contains, StartFailure(""), "PYXEN_RECORDING names no recording");
    EXPECT_PRED2(Contains, StartFailure(directory.PathOf("none")), "recording.json");
    support::WrittenRecording recording;
    recording.Add();
    const std::string path = recording.Write(directory);
    directory.Write("frames.jsonl", "{\"n\":1}\n");
    EXPECT_PRED2(Contains, StartFailure(path), "frames.jsonl:1: \"status\" is missing");
    recording.Write(directory);
    directory.Write("recording.json", "{\"schema\":2}");
    EXPECT_PRED2(Contains, StartFailure(path), "recording.json: \"schema\" is 2");
    recording.description.format = "video";
    recording.Write(directory);
    EXPECT_PRED2(Contains, StartFailure(path), "kept as \"video\"");
    recording.description.format = "stack";
    recording.description.layout.bits = 7;
    recording.Write(directory);
    EXPECT_PRED2(Contains, StartFailure(path), "no pixel format has images of 1 components");
    recording.description.layout = {1u << 20, 1u << 20, 1, 8, 8, MVCC_MONO, 0, 0};
    recording.Write(directory);
    EXPECT_PRED2(Contains, StartFailure(path), "larger than 4 GB");
}

} // namespace
} // namespace recording_tests
