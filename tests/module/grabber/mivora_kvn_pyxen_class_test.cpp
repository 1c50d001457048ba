// mivora_kvn_pyxen_class_test.cpp - the grabber's life and the values it returns
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "serial/cmd_kvn_pyxen.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/mutex_probe.h"

#include <cstring>

using namespace pyxen;

namespace {

class GrabberClass : public GrabberFixture {
protected:
    // What reaches the host, in order: "update MASK", "event CODE".
    void Listen() {
        Grabber().InstDialogUpdateCallBack(
            [](uint32_t mask, void* context) {
                static_cast<GrabberClass*>(context)->told.push_back("update " +
                                                                    std::to_string(mask));
            },
            this);
        Grabber().InstCamCntrlCallBack(
            [](uint32_t code, void* context) -> uint32_t {
                auto& self = *static_cast<GrabberClass*>(context);
                self.told.push_back("event " + std::to_string(code));
                return self.answer;
            },
            this);
    }
    uint64_t Exposure() {
        uint64_t exposure = 0;
        uint64_t interval = 0;
        Grabber().GetTimerMicroseconds(&exposure, &interval);
        return exposure;
    }
    uint64_t Interval() {
        uint64_t exposure = 0;
        uint64_t interval = 0;
        Grabber().GetTimerMicroseconds(&exposure, &interval);
        return interval;
    }

    Texts told;
    uint32_t answer = 1;
};

TEST_F(GrabberClass, IntroducesItself) {
    EXPECT_STREQ(Grabber().GetDriverDesc(),
                 "Mivora grabber library for Korvane Pyxen compatible cameras");
    EXPECT_STREQ(Grabber().GetDriverName(), "MivoraKVNPyxen.dll");
    EXPECT_STREQ(Grabber().GetDriverVersion(), "");
}

TEST_F(GrabberClass, BeginsEmptyAndAsksTheSdkNothing) {
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_FALSE(Grabber().IsInitialized());
    EXPECT_EQ(Grabber().GetNumCameras(), 0u);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
    EXPECT_EQ(Grabber().CameraHandle(), nullptr);
    EXPECT_FALSE(Grabber().Api().IsValid());
    Destroy();
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GrabberClass, KeepsTheModuleInstance) {
    int instance = 0;
    CMivoraKVNPyxenClass made(&instance);
    EXPECT_EQ(made.GetModuleInstance(), &instance);
}

TEST_F(GrabberClass, InitMembersWritesTheTextsAgain) {
    ASSERT_EQ(Grabber().Init(), MV_OK);
    Grabber().SetDriverDesc("other");
    Grabber().InitMembers();
    EXPECT_STREQ(Grabber().GetDriverDesc(),
                 "Mivora grabber library for Korvane Pyxen compatible cameras");
    EXPECT_STREQ(Grabber().CMivoraGrabber::GetDriverVersion(), "");
}

TEST_F(GrabberClass, StoresTheAcquisitionState) {
    for (const uint32_t state : {1u, 5u, 0xFFFFFFFFu, 0u}) {
        Grabber().SetAcquisitionState(state);
        EXPECT_EQ(Grabber().GetAcquisitionState(), state);
    }
}

TEST_F(GrabberClass, AnswersWhetherACameraIsOpen) {
    Open();
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
}

TEST_F(GrabberClass, HasFiveCachesInAFixedOrder) {
    Open();
    EXPECT_EQ(Grabber().GetNumFeatureCaches(), 5u);
    const char* const names[] = {"Interface", "Transportlayer", "Localdevice", "Camera", "Stream0"};
    const PxnHandle handles[] = {scripted::InterfaceHandle(), scripted::TransportLayerHandle(),
                                 scripted::LocalDeviceHandle(), scripted::CameraHandle(),
                                 scripted::StreamHandle()};
    for (uint32_t index = 0; index < 5; ++index) {
        FeatureCache* const cache = Grabber().GetFeatureCache(index);
        ASSERT_NE(cache, nullptr);
        EXPECT_STREQ(cache->GetModuleName(), names[index]);
        EXPECT_EQ(Grabber().GetFeatureCacheByName(names[index]), cache);
        EXPECT_EQ(Grabber().GetFeatureCacheByHandle(handles[index]), cache);
    }
    EXPECT_EQ(Grabber().GetFeatureCache(5), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCache(0xFFFFFFFF), nullptr);
}

TEST_F(GrabberClass, FindsCachesByNameWithoutRegardToCase) {
    Open();
    EXPECT_EQ(Grabber().GetFeatureCacheByName("camera"), Grabber().GetFeatureCache(kCameraCache));
    EXPECT_EQ(Grabber().GetFeatureCacheByName("STREAM0"), Grabber().GetFeatureCache(kStreamCache));
    EXPECT_EQ(Grabber().GetFeatureCacheByName("Cam"), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCacheByName(""), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCacheByName(nullptr), nullptr);
}

TEST_F(GrabberClass, OfNamesThatDifferInCaseTheFirstCacheIsFound) {
    Open();
    CPyxenAPIAccess& api = Grabber().Api();
    Grabber().GetFeatureCache(2)->Init("same", &api, scripted::LocalDeviceHandle(), &sink);
    Grabber().GetFeatureCache(4)->Init("SAME", &api, scripted::StreamHandle(), &sink);
    EXPECT_EQ(Grabber().GetFeatureCacheByName("SAME"), Grabber().GetFeatureCache(2));
}

TEST_F(GrabberClass, TheSystemCacheIsNotAmongThem) {
    Open();
    EXPECT_STREQ(Grabber().SystemCache().GetModuleName(), "PxnSystem");
    EXPECT_EQ(Grabber().GetFeatureCacheByName("PxnSystem"), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCacheByHandle(PXN_SYSTEM_HANDLE), nullptr);
}

TEST_F(GrabberClass, CachesWithoutNameAreSkipped) {
    EXPECT_EQ(Grabber().GetFeatureCacheByName("Camera"), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCacheByName(""), nullptr);
    EXPECT_EQ(Grabber().GetFeatureCacheByHandle(scripted::CameraHandle()), nullptr);
}

TEST_F(GrabberClass, MakesBothKindsOfChannels) {
    EXPECT_EQ(Grabber().GetNumCmdChannelTypes(), 2u);
    CCmdChannel* const host = Grabber().CreateCmdChannel(0);
    CCmdChannel* const own = Grabber().CreateCmdChannel(1);
    ASSERT_NE(host, nullptr);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(host->GetChannelKind(), 1u);
    EXPECT_EQ(own->GetChannelKind(), 0x80000000u);
    EXPECT_NE(dynamic_cast<CCmdKVNPyxen*>(own), nullptr);
    Grabber().DeleteCmdChannel(host);
    Grabber().DeleteCmdChannel(own);
    EXPECT_EQ(Grabber().CreateCmdChannel(2), nullptr);
    EXPECT_EQ(Grabber().CreateCmdChannel(0xFFFFFFFF), nullptr);
    Grabber().DeleteCmdChannel(nullptr);
}

TEST_F(GrabberClass, ItsSerialChannelsTakeTheMutexOfTheBuffers) {
    Open();
    CCmdChannel* const made = Grabber().CreateCmdChannel(1);
    SerialSettings settings;
    std::strcpy(settings.portName, "PYXENSERIALPORT2");
    static_cast<CCmdKVNPyxen*>(made)->SetSettings(settings);
    bool wasFree = true;
    sdk.OnCall("PxnMemoryWrite", [&] { wasFree = IsFree(Grabber().SerialMutex()); });
    EXPECT_EQ(made->Open(), MV_OK);
    EXPECT_FALSE(wasFree);
    Grabber().DeleteCmdChannel(made);
}

// A channel of a kind that nobody makes here; it counts how often it is destroyed.
class ForeignChannel final : public CCmdChannel {
public:
    explicit ForeignChannel(uint32_t channelKind, unsigned& destructions)
        : kind(channelKind), count(destructions) {}
    ~ForeignChannel() override { ++count; }

    const char* GetChannelTypeName() override { return "Foreign"; }
    const char* GetConfigText() override { return ""; }
    MV_ERRCODE ConfigDialog(MV_WINDOW, MV_DLG_EXITCODE*) override { return MV_OK; }
    MV_ERRCODE Open() override { return MV_OK; }
    MV_ERRCODE ReadByte(uint8_t*, uint64_t*) override { return MV_OK; }
    MV_ERRCODE WriteByte(const uint8_t*, uint64_t*) override { return MV_OK; }
    MV_ERRCODE ReadBuffer(uint8_t*, uint64_t, uint64_t*) override { return MV_OK; }
    MV_ERRCODE WriteBuffer(const uint8_t*, uint64_t, uint64_t*) override { return MV_OK; }
    MV_ERRCODE Purge(uint32_t) override { return MV_OK; }
    MV_ERRCODE Close() override { return MV_OK; }
    uint32_t GetChannelKind() override { return kind; }

private:
    uint32_t kind;
    unsigned& count;
};

TEST_F(GrabberClass, DestroysItsOwnKindOfChannelsAndLeavesUnknownOnesAlone) {
    unsigned destructions = 0;
    Grabber().DeleteCmdChannel(new ForeignChannel(0x80000000, destructions));
    EXPECT_EQ(destructions, 1u);
    for (const uint32_t kind : {0u, 2u, 0x80000001u}) {
        ForeignChannel channel(kind, destructions);
        destructions = 0;
        Grabber().DeleteCmdChannel(&channel);
        EXPECT_EQ(destructions, 0u) << kind;
    }
}

TEST_F(GrabberClass, DestructionDeletesTheChannels) {
    unsigned destructions = 0;
    ASSERT_EQ(Grabber().AddCmdChannel(new ForeignChannel(0x80000000, destructions)), MV_OK);
    ASSERT_EQ(Grabber().AddCmdChannel(Grabber().CreateCmdChannel(1)), MV_OK);
    ASSERT_EQ(Grabber().AddCmdChannel(Grabber().CreateCmdChannel(0)), MV_OK);
    Destroy();
    EXPECT_EQ(destructions, 1u);
}

TEST_F(GrabberClass, DestructionLeavesTheSdkBeforeItDeletesTheChannels) {
    Init();
    unsigned destructions = 0;
    unsigned destroyedAtShutdown = 77;
    ASSERT_EQ(Grabber().AddCmdChannel(new ForeignChannel(0x80000000, destructions)), MV_OK);
    sdk.OnCall("PxnShutdown", [&] { destroyedAtShutdown = destructions; });
    Destroy();
    EXPECT_EQ(destroyedAtShutdown, 0u);
    EXPECT_EQ(destructions, 1u);
}

TEST_F(GrabberClass, MakesCamerasOfTheModule) {
    const std::unique_ptr<CMivoraCamera> camera(Grabber().CreateCamera());
    EXPECT_NE(dynamic_cast<CMivoraCameraKVNPyxen*>(camera.get()), nullptr);
    EXPECT_EQ(Grabber().GetNumCameras(), 0u);
}

TEST_F(GrabberClass, CameraControlNeedsACamera) {
    EXPECT_EQ(Grabber().CamCntrlDialog(nullptr), MV_NO_CAMERA);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GrabberClass, OtherCameraControlDialogsAreTheHosts) {
    Init();
    Grabber().GetActCamera()->SetCamCntrlDlgIndex(1);
    EXPECT_EQ(Grabber().CamCntrlDialog(nullptr), MV_NOT_AVAILABLE);
    EXPECT_EQ(Log(), Texts{"0 Mivora: CamCntrlDialog: There is no camera control dialog 1"});
}

TEST_F(GrabberClass, TellsTheHostOfANewExposure) {
    Open();
    Listen();
    Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), "ExposureTime");
    EXPECT_EQ(told, (Texts{"update 1", "event 3"}));
    EXPECT_EQ(Exposure(), 10000u);
    EXPECT_EQ(Calls(), Texts{"PxnFeatureFloatGet(camera0, \"ExposureTime\")"});
}

TEST_F(GrabberClass, TellsTheHostOfANewFrameRate) {
    Open();
    Listen();
    Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), "AcquisitionFrameRate");
    EXPECT_EQ(told, (Texts{"update 1", "event 3"}));
    EXPECT_EQ(Interval(), 40000u);
    EXPECT_EQ(Calls(), (Texts{"PxnFeatureIntGet(camera0, \"AcquisitionFixedIntervalTime\")",
                              "PxnFeatureFloatGet(camera0, \"AcquisitionFrameRate\")"}));
}

TEST_F(GrabberClass, TimingFeatureNamesAreComparedWithoutRegardToCase) {
    Open();
    Listen();
    Grabber().OnTimingFeatureChanged(nullptr, "EXPOSUREtime");
    Grabber().OnTimingFeatureChanged(nullptr, "acquisitionframerate");
    EXPECT_EQ(told, (Texts{"update 1", "event 3", "update 1", "event 3"}));
}

TEST_F(GrabberClass, AnUnchangedTimingIsNotTold) {
    Open();
    Grabber().OnTimingFeatureChanged(nullptr, "ExposureTime");
    Grabber().OnTimingFeatureChanged(nullptr, "AcquisitionFrameRate");
    Listen();
    Grabber().OnTimingFeatureChanged(nullptr, "ExposureTime");
    Grabber().OnTimingFeatureChanged(nullptr, "AcquisitionFrameRate");
    EXPECT_EQ(told, Texts{});
}

TEST_F(GrabberClass, ATimingThatCannotBeReadIsNotTold) {
    Open();
    Listen();
    sdk.FailAlways("PxnFeatureFloatGet", PxnErrIO);
    const uint64_t before = Exposure();
    Grabber().OnTimingFeatureChanged(nullptr, "ExposureTime");
    Grabber().OnTimingFeatureChanged(nullptr, "AcquisitionFrameRate");
    EXPECT_EQ(told, Texts{});
    EXPECT_EQ(Exposure(), before);
}

TEST_F(GrabberClass, OtherFeaturesAreNoTiming) {
    Open();
    Listen();
    for (const char* name : {"Width", "ExposureTimeAbs", "AcquisitionFixedIntervalTime", ""}) {
        Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), name);
    }
    Grabber().OnTimingFeatureChanged(scripted::CameraHandle(), nullptr);
    EXPECT_EQ(told, Texts{});
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(GrabberClass, ANewTimingIsAlsoTheOneToSave) {
    Open();
    Grabber().OnTimingFeatureChanged(nullptr, "ExposureTime");
    Grabber().OnTimingFeatureChanged(nullptr, "AcquisitionFrameRate");
    ASSERT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    EXPECT_EQ(Grabber().GetIni()->GetInt32("Grabber_0", "Exposure", 0), 10000);
    EXPECT_EQ(Grabber().GetIni()->GetInt32("Grabber_0", "Interval", 0), 40000);
}

TEST_F(GrabberClass, TellsTheHostOfBufferImpact) {
    Listen();
    EXPECT_TRUE(Grabber().NotifyBufferImpact(false));
    EXPECT_TRUE(Grabber().NotifyBufferImpact(true));
    EXPECT_EQ(told, (Texts{"event 4096", "event 4097"}));
}

TEST_F(GrabberClass, TheHostMayRefuseThatBufferImpactBegins) {
    Listen();
    answer = 0;
    EXPECT_FALSE(Grabber().NotifyBufferImpact(false));
    EXPECT_TRUE(Grabber().NotifyBufferImpact(true));
    answer = 7;
    EXPECT_TRUE(Grabber().NotifyBufferImpact(false));
}

// ---- the synchronisation of features ----

class GrabberSynchronisation : public GrabberFixture {
protected:
    /// Camera features that the local device's features of the same names follow.
    void SetUp() override {
        GrabberFixture::SetUp();
        std::vector<scripted::EnumEntry> entries(2);
        entries[0].name = "Low";
        entries[1].name = "High";
        scripted::Module& camera = Camera();
        camera.Put(scripted::IntFeature("Amount", 5, 0, 9));
        camera.Put(scripted::FloatFeature("Ratio", 0.25, 0, 9));
        camera.Put(scripted::EnumFeature("Level", "Low", entries));
        camera.Put(scripted::StringFeature("Label", "a", 64));
        camera.Put(scripted::BoolFeature("Flag", true));
        entries.pop_back();
        Device().Put(scripted::IntFeature("Amount", 1, 0, 7));
        Device().Put(scripted::FloatFeature("Ratio", 0, 0, 0.5));
        Device().Put(scripted::EnumFeature("Level", "Low", entries));
        Device().Put(scripted::StringFeature("Label", "", 4));
        Device().Put(scripted::BoolFeature("Flag", false));
        std::string content = R"({"SyncFeatures":[)";
        for (const std::string name : {"Amount", "Ratio", "Level", "Label", "Flag"}) {
            content += (name == "Amount" ? "" : ",") + Reference("Camera", name) +
                       R"(,"Dependencies":[)" + Reference("Localdevice", name) + "}]}";
        }
        directory.Write("sync.json", content + "]}");
        WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=sync.json\n");
        Open();
        cameraCache = Grabber().GetFeatureCacheByName("Camera");
        deviceCache = Grabber().GetFeatureCacheByName("Localdevice");
        ASSERT_NE(cameraCache, nullptr);
        ASSERT_NE(deviceCache, nullptr);
    }

    static std::string Reference(const std::string& module, const std::string& name) {
        return R"({"ModuleName":")" + module + R"(","FeatureName":")" + name + "\"";
    }
    scripted::Module& Device() { return Camera().localDevice; }
    Texts Writes() { return sdk.TakeCalls({"PxnFeatureIntSet", "PxnFeatureFloatSet"}); }

    FeatureCache* cameraCache = nullptr;
    FeatureCache* deviceCache = nullptr;
};

TEST_F(GrabberSynchronisation, CopiesFeatures) {
    const std::string amount = "PxnFeatureIntSet(localdevice0, \"Amount\", 5)";
    const std::string ratio = "PxnFeatureFloatSet(localdevice0, \"Ratio\", 0.25)";
    EXPECT_EQ(Grabber().SyncFeature(cameraCache, "Amount", deviceCache, "Amount", false), 1);
    EXPECT_EQ(Writes(), Texts{amount});
    EXPECT_EQ(Grabber().SyncFeature(cameraCache, "Amount", deviceCache, "Amount", true), 1);
    EXPECT_EQ(Writes(), Texts{});
    EXPECT_EQ(Grabber().SyncModuleFeatures(cameraCache, false), 1);
    EXPECT_EQ(Writes(), (Texts{amount, ratio}));
    EXPECT_EQ(Grabber().SyncModuleFeatures(cameraCache, true), 1);
    EXPECT_EQ(Writes(), Texts{});
    EXPECT_EQ(Grabber().SyncDependentFeatures(cameraCache, "Ratio", false), 1);
    EXPECT_EQ(Writes(), Texts{ratio});
    EXPECT_EQ(Grabber().SyncDependentFeatures(cameraCache, "Ratio", true), 1);
    EXPECT_EQ(Writes(), Texts{});
}

TEST_F(GrabberSynchronisation, ChecksValuesAgainstWhatFollows) {
    EXPECT_TRUE(Grabber().IntFeatureCheckSyncPath(cameraCache, "Amount", 7).ok);
    EXPECT_TRUE(Grabber().FloatFeatureCheckSyncPath(cameraCache, "Ratio", 0.5).ok);
    EXPECT_TRUE(Grabber().EnumFeatureCheckSyncPath(cameraCache, "Level", "Low").ok);
    EXPECT_TRUE(Grabber().StringFeatureCheckSyncPath(cameraCache, "Label", "four").ok);
    EXPECT_TRUE(Grabber().BoolFeatureCheckSyncPath(cameraCache, "Flag", true).ok);
    Device()["Flag"].writeable = false;
    for (const auto& [result, name] : {
             std::pair{Grabber().IntFeatureCheckSyncPath(cameraCache, "Amount", 8), "Amount"},
             std::pair{Grabber().FloatFeatureCheckSyncPath(cameraCache, "Ratio", 0.75), "Ratio"},
             std::pair{Grabber().EnumFeatureCheckSyncPath(cameraCache, "Level", "High"), "Level"},
             std::pair{Grabber().StringFeatureCheckSyncPath(cameraCache, "Label", "fives"),
                       "Label"},
             std::pair{Grabber().BoolFeatureCheckSyncPath(cameraCache, "Flag", true), "Flag"},
         }) {
        EXPECT_FALSE(result.ok) << name;
        EXPECT_EQ(result.failingFeature, std::string("/Localdevice/Scripted/") + name);
    }
}

TEST_F(GrabberSynchronisation, KnowsWhatChangesTheBuffers) {
    EXPECT_TRUE(Grabber().IsBufferImpactingFeature(cameraCache, "Width"));
    EXPECT_FALSE(Grabber().IsBufferImpactingFeature(cameraCache, "Amount"));
}

} // namespace
