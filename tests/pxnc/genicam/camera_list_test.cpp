// camera_list_test.cpp - cameras that come and go
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/pxnc/genicam/frame_set.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include "platform/mutex.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace genicam_test {
namespace {

constexpr char kEvent[] = "EventCameraDiscovery";

/// Reads the discovery features inside the callback, as a host does.
class DiscoveryLog {
public:
    DiscoveryLog() {
        EXPECT_EQ(SdkLibrary::Instance().FeatureInvalidationRegister(PXN_SYSTEM_HANDLE, kEvent,
                                                                     OnEvent, this),
                  PxnErrSuccess);
    }
    ~DiscoveryLog() {
        EXPECT_EQ(SdkLibrary::Instance().FeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, kEvent,
                                                                       OnEvent),
                  PxnErrSuccess);
    }
    DiscoveryLog(const DiscoveryLog&) = delete;
    DiscoveryLog& operator=(const DiscoveryLog&) = delete;

    /// Waits for an event after those that were waited for before.
    bool WaitFor(const std::string& line) {
        return support::WaitUntil(
            [&] {
                const platform::MutexLock lock(mutex);
                const auto found = std::find(lines.begin(), lines.end(), line);
                if (found == lines.end()) {
                    return false;
                }
                lines.erase(lines.begin(), std::next(found));
                return true;
            },
            30000);
    }

private:
    static void PXN_CALL OnEvent(PxnHandle handle, const char*, void* context) {
        auto& self = *static_cast<DiscoveryLog*>(context);
        const char* type = "?";
        EXPECT_EQ(SdkLibrary::Instance().FeatureEnumGet(handle, "EventCameraDiscoveryType", &type),
                  PxnErrSuccess);
        const std::string line =
            std::string(type) + " " + GetString(handle, "EventCameraDiscoveryCameraID");
        const platform::MutexLock lock(self.mutex);
        self.lines.push_back(line);
    }

    platform::Mutex mutex;
    std::vector<std::string> lines GUARDED_BY(mutex);
};

bool IsListed(const std::string& id) {
    const std::vector<PxnCameraInfo> cameras = ListCameras();
    return std::any_of(cameras.begin(), cameras.end(),
                       [&](const auto& info) { return id == info.cameraIdExtended; });
}

} // namespace

class DiscoveryTest : public CameraFixture {
protected:
    void SetUp() override {
        // A test before this one may have left the camera off.
        ASSERT_TRUE(WaitUntilListed());
    }
};

TEST_F(DiscoveryTest, ReportsWhenACameraGoesAndComesBack) {
    DiscoveryLog log;
    const std::string id = Fake().ExtendedId();
    Fake().Kill();
    EXPECT_TRUE(log.WaitFor("Missing " + id));
    EXPECT_FALSE(IsListed(id));
    PxnHandle handle = nullptr;
    EXPECT_EQ(Sdk().CameraOpen(id.c_str(), PxnAccessModeFull, &handle), PxnErrNotFound);
    Fake().Restart();
    EXPECT_TRUE(log.WaitFor("Detected " + id));
    EXPECT_TRUE(IsListed(id));
    Open();
    Close();
}

TEST_F(DiscoveryTest, EndsAWaitWhenTheCameraVanishes) {
    DiscoveryLog log;
    Open();
    FrameSet frames(camera, 2, 512 * 512);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frames.At(0), nullptr), PxnErrSuccess);
    frames.StartAcquisition();
    ASSERT_EQ(Sdk().CaptureFrameWait(camera, frames.At(0), 0xFFFFFFFF), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
    // Nothing comes any more, so only the loss of the camera can end this wait.
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frames.At(1), nullptr), PxnErrSuccess);
    std::atomic<PxnError> result = PxnErrSuccess;
    std::thread waiting([&] { result = Sdk().CaptureFrameWait(camera, frames.At(1), 0xFFFFFFFF); });
    Fake().Kill();
    waiting.join();
    EXPECT_EQ(result, PxnErrNotAvailable);
    EXPECT_TRUE(log.WaitFor("Missing " + Fake().ExtendedId()));

    // The handles are dead, but clearing up and closing do their work all the same.
    std::int64_t value = 0;
    char bytes[4] = {};
    std::uint32_t done = 0;
    PxnCameraInfo info = {};
    for (const PxnHandle handle : {camera, stream, localDevice}) {
        EXPECT_EQ(Sdk().FeatureIntGet(handle, "Width", &value), PxnErrBadHandle);
        EXPECT_EQ(Sdk().FeatureCommandRun(handle, "AcquisitionStop"), PxnErrBadHandle);
        EXPECT_EQ(Sdk().MemoryRead(handle, 0x100, 4, bytes, &done), PxnErrBadHandle);
    }
    EXPECT_EQ(Sdk().CameraInfoQueryByHandle(camera, &info, sizeof info), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CaptureFrameWait(camera, frames.At(1), 0), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CaptureStart(camera), PxnErrBadHandle);
    EXPECT_EQ(frames.Queue(0), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CaptureEnd(camera), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CaptureQueueFlush(camera), PxnErrBadHandle);
    EXPECT_EQ(Sdk().FrameRevokeAll(camera), PxnErrBadHandle);
    EXPECT_EQ(Sdk().FrameRevoke(camera, frames.At(0)), PxnErrBadHandle);
    Close(PxnErrBadHandle);
    Fake().Restart();
}

TEST_F(DiscoveryTest, SurvivesACameraThatVanishesWhileItSends) {
    DiscoveryLog log;
    Open();
    FrameSet frames(camera, 4, 512 * 512);
    frames.onFrame = [&](PxnFrame* frame) {
        frames.Queue(static_cast<std::size_t>(frame - frames.At(0)));
    };
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(3));
    Fake().Kill();
    EXPECT_TRUE(log.WaitFor("Missing " + Fake().ExtendedId()));
    // The camera may come back before the host has closed the old one.
    Fake().Restart();
    EXPECT_TRUE(log.WaitFor("Detected " + Fake().ExtendedId()));
    PxnHandle handle = nullptr;
    EXPECT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), PxnAccessModeFull, &handle),
              PxnErrInUse);
    Close(PxnErrBadHandle);
    const std::size_t count = frames.Count();
    Open();
    std::int64_t width = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &width), PxnErrSuccess);
    EXPECT_EQ(width, 512);
    Close();
    EXPECT_EQ(frames.Count(), count);
}

TEST_F(DiscoveryTest, TakesRegistrationsOfAVanishedCameraBack) {
    DiscoveryLog log;
    Open();
    const PxnInvalidationCallback callback = [](PxnHandle, const char*, void*) {
    };
    ASSERT_EQ(Sdk().FeatureInvalidationRegister(camera, "Width", callback, nullptr), PxnErrSuccess);
    Fake().Kill();
    EXPECT_TRUE(log.WaitFor("Missing " + Fake().ExtendedId()));
    EXPECT_EQ(Sdk().FeatureInvalidationUnregister(camera, "Width", callback), PxnErrBadHandle);
    EXPECT_EQ(Sdk().FeatureInvalidationRegister(camera, "Width", callback, nullptr),
              PxnErrBadHandle);
    Close(PxnErrBadHandle);
    Fake().Restart();
}

TEST_F(DiscoveryTest, ClosesAVanishedCameraInsideTheEvent) {
    Open();
    struct Closing {
        PxnHandle camera;
        std::atomic<PxnError> result{1};
    } closing{camera};
    const PxnInvalidationCallback close = [](PxnHandle, const char*, void* context) {
        auto& self = *static_cast<Closing*>(context);
        self.result = SdkLibrary::Instance().CameraClose(self.camera);
    };
    ASSERT_EQ(Sdk().FeatureInvalidationRegister(PXN_SYSTEM_HANDLE, kEvent, close, &closing),
              PxnErrSuccess);
    Fake().Kill();
    EXPECT_TRUE(support::WaitUntil([&] { return closing.result != 1; }, 30000));
    EXPECT_EQ(closing.result, PxnErrBadHandle);
    EXPECT_EQ(Sdk().FeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, kEvent, close), PxnErrSuccess);
    ForgetHandles();
    Fake().Restart();
    ASSERT_TRUE(WaitUntilListed());
    Open();
    Close();
}

TEST_F(DiscoveryTest, NoticesThatACameraOpenForReadingVanishes) {
    DiscoveryLog log;
    PxnHandle handle = nullptr;
    ASSERT_EQ(Sdk().CameraOpen(Fake().PlainId().c_str(), PxnAccessModeRead, &handle),
              PxnErrSuccess);
    Fake().Kill();
    EXPECT_TRUE(log.WaitFor("Missing " + Fake().ExtendedId()));
    std::int64_t value = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(handle, "Width", &value), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CameraClose(handle), PxnErrBadHandle);
    Fake().Restart();
}

TEST_F(DiscoveryTest, ShutdownClosesWhatIsLeftOpen) {
    Open();
    static std::atomic<int> late;
    FrameSet frames(camera, 4, 512 * 512);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    frames.StartAcquisition();
    ASSERT_TRUE(frames.WaitForCount(1));
    ASSERT_EQ(Sdk().FeatureInvalidationRegister(
                  camera, "Width", [](PxnHandle, const char*, void*) { ++late; }, nullptr),
              PxnErrSuccess);
    Sdk().Shutdown();
    const std::size_t count = frames.Count();
    const int calls = late;
    std::int64_t value = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &value), PxnErrApiNotStarted);
    EXPECT_EQ(Sdk().CameraClose(camera), PxnErrApiNotStarted);

    // The camera is free for the next startup.
    StartLibrary();
    ASSERT_TRUE(WaitUntilListed());
    Open();
    Close();
    EXPECT_EQ(frames.Count(), count);
    EXPECT_EQ(late, calls);
}

TEST_F(DiscoveryTest, ListsNoCameraOfAnInterfaceThatTheConfigurationLeavesOut) {
    const support::TemporaryDirectory directory;
    const std::string file =
        directory.Write("PxnC.xml", "<genicam><gige interfaces=\"none0\"/></genicam>");
    Sdk().Shutdown();
    ASSERT_EQ(Sdk().Startup(std::wstring(file.begin(), file.end()).c_str()), PxnErrSuccess);
    // A search of one's own finds what the one at the start may have missed.
    EXPECT_EQ(Sdk().FeatureCommandRun(PXN_SYSTEM_HANDLE, "DiscoverCameras"), PxnErrSuccess);
    EXPECT_FALSE(IsListed(Fake().ExtendedId()));
    Sdk().Shutdown();
    StartLibrary();
    EXPECT_EQ(Sdk().FeatureCommandRun(PXN_SYSTEM_HANDLE, "DiscoverCameras"), PxnErrSuccess);
    EXPECT_TRUE(IsListed(Fake().ExtendedId()));
}

TEST_F(DiscoveryTest, ShutdownEndsAWait) {
    Open();
    FrameSet frames(camera, 1, 512 * 512);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().CaptureFrameQueue(camera, frames.At(0), nullptr), PxnErrSuccess);
    std::atomic<PxnError> result = PxnErrSuccess;
    std::thread waiting([&] { result = Sdk().CaptureFrameWait(camera, frames.At(0), 0xFFFFFFFF); });
    Sdk().Shutdown();
    waiting.join();
    EXPECT_TRUE(result == PxnErrNotAvailable || result == PxnErrBadHandle ||
                result == PxnErrApiNotStarted)
        << result;
    ForgetHandles();
    StartLibrary();
}

} // namespace genicam_test
