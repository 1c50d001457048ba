// discovery_test.cpp - cameras that appear and disappear
#include "grabber/discovery.h"

#include "grabber/camera_caches.h"
#include "grabber/camera_identity.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/sdk/loaded_api.h"

#include <atomic>
#include <optional>
#include <thread>

using namespace pyxen;

namespace {

const std::string kInvalidation =
    "1 CMivoraKVNPyxenClass::InvalidationCallback: ModuleName = %, handle = #, FeatureName = "
    "EventCameraDiscovery, ";
const std::string kEventTag = "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: ";

class DiscoveryTest : public GrabberFixture {
protected:
    void SetUp() override {
        GrabberFixture::SetUp();
        Open();
        Watch();
    }
    void TearDown() override {
        Grabber().InstCamCfgChangeCallBack(nullptr, nullptr);
        GrabberFixture::TearDown();
    }

    void Watch() {
        Grabber().InstCamCfgChangeCallBack(
            [](void* context) { ++*static_cast<std::atomic<int>*>(context); }, &signals);
    }
    /// What the module tells of its newest event; without a value it cannot be read.
    void Tell(scripted::Module& module, const std::optional<std::string>& id,
              const std::optional<std::string>& type) {
        scripted::Feature& idFeature =
            module.Put(scripted::StringFeature("EventCameraDiscoveryCameraID", id.value_or("")));
        idFeature.readable = id.has_value();
        scripted::Feature& typeFeature =
            module.Put(scripted::EnumFeature("EventCameraDiscoveryType", type.value_or(""), {}));
        typeFeature.readable = type.has_value();
    }
    /// An event of the system module; answers how often the host was told.
    int Event(const std::optional<std::string>& id, const std::optional<std::string>& type) {
        Tell(sdk.Data().system, id, type);
        sdk.ClearCalls();
        const int before = signals;
        Grabber().InvalidationCallback(scripted::SystemHandle(), "EventCameraDiscovery");
        return signals - before;
    }
    /// The first three lines of every event of the system module, and those that follow.
    static Texts Lines(const std::string& id, const std::string& type, const Texts& further) {
        return Texts{FirstLine("- unknown -", "1000000000000001"),
                     "1 " + kEventTag + "Event triggered by " + id + "...",
                     "1 " + kEventTag + "Event type: \"" + type + "\"..."} +
               further;
    }
    static std::string FirstLine(const std::string& module, const std::string& handle) {
        std::string line = kInvalidation;
        line.replace(line.find('%'), 1, module);
        line.replace(line.find('#'), 1, handle);
        return line;
    }

    std::atomic<int> signals{0};
};

TEST_F(DiscoveryTest, TheOpenCamerasRemovalIsTold) {
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 1);
    EXPECT_EQ(Log(), Lines("cam-ext-1", "Missing",
                           {"1 " + kEventTag +
                            "the currently opened camera was removed. Calling "
                            "\"SignalCamCfgChange\""}));
}

TEST_F(DiscoveryTest, TheOpenCamerasReturnIsTold) {
    EXPECT_EQ(Event("cam-ext-1", "Detected"), 1);
    EXPECT_EQ(Log(), Lines("cam-ext-1", "Detected",
                           {"1 " + kEventTag +
                            "the currently opened camera was restored. Calling "
                            "\"SignalCamCfgChange\""}));
}

TEST_F(DiscoveryTest, OtherEventsOfTheOpenCameraAreIgnored) {
    for (const char* type : {"Reachable", "missing", "Missing ", "MissingX", "Detecte", ""}) {
        EXPECT_EQ(Event("cam-ext-1", type), 0) << type;
        EXPECT_EQ(Log(),
                  Lines("cam-ext-1", type,
                        {"1 " + kEventTag + "the currently opened camera encountered event \"" +
                         type + "\" -> ignored."}));
    }
}

TEST_F(DiscoveryTest, EventsOfOtherCamerasAreIgnored) {
    for (const char* id : {"cam-ext-2", "cam-ext-", "cam-ext-11", "CAM-EXT-1", "cam-1"}) {
        EXPECT_EQ(Event(id, "Missing"), 0) << id;
        EXPECT_EQ(Log(), Lines(id, "Missing",
                               {"1 " + kEventTag +
                                "the currently opened camera cam-ext-1 is not affected. -> "
                                "ignored."}));
    }
}

TEST_F(DiscoveryTest, AnEventWithoutTypeIsTold) {
    const std::string line = "0 " + kEventTag +
                             "Could not determine the event type. For security reasons, "
                             "\"SignalCamCfgChange\" is called.";
    EXPECT_EQ(Event("cam-ext-2", std::nullopt), 1);
    EXPECT_EQ(Log(), Lines("cam-ext-2", "", {line}));
    EXPECT_EQ(Event(std::nullopt, std::nullopt), 1);
    EXPECT_EQ(Log(), Lines("", "", {line}));
}

TEST_F(DiscoveryTest, ATypeWithoutTextCountsAsNone) {
    Grabber().Api().PxnFeatureEnumGet = [](PxnHandle, const char*, const char** type) -> PxnError {
        *type = nullptr;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Event("cam-ext-2", "Missing"), 1);
    EXPECT_EQ(Log(), Lines("cam-ext-2", "",
                           {"0 " + kEventTag +
                            "Could not determine the event type. For security reasons, "
                            "\"SignalCamCfgChange\" is called."}));
}

TEST_F(DiscoveryTest, AnEventWithoutCameraIsTold) {
    const Texts lines = Lines("", "Missing",
                              {"0 " + kEventTag +
                               "Could not determine id of camera that triggered the event. For "
                               "security reasons, \"SignalCamCfgChange\" is called."});
    EXPECT_EQ(Event(std::nullopt, "Missing"), 1);
    EXPECT_EQ(Log(), lines);
    EXPECT_EQ(Event("", "Missing"), 1);
    EXPECT_EQ(Log(), lines);
}

TEST_F(DiscoveryTest, ReadsIdThenType) {
    Event("cam-ext-2", "Missing");
    EXPECT_EQ(Calls(),
              (Texts{"PxnFeatureStringGet(system, \"EventCameraDiscoveryCameraID\", null, 0)",
                     "PxnFeatureStringGet(system, \"EventCameraDiscoveryCameraID\", array, 10)",
                     "PxnFeatureEnumGet(system, \"EventCameraDiscoveryType\")"}));
}

TEST_F(DiscoveryTest, AnIdThatFailsHalfWayCountsAsNone) {
    sdk.Fail("PxnFeatureStringGet", PxnErrIO, 2);
    EXPECT_EQ(Event("cam-ext-2", "Missing"), 1);
}

TEST_F(DiscoveryTest, ATypeThatComesWithAFailureCountsAsNone) {
    Grabber().Api().PxnFeatureEnumGet = [](PxnHandle, const char*, const char** type) -> PxnError {
        *type = "Detected";
        return PxnErrIO;
    };
    EXPECT_EQ(Event("cam-ext-2", "Missing"), 1);
}

TEST_F(DiscoveryTest, NamesTheModuleWhoseHandleItIs) {
    Tell(sdk.Data().interfaces[0], "cam-ext-1", "Missing");
    Grabber().InvalidationCallback(scripted::InterfaceHandle(), "EventCameraDiscovery");
    EXPECT_EQ(signals, 1);
    EXPECT_EQ(Log().front(), FirstLine("Interface", "0000000000300000"));
}

TEST_F(DiscoveryTest, NoCameraHasTheEmptyId) {
    Destroy();
    Init(); // no camera was opened since
    Watch();
    EXPECT_EQ(Event("other", "Missing"), 0);
    EXPECT_EQ(Event(std::nullopt, "Missing"), 1);
}

TEST_F(DiscoveryTest, ReportsARemovalDuringTheOpening) {
    Destroy();
    Init(); // no camera was opened since
    Watch();
    Tell(sdk.Data().system, "cam-ext-1", "Missing");
    sdk.OnCall("PxnCameraInfoQueryByHandle",
               [&] { sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery"); });
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(signals, 1);
}

TEST_F(DiscoveryTest, AChosenCameraIsIgnoredUntilItIsOpened) {
    Destroy();
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    Init();
    Watch();
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 0);
    EXPECT_EQ(Log(), Lines("cam-ext-1", "Missing",
                           {"1 " + kEventTag +
                            "the currently opened camera  is not affected. -> ignored."}));
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 1);
}

TEST_F(DiscoveryTest, ChoosingAnotherCameraLeavesTheOpenOneReported) {
    ASSERT_TRUE(Grabber().GetIni()->WriteText("Grabber_0", "UniqueId", "cam-ext-2"));
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 1);
    EXPECT_EQ(Event("cam-ext-2", "Missing"), 0);
}

TEST_F(DiscoveryTest, AfterDeInitNoCameraWasOpened) {
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    Init();
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 0);
}

TEST_F(DiscoveryTest, AClosedCameraIsStillReported) {
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 1);
}

TEST_F(DiscoveryTest, AnEventWithoutTheSdkIsTold) {
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    Forget();
    Grabber().InvalidationCallback(scripted::SystemHandle(), "EventCameraDiscovery");
    EXPECT_EQ(signals, 1);
    EXPECT_EQ(Log(), Lines("", "",
                           {"0 " + kEventTag +
                            "Could not determine the event type. For security reasons, "
                            "\"SignalCamCfgChange\" is called."}));
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(DiscoveryTest, TellsTheSameWithoutASink) {
    Grabber().InstCamCfgChangeCallBack(nullptr, nullptr);
    Destroy();
    WithoutSink();
    Open();
    Watch();
    EXPECT_EQ(Event("cam-ext-1", "Missing"), 1);
    EXPECT_EQ(Event("cam-ext-1", "Detected"), 1);
    EXPECT_EQ(Event("cam-ext-1", "Reachable"), 0);
    EXPECT_EQ(Event("cam-ext-2", "Missing"), 0);
    EXPECT_EQ(Event("cam-ext-1", std::nullopt), 1);
    EXPECT_EQ(Event(std::nullopt, "Missing"), 1);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(DiscoveryTest, AReceiverMayOpenTheCameraAgain) {
    struct Reopening {
        CMivoraKVNPyxenClass* grabber;
        MV_ERRCODE result = MV_BUSY;
    } reopening{&Grabber()};
    Grabber().InstCamCfgChangeCallBack(
        [](void* context) {
            auto* wanted = static_cast<Reopening*>(context);
            wanted->grabber->CloseActCamera();
            wanted->result = wanted->grabber->OpenActCamera();
        },
        &reopening);
    Event("cam-ext-1", "Detected");
    EXPECT_EQ(reopening.result, MV_OK);
}

TEST_F(DiscoveryTest, TheHostIsToldWithoutAMutexThatTheGrabberNeeds) {
    struct Receiver {
        CMivoraKVNPyxenClass& grabber;
        std::thread loading;
        std::atomic<bool> loaded{false};
        bool loadedMeanwhile = false;
    } receiver{Grabber(), {}};
    Grabber().InstCamCfgChangeCallBack(
        [](void* context) {
            auto& self = *static_cast<Receiver*>(context);
            self.loading = std::thread([&self] {
                self.grabber.LoadGrabberConfig();
                self.loaded = true;
            });
            self.loadedMeanwhile = support::WaitUntil([&] { return self.loaded.load(); }, 3000);
        },
        &receiver);
    std::thread([&] { Event("cam-ext-1", "Missing"); }).join();
    ASSERT_TRUE(receiver.loading.joinable());
    receiver.loading.join();
    EXPECT_TRUE(receiver.loadedMeanwhile);
}

TEST_F(DiscoveryTest, EventsOfAnyFeatureCount) {
    Tell(sdk.Data().system, "cam-ext-1", "Missing");
    for (const char* const feature : {"EventCameraDiscoveryType", "Width", ""}) {
        const int before = signals;
        Grabber().InvalidationCallback(scripted::SystemHandle(), feature);
        EXPECT_EQ(signals - before, 1) << feature;
    }
}

TEST_F(DiscoveryTest, AModuleOfAClosedCameraIsUnknown) {
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Forget();
    Grabber().InvalidationCallback(scripted::CameraHandle(), "EventCameraDiscovery");
    EXPECT_EQ(signals, 1); // its event cannot be read
    EXPECT_EQ(Log().front(), FirstLine("- unknown -", "0000000000100000"));
}

TEST_F(DiscoveryTest, TheSdksEventReachesTheHost) {
    Tell(sdk.Data().system, "cam-ext-1", "Missing");
    EXPECT_EQ(sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery"), 1u);
    EXPECT_EQ(signals, 1);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery"), 0u);
    EXPECT_EQ(signals, 1);
}

TEST_F(DiscoveryTest, EventsMayComeWhileTheCameraIsOpenedAndClosed) {
    constexpr int kEvents = 200;
    Tell(sdk.Data().system, "cam-ext-1", "Missing");
    std::atomic<bool> done{false};
    std::thread sdkThread([&] {
        for (int event = 0; event < kEvents; ++event) {
            Grabber().InvalidationCallback(scripted::SystemHandle(), "EventCameraDiscovery");
        }
        done = true;
    });
    while (!done) {
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
        EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    }
    sdkThread.join();
    EXPECT_EQ(signals, kEvents);
}

// ---- the decision alone ----

class DiscoveryAlone : public LoadedApi {
protected:
    bool Event(const std::string& id, const std::string& type) {
        sdk.Data().system.Put(scripted::StringFeature("EventCameraDiscoveryCameraID", id));
        sdk.Data().system.Put(scripted::EnumFeature("EventCameraDiscoveryType", type, {}));
        return discovery.ConcernsHost(scripted::SystemHandle(), "EventCameraDiscovery");
    }

    CameraIdentity identity;
    CameraCaches caches;
    Discovery discovery{api, caches, identity, &sink};
};

TEST_F(DiscoveryAlone, ComparesWithTheOpenedCameraOnly) {
    ASSERT_TRUE(identity.Select("chosen"));
    EXPECT_FALSE(Event("chosen", "Missing"));
    identity.Open("opened");
    ASSERT_TRUE(identity.Select("chosen"));
    EXPECT_FALSE(Event("chosen", "Missing"));
    EXPECT_TRUE(Event("opened", "Missing"));
    identity.ForgetOpened();
    EXPECT_FALSE(Event("opened", "Missing"));
}

TEST_F(DiscoveryAlone, NamesTheModuleOfTheHandle) {
    ASSERT_TRUE(caches[kStreamCache].Init("Stream0", &api, scripted::SystemHandle(), &sink));
    sink.Take();
    Event("other", "Missing");
    EXPECT_NE(sink.Take().front().find("ModuleName = Stream0, "), std::string::npos);
}

} // namespace
