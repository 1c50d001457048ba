// faults_test.cpp - cameras that come and go, and faults on demand

#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/control.h"
#include "pxnc/skeleton/clock.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>

namespace simulator_tests {
namespace {

const std::string kGigE = kGigECamera;

struct DiscoveryListener {
    Counter calls;
    std::mutex mutex;
    std::vector<std::string> events; // "Type id"

    static void PXN_CALL OnCamera(PxnHandle handle, const char* name, void* context) {
        EXPECT_EQ(handle, PXN_SYSTEM_HANDLE);
        EXPECT_STREQ(name, "EventCameraDiscovery");
        auto* self = static_cast<DiscoveryListener*>(context);
        const std::string event = GetEnum(handle, "EventCameraDiscoveryType") + " " +
                                  GetString(handle, "EventCameraDiscoveryCameraID");
        {
            std::lock_guard lock(self->mutex);
            self->events.push_back(event);
        }
        self->calls.Add();
    }
    static void PXN_CALL OnInterface(PxnHandle handle, const char*, void* context) {
        auto* self = static_cast<DiscoveryListener*>(context);
        const std::string event = GetEnum(handle, "EventInterfaceDiscoveryType") + " " +
                                  GetString(handle, "EventInterfaceDiscoveryInterfaceID");
        {
            std::lock_guard lock(self->mutex);
            self->events.push_back(event);
        }
        self->calls.Add();
    }
};

class DiscoveryTest : public SimulatorTest {
protected:
    static std::uint32_t CameraCount() {
        std::uint32_t found = 99;
        EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
        return found;
    }
};

TEST_F(DiscoveryTest, EveryEventArrivesWithItsOwnValues) {
    DiscoveryListener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                             &DiscoveryListener::OnCamera, &listener),
              0);
    Control("unplug " + kGigE);
    EXPECT_EQ(CameraCount(), 2u);
    Control(std::string("unplug ") + kUsbCamera);
    Control("plug " + kGigE);
    Control(std::string("access ") + kSerialCamera + " none");
    Control(std::string("access ") + kSerialCamera + " full");
    ASSERT_TRUE(listener.calls.WaitFor(5));
    const std::vector<std::string> expected = {
        "Missing " + kGigE, std::string("Missing ") + kUsbCamera, "Detected " + kGigE,
        std::string("Unreachable ") + kSerialCamera, std::string("Reachable ") + kSerialCamera};
    EXPECT_EQ(listener.events, expected);
    EXPECT_EQ(CameraCount(), 2u);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                               &DiscoveryListener::OnCamera),
              0);
    Control("interface-event Usb0 missing");
}

TEST_F(DiscoveryTest, CommandsCanRunLaterInTheOrderOfTheirTimes) {
    DiscoveryListener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                             &DiscoveryListener::OnCamera, &listener),
              0);
    Control("clock stop");
    Control("after 60 plug " + kGigE);
    Control("after 30 unplug " + kGigE);
    Control("after 90 after 1 unplug " + kGigE);
    for (const char* step : {"30", "30", "30", "1"}) {
        Control(std::string("clock advance ") + step);
    }
    ASSERT_TRUE(listener.calls.WaitFor(3));
    EXPECT_EQ(listener.events, (std::vector<std::string>{"Missing " + kGigE, "Detected " + kGigE,
                                                         "Missing " + kGigE}));
    EXPECT_EQ(PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                               &DiscoveryListener::OnCamera),
              0);
}

TEST_F(DiscoveryTest, CommandsThatAreStillToRunAreForgotten) {
    DiscoveryListener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                             &DiscoveryListener::OnCamera, &listener),
              0);
    Control("after 86400000 unplug " + kGigE);
    Control("clear");
    Control("clock stop");
    Control(std::string("after 86400000 unplug ") + kUsbCamera);
    Control("clock advance 86400000");
    Control("drain");
    ASSERT_TRUE(listener.calls.WaitFor(1));
    EXPECT_EQ(listener.events, (std::vector<std::string>{std::string("Missing ") + kUsbCamera}));
    EXPECT_EQ(PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                               &DiscoveryListener::OnCamera),
              0);
    Control("after 86400000 plug " + kGigE); // the shutdown does not wait for it
}

TEST_F(DiscoveryTest, InterfaceEventsAreSeparate) {
    DiscoveryListener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, "EventInterfaceDiscovery",
                                             &DiscoveryListener::OnInterface, &listener),
              0);
    Control("unplug " + kGigE);
    Control("interface-event Usb0 missing");
    Control("interface-event Usb0 detected");
    ASSERT_TRUE(listener.calls.WaitFor(2));
    EXPECT_EQ(listener.events, (std::vector<std::string>{"Missing Usb0", "Detected Usb0"}));
    EXPECT_EQ(PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, "EventInterfaceDiscovery",
                                               &DiscoveryListener::OnInterface),
              0);
}

TEST_F(DiscoveryTest, AnUnpluggedCamerasHandlesAreDead) {
    const PxnHandle camera = Open(kGigECamera);
    const PxnCameraInfo info = InfoOf(camera);
    const PxnHandle stream = info.streamHandles[0];
    std::vector<Buffer> buffers = Announce(camera, 1);
    const auto callback = [](PxnHandle, const char*, void*) {
    };
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Width", callback, nullptr), 0);
    Control("unplug " + kGigE);
    std::int64_t value = 0;
    PxnCameraInfo gone{};
    PxnHandle again = nullptr;
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrBadHandle);
    EXPECT_EQ(PxnFeatureIntGet(info.localDeviceHandle, "StreamCount", &value), PxnErrBadHandle);
    EXPECT_EQ(PxnFeatureIntGet(stream, "StreamIndex", &value), PxnErrBadHandle);
    EXPECT_EQ(PxnCameraInfoQueryByHandle(camera, &gone, sizeof gone), PxnErrBadHandle);
    EXPECT_EQ(PxnCameraInfoQuery(kGigECamera, &gone, sizeof gone), PxnErrNotFound);
    EXPECT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, &again), PxnErrNotFound);
    EXPECT_EQ(PxnCaptureStart(camera), PxnErrBadHandle);
    EXPECT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), PxnErrBadHandle);
    EXPECT_EQ(PxnCaptureEnd(camera), PxnErrBadHandle);
    EXPECT_EQ(PxnCaptureQueueFlush(camera), PxnErrBadHandle);
    EXPECT_EQ(PxnFrameRevokeAll(camera), PxnErrBadHandle);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", callback), PxnErrBadHandle);
    EXPECT_EQ(Count("registrations"), 0) << "given back all the same";
    EXPECT_EQ(PxnCameraClose(camera), PxnErrBadHandle);
    EXPECT_EQ(Count("openCameras"), 0);

    Control("plug " + kGigE);
    const PxnHandle fresh = Open(kGigECamera);
    EXPECT_NE(fresh, camera);
    EXPECT_EQ(GetInt(fresh, "Width"), 640);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrBadHandle) << "still stale";
    EXPECT_EQ(PxnCameraClose(fresh), 0);
}

TEST_F(DiscoveryTest, ACameraComesBackAsItStarts) {
    PxnHandle camera = Open(kGigECamera);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 320), 0);
    Control("unplug " + kGigE);
    EXPECT_EQ(PxnCameraClose(camera), PxnErrBadHandle);
    Control("plug " + kGigE);
    camera = Open(kGigECamera);
    EXPECT_EQ(GetInt(camera, "Width"), 640);
    EXPECT_EQ(PxnCameraClose(camera), 0);
}

TEST_F(DiscoveryTest, UnpluggingEndsWaits) {
    const PxnHandle camera = Open(kGigECamera);
    std::vector<Buffer> buffers = Announce(camera, 1);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), 0);
    std::atomic<PxnError> result = 1;
    std::thread waiter(
        [&] { result = PxnCaptureFrameWait(camera, &buffers[0].frame, 0xFFFFFFFF); });
    Control("unplug " + kGigE);
    waiter.join();
    EXPECT_TRUE(result == PxnErrNotAvailable || result == PxnErrBadHandle) << result;
    EXPECT_EQ(PxnCameraClose(camera), PxnErrBadHandle);
}

// Queues again until the camera is gone.
struct Requeuer {
    Counter frames;
    std::mutex mutex;
    std::vector<PxnFrame> seen;

    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle, PxnFrame* frame) {
        auto* self = static_cast<Requeuer*>(frame->context[0]);
        {
            std::lock_guard lock(self->mutex);
            self->seen.push_back(*frame);
        }
        PxnCaptureFrameQueue(camera, frame, &Requeuer::OnFrame);
        self->frames.Add();
    }
};

class FaultTest : public DiscoveryTest {
protected:
    void SetUp() override {
        DiscoveryTest::SetUp();
        camera = Open(kGigECamera);
    }
    void TearDown() override {
        PxnCameraClose(camera);
        DiscoveryTest::TearDown();
    }
    void Run(std::uint64_t frames) {
        std::vector<Buffer> buffers = Announce(camera, 4);
        for (Buffer& buffer : buffers) {
            buffer.frame.context[0] = &requeuer;
            ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, &Requeuer::OnFrame), 0);
        }
        ASSERT_EQ(PxnCaptureStart(camera), 0);
        ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
        EXPECT_TRUE(requeuer.frames.WaitFor(frames));
        EXPECT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
        EXPECT_EQ(PxnCaptureEnd(camera), 0);
        EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
        EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    }
    std::vector<std::uint64_t> Ids() const {
        std::vector<std::uint64_t> ids;
        for (const PxnFrame& frame : requeuer.seen) {
            ids.push_back(frame.frameId);
        }
        return ids;
    }

    PxnHandle camera = nullptr;
    Requeuer requeuer;
};

TEST_F(FaultTest, ACameraVanishesAtAGivenFrame) {
    DiscoveryListener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                             &DiscoveryListener::OnCamera, &listener),
              0);
    Control("unplug-at 3");
    std::vector<Buffer> buffers = Announce(camera, 2);
    for (Buffer& buffer : buffers) {
        buffer.frame.context[0] = &requeuer;
        ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, &Requeuer::OnFrame), 0);
    }
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_TRUE(listener.calls.WaitFor(1));
    EXPECT_EQ(listener.events.at(0), "Missing " + kGigE);
    EXPECT_EQ(PxnCaptureEnd(camera), PxnErrBadHandle);
    EXPECT_EQ(requeuer.frames.Value(), 3u);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, "EventCameraDiscovery",
                                               &DiscoveryListener::OnCamera),
              0);
}

TEST_F(FaultTest, AnotherCameraComesAtAGivenFrame) {
    Control(std::string("unplug ") + kUsbCamera);
    Control(std::string("plug-at 2 ") + kUsbCamera);
    EXPECT_EQ(CameraCount(), 2u);
    Run(4);
    EXPECT_EQ(CameraCount(), 3u);
}

TEST_F(FaultTest, SingleFramesGoWrong) {
    Control("frame incomplete 1,4");
    Control("frame small 2");
    Control("frame drop 3");
    Control("frame duplicate 5");
    Control("frame late 6");
    Run(7);
    const std::vector<std::uint64_t> ids = Ids();
    const std::vector<std::uint64_t> expected = {0, 1, 2, 4, 5, 5, 6};
    ASSERT_GE(ids.size(), 7u);
    EXPECT_EQ(std::vector<std::uint64_t>(ids.begin(), ids.begin() + 7), expected);
    const auto status = [&](std::size_t i) {
        return requeuer.seen.at(i).receiveStatus;
    };
    EXPECT_EQ(status(0), PxnFrameStatusComplete);
    EXPECT_EQ(status(1), PxnFrameStatusIncomplete);
    EXPECT_EQ(status(2), PxnFrameStatusTooSmall);
    EXPECT_EQ(status(3), PxnFrameStatusIncomplete);
    EXPECT_EQ(status(4), PxnFrameStatusComplete);
    const PxnHandle stream = InfoOf(camera).streamHandles[0];
    EXPECT_EQ(GetInt(stream, "StreamIncompleteFrameCount"), 2);
    EXPECT_EQ(GetInt(stream, "StreamLostFrameCount"), 1);
    // A picture of 307200 bytes has 210 packets with 1464 of them, one before and one behind.
    const std::int64_t perFrame = 212;
    const std::int64_t seen = GetInt(stream, "GevStreamSeenPacketCount");
    EXPECT_GE(seen, 5 * perFrame + 2 * (perFrame / 2));
    EXPECT_EQ(seen % perFrame, 0) << "two frames lack half of their packets";
    EXPECT_EQ(GetInt(stream, "GevStreamLostPacketCount"), 2 * (perFrame / 2));
    EXPECT_EQ(GetInt(stream, "GevStreamResendPacketCount"), 1);
    EXPECT_EQ(PxnFeatureCommandRun(stream, "StreamStatisticsReset"), 0);
    EXPECT_EQ(GetInt(stream, "StreamLostFrameCount"), 0);
    EXPECT_EQ(GetInt(stream, "GevStreamSeenPacketCount"), 0);
    EXPECT_EQ(GetInt(stream, "GevStreamLostPacketCount"), 0);
    EXPECT_EQ(GetInt(stream, "GevStreamResendPacketCount"), 0);
}

TEST_F(FaultTest, AFreeRunningCameraThatDropsEveryFrameCanBeStopped) {
    ASSERT_EQ(PxnFeatureBoolSet(camera, "SimulatorFreeRunning", 1), 0);
    Control("frame-random 1 100 drop");
    std::vector<Buffer> buffers = Announce(camera, 1);
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, nullptr), 0);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    const PxnHandle stream = InfoOf(camera).streamHandles[0];
    EXPECT_TRUE(
        support::WaitUntil([&] { return GetInt(stream, "StreamLostFrameCount") > 3; }, kWaitMs));
    std::future<PxnError> stopped = std::async(
        std::launch::async, [&] { return PxnFeatureCommandRun(camera, "AcquisitionStop"); });
    EXPECT_EQ(stopped.wait_for(std::chrono::milliseconds(kWaitMs)), std::future_status::ready);
    Control("clear"); // a camera that sends frames can be stopped in any case
    EXPECT_EQ(stopped.get(), PxnErrSuccess);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    EXPECT_EQ(PxnCaptureQueueFlush(camera), 0);
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
}

TEST_F(FaultTest, ARefusedListOfFramesChangesNone) {
    char answer[200] = "";
    EXPECT_EQ(PxnControl("frame incomplete 1,2,x", answer, sizeof answer), PxnErrBadParameter);
    Run(4);
    for (const PxnFrame& frame : requeuer.seen) {
        EXPECT_EQ(frame.receiveStatus, PxnFrameStatusComplete) << frame.frameId;
    }
}

TEST_F(FaultTest, RandomFaultsRepeatWithTheirSeed) {
    EXPECT_EQ(PxnFeatureBoolSet(camera, "SimulatorFreeRunning", 1), 0);
    std::vector<std::int32_t> first;
    for (int round = 0; round < 2; ++round) {
        requeuer.seen.clear();
        Control("frame-random 7 30 incomplete");
        const std::uint64_t before = requeuer.frames.Value();
        Run(before + 50);
        std::vector<std::int32_t> statuses;
        for (std::size_t i = 0; i < 50; ++i) {
            statuses.push_back(requeuer.seen.at(i).receiveStatus);
        }
        const auto bad = std::count(statuses.begin(), statuses.end(), PxnFrameStatusIncomplete);
        EXPECT_GT(bad, 3);
        EXPECT_LT(bad, 30);
        if (round == 0) {
            first = statuses;
        } else {
            EXPECT_EQ(statuses, first);
        }
    }
}

TEST_F(FaultTest, AnEntryFailsOnItsNthCall) {
    Control("fail PxnFeatureIntGet 2 -20");
    std::int64_t value = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrIO);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    Control("fail-always PxnFeatureIntGet -24");
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrBusy);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrBusy);
    Control("clear");
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
}

TEST_F(FaultTest, AnyEntryMeansTheCallsOfAll) {
    Control("fail any 3 -13");
    std::int64_t value = 0;
    double real = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(PxnFeatureFloatGet(camera, "Gain", &real), 0);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrOther);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    const std::int64_t calls = Count("calls");
    PxnFeatureIntGet(camera, "Width", &value);
    EXPECT_EQ(Count("calls"), calls + 1) << "control commands are no calls";
}

TEST_F(FaultTest, LinesRunWhenACallBegins) {
    Control("at-call PxnFeatureIntGet 2 set " + kGigE + " Width 320");
    Control("at-call any 4 unplug " + kGigE);
    std::int64_t value = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(value, 640);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(value, 320) << "the call finds what the line has done";
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 160), 0);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), PxnErrBadHandle);
    Control("plug " + kGigE);
    EXPECT_EQ(CameraCount(), 3u) << "each line runs once";
}

TEST_F(FaultTest, LinesAtACallAreForgottenByClear) {
    Control("at-call PxnFeatureIntGet 1 unplug " + kGigE);
    Control("clear");
    std::int64_t value = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
}

TEST_F(FaultTest, ALineThatIsRefusedAtACallIsReported) {
    Control("at-call PxnFeatureIntGet 1 plug nobody");
    std::int64_t value = 0;
    testing::internal::CaptureStderr();
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "PxnC: plug nobody: no camera \"nobody\"\n");
}

TEST_F(FaultTest, AStartupCanFailAndTheNextOneWorks) {
    Control("fail PxnStartup 1 -14");
    EXPECT_EQ(PxnStartup(nullptr), PxnErrResources);
    PxnShutdown();
    EXPECT_EQ(PxnStartup(nullptr), 0);
    PxnShutdown();
}

TEST_F(FaultTest, DelaysAndStuckEntriesHoldTheCaller) {
    std::int64_t value = 0;
    Control("delay PxnFeatureIntGet 30");
    Control("clock stop");
    const skeleton::Clock::time_point begin = skeleton::Clock::now();
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
    EXPECT_EQ(skeleton::Clock::now() - begin, std::chrono::milliseconds(30));
    Control("clear");
    Control("stuck PxnFeatureIntGet");
    std::atomic<bool> done = false;
    std::thread caller([&] {
        EXPECT_EQ(PxnFeatureIntGet(camera, "Width", &value), 0);
        done = true;
    });
    double gain = 0;
    EXPECT_EQ(PxnFeatureFloatGet(camera, "Gain", &gain), 0) << "other entries are not held";
    EXPECT_FALSE(done);
    Control("clear");
    caller.join();
    EXPECT_TRUE(done);
}

TEST_F(FaultTest, ListsCanPretendToHaveGrown) {
    PxnCameraInfo cameras[3] = {};
    std::uint32_t found = 0;
    Control("count-change PxnCamerasList 2");
    EXPECT_EQ(PxnCamerasList(cameras, 3, &found, sizeof cameras[0]), PxnErrMoreData);
    EXPECT_EQ(found, 5u);
    EXPECT_EQ(PxnCamerasList(cameras, 3, &found, sizeof cameras[0]), 0);
    EXPECT_EQ(found, 3u);
    Control("count-change PxnCamerasList -3");
    EXPECT_EQ(PxnCamerasList(cameras, 3, &found, sizeof cameras[0]), 0);
    EXPECT_EQ(found, 0u);
}

TEST_F(FaultTest, BadCommandsSayWhy) {
    const auto refused = [](const char* command) {
        char answer[200] = "";
        EXPECT_LT(PxnControl(command, answer, sizeof answer), 0) << command;
        return std::string(answer);
    };
    EXPECT_EQ(refused(""), "no command; try help");
    EXPECT_EQ(refused("fly"), "no command \"fly\"; try help");
    EXPECT_EQ(refused("plug"), "usage: plug ID");
    EXPECT_EQ(refused("plug nobody"), "no camera \"nobody\"");
    EXPECT_EQ(refused(("plug " + kGigE).c_str()), "already plugged");
    EXPECT_EQ(refused("fail PxnStartup x -1"), "\"x\" is not a number");
    EXPECT_EQ(refused("fail PxnStartup -1 -1"), "\"-1\" is negative");
    EXPECT_EQ(refused("fail PxnStartup 1 7000"), "\"7000\" is not a result code");
    EXPECT_EQ(refused("fail PxnStartup 0 -1"), "calls are counted from 1");
    EXPECT_EQ(refused("delay any 99999999999"),
              "\"99999999999\" is not a number of milliseconds up to a day");
    EXPECT_EQ(refused("frame-random 7 101 drop"), "\"101\" is not a percentage");
    EXPECT_EQ(refused("frame-random 4294967296 1 drop"),
              "\"4294967296\" is not a number of 32 bits");
    EXPECT_EQ(refused("count-change any 1"), "\"any\" does not return a list");
    EXPECT_EQ(refused("count-change PxnFeatureIntGet 1"),
              "\"PxnFeatureIntGet\" does not return a list");
    EXPECT_EQ(refused("frame sideways 1"), "\"sideways\" is not a kind of frame fault");
    EXPECT_EQ(refused("at-call any 1"), "usage: at-call ENTRY N COMMAND");
    EXPECT_EQ(refused("at-call any 0 drain"), "calls are counted from 1");
    EXPECT_EQ(refused("at-call any 1 fly"), "no command \"fly\"; try help");
    EXPECT_EQ(refused("at-call PxnNothing 1 drain"), "no entry point \"PxnNothing\"");
    EXPECT_EQ(refused("after 5"), "usage: after MS COMMAND");
    EXPECT_EQ(refused("after 5 fly"), "no command \"fly\"; try help");
    EXPECT_EQ(refused("after 86400001 drain"),
              "\"86400001\" is not a number of milliseconds up to a day");
    EXPECT_EQ(refused("uart 1 asleep"), "\"asleep\" is not stuck, slow or ok");
    EXPECT_EQ(refused("uart 9 ok"), "no camera has port 9");
    EXPECT_EQ(refused(("set " + kGigE + " Nothing 1").c_str()), "no feature \"Nothing\"");
    EXPECT_EQ(refused(("set " + kGigE + " Width 7").c_str()),
              "the feature cannot have the value \"7\"");
    EXPECT_EQ(refused(("trigger " + kGigE).c_str()),
              "the camera is not waiting for a line trigger");
    EXPECT_EQ(refused(("access " + kGigE + " maybe").c_str()),
              "\"maybe\" is not full, read, none or unknown");
    EXPECT_EQ(refused("interface-event Eth9 missing"), "no interface \"Eth9\"");
    EXPECT_EQ(refused("interface-event Eth0 gone"), "\"gone\" is not detected or missing");
    EXPECT_EQ(refused("fail PxnNothing 1 -1"), "no entry point \"PxnNothing\"");
    EXPECT_EQ(refused("frame-age"), "no frame callback is running on this thread");
    EXPECT_EQ(PxnControl("fly", nullptr, 0), PxnErrBadParameter) << "the command is a parameter";
    EXPECT_EQ(PxnControl("plug nobody", nullptr, 0), PxnErrNotFound) << "the camera an instance";
    char shortAnswer[5] = "";
    EXPECT_LT(PxnControl("fly", shortAnswer, sizeof shortAnswer), 0);
    EXPECT_STREQ(shortAnswer, "no c");
    EXPECT_LT(PxnControl(nullptr, nullptr, 0), 0);
    EXPECT_NE(Control("help").find("unplug-at FRAME [ID]"), std::string::npos);
}

class ScriptTest : public FaultTest {
protected:
    struct Answer {
        std::int32_t code;
        std::string text;
    };
    static Answer Run(const std::string& command) {
        char answer[2000] = "";
        const std::int32_t code = PxnControl(command.c_str(), answer, sizeof answer);
        return {code, answer};
    }
    support::TemporaryDirectory directory;
};

TEST_F(ScriptTest, RunsItsLinesInOrder) {
    directory.Write("my faults.txt", "# two faults\r\n\r\n  fail PxnCamerasList 1 -24\r\n"
                                     "\t# and more\nfail PxnCamerasList 2 -20\nunplug " +
                                         kGigE);
    const Answer answer = Run(" script  " + directory.PathOf("my faults.txt") + " ");
    EXPECT_EQ(answer.text, "ok");
    EXPECT_EQ(answer.code, 0);
    std::uint32_t found = 9;
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), PxnErrBusy);
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), -20);
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
    EXPECT_EQ(found, 2u);
}

TEST_F(ScriptTest, EndsAtTheFirstLineThatIsRefusedAndNamesIt) {
    const std::string path = directory.PathOf("faults.txt");
    directory.Write("faults.txt", "\nplug nobody\nunplug " + kGigE + "\n");
    Answer answer = Run("script " + path);
    EXPECT_EQ(answer.code, PxnErrNotFound);
    EXPECT_EQ(answer.text, path + ":2: no camera \"nobody\"");
    EXPECT_EQ(Run("unplug " + kGigE).code, 0) << "the line behind it did not run";
    directory.Write("faults.txt", "frame drop 3\n#\nframe drop three\n");
    answer = Run("script " + path);
    EXPECT_EQ(answer.code, PxnErrBadParameter);
    EXPECT_EQ(answer.text, path + ":3: \"three\" is not a number");
}

TEST_F(ScriptTest, RunsNoOtherScript) {
    const std::string path = directory.PathOf("faults.txt");
    directory.Write("faults.txt", "script " + path + "\n");
    const Answer answer = Run("script " + path);
    EXPECT_EQ(answer.code, PxnErrInvalidCall);
    EXPECT_EQ(answer.text, path + ":1: a script cannot run another script");
}

TEST_F(ScriptTest, TellsWhenTheFileCannotBeRead) {
    const Answer answer = Run("script " + directory.PathOf("nothing.txt"));
    EXPECT_EQ(answer.code, PxnErrNotFound);
    EXPECT_NE(answer.text.find("nothing.txt: cannot be read: "), std::string::npos);
    EXPECT_EQ(Run("script").text, "usage: script FILE");
}

} // namespace
} // namespace simulator_tests
