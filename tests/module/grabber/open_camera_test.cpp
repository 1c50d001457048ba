// open_camera_test.cpp - opening the active camera
#include "grabber/open_camera.h"

#include "acquisition/acquisition.h"
#include "grabber/camera_identity.h"
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/sdk/loaded_api.h"

#include <algorithm>

using namespace pyxen;

namespace {

using OpenCameraTest = GrabberFixture;

Texts FeatureLists(const std::string& module, const std::string& count) {
    return {"PxnFeaturesList(" + module + ", null, 0, 88)",
            "PxnFeaturesList(" + module + ", array, " + count + ", 88)"};
}

Texts StringRead(const std::string& module, const std::string& feature, const std::string& size) {
    const std::string begin = "PxnFeatureStringGet(" + module + ", \"" + feature + "\", ";
    return {begin + "null, 0)", begin + "array, " + size + ")"};
}

void CountUpdates(uint32_t mask, void* context) {
    static_cast<std::vector<uint32_t>*>(context)->push_back(mask);
}

TEST_F(OpenCameraTest, IsRefusedBeforeInit) {
    EXPECT_EQ(Grabber().OpenActCamera(), MV_NOT_INITIALISED);
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::OpenActCamera"});
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
}

TEST_F(OpenCameraTest, IsRefusedWithoutAnActiveCamera) {
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(-1), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_NO_CAMERA);
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::OpenActCamera"});
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
}

// The handle is that of the camera that is open: it must not be closed as one left open.
TEST_F(OpenCameraTest, ThatFailsLeavesTheOpenCameraAlone) {
    static PxnHandle given = nullptr;
    Open();
    Grabber().Api().PxnCameraOpen = [](const char*, uint32_t, PxnHandle* camera) -> PxnError {
        *camera = given;
        return PxnErrIO;
    };
    given = scripted::CameraHandle();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_REFUSED);
    EXPECT_EQ(Grabber().Api().AllocateAndGetCameraList(nullptr), 1u);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{});
    given = scripted::CameraHandle(1);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_REFUSED);
    EXPECT_EQ(Grabber().Api().AllocateAndGetCameraList(nullptr), 1u);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{"PxnCameraClose(0x100001)"});
}

TEST_F(OpenCameraTest, TakesTheHandleOfAVanishedCameraAgain) {
    Open();
    ASSERT_EQ(Grabber().Api().PxnCameraClose(Grabber().CameraHandle()), PxnErrSuccess);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.CountOpenCameras(), 1u);
    Forget();
    EXPECT_EQ(Grabber().Api().AllocateAndGetCameraList(nullptr), 1u);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{});
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(sdk.CountOpenCameras(), 0u);
}

TEST_F(OpenCameraTest, AsksTheSdkInOrder) {
    Init();
    const std::string features = std::to_string(Camera().features.size());
    const std::string baudRate = "\"DeviceSerialPortBaudRate\"";
    const Texts expected =
        Texts{"PxnCameraOpen(\"cam-ext-1\", 1)", "PxnCameraInfoQueryByHandle(camera0, 80)"} +
        FeatureLists("camera0", features) +
        Texts{"PxnFeatureEnumRangeQuery(localdevice0, " + baudRate + ", null, 0)",
              "PxnFeatureEnumRangeQuery(localdevice0, " + baudRate + ", array, 3)",
              "PxnFeatureEnumRangeQuery(camera0, " + baudRate + ", null, 0)",
              "PxnFeatureEnumRangeQuery(camera0, " + baudRate + ", array, 2)",
              "PxnFeatureEnumGet(localdevice0, " + baudRate + ")",
              "PxnFeatureEnumSet(localdevice0, " + baudRate + ", \"Baud115200\")"} +
        FeatureLists("interface0", "1") + FeatureLists("localdevice0", "2") +
        FeatureLists("transportlayer0", "5") + FeatureLists("camera0", features) +
        FeatureLists("stream0", "3") +
        Texts{"PxnFeatureCommandRun(stream0, \"GVSPAdjustPacketSize\")",
              "PxnFeatureCommandIsDone(stream0, \"GVSPAdjustPacketSize\")"} +
        StringRead("interface0", "InterfaceID", "8") + StringRead("transportlayer0", "TLID", "7") +
        StringRead("transportlayer0", "TLVendorName", "8") +
        StringRead("transportlayer0", "TLModelName", "11") +
        StringRead("transportlayer0", "TLVersion", "6") +
        Texts{"PxnFeatureStringGet(transportlayer0, \"TLType\", null, 0)",
              "PxnFeatureEnumGet(transportlayer0, \"TLType\")"};
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    const Texts calls = Calls();
    ASSERT_EQ(calls.size(), expected.size());
    for (std::size_t i = 0; i < calls.size(); ++i) {
        // How large a buffer a text is read into is not the point here.
        const bool read = expected[i].find("StringGet") != std::string::npos &&
                          expected[i].find("array") != std::string::npos;
        const std::size_t length = read ? expected[i].find("array") : std::string::npos;
        EXPECT_EQ(calls[i].substr(0, length), expected[i].substr(0, length));
    }
}

TEST_F(OpenCameraTest, SaysWhatItDoes) {
    Init();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::OpenActCamera",
            "1 Successfully opened camera! Handle = 0000000000100000",
            "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Found optimum common DeviceSerialPortBaudrate for grabber and camera as Baud115200.",
            "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Switched to optimum DeviceSerialPortBaudrate of Baud115200.",
            "1 CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment",
            "1 CMivoraKVNPyxenClass::OpenActCamera: GVSP Packet size adjustment completed.",
            "1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for \"if-eth0\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"1.4.2\" \"GEV\"",
            "1 CMivoraKVNPyxenClass::OpenActCamera: No feature synchronization file found.",
            "1 CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: First start snap then queue frames",
        }));
}

TEST_F(OpenCameraTest, LeavesTheCameraOpenWithItsCaches) {
    Init();
    std::vector<uint32_t> updates;
    Grabber().InstDialogUpdateCallBack(&CountUpdates, &updates);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    EXPECT_EQ(Grabber().CameraHandle(), scripted::CameraHandle());
    EXPECT_EQ(updates, std::vector<uint32_t>{kMvUpdateAll});
    const char* const names[] = {"Interface", "Transportlayer", "Localdevice", "Camera", "Stream0"};
    const PxnHandle handles[] = {scripted::InterfaceHandle(), scripted::TransportLayerHandle(),
                                 scripted::LocalDeviceHandle(), scripted::CameraHandle(),
                                 scripted::StreamHandle()};
    for (uint32_t i = 0; i < 5; ++i) {
        const FeatureCache* const cache = Grabber().GetFeatureCache(i);
        EXPECT_STREQ(cache->GetModuleName(), names[i]);
        EXPECT_EQ(cache->GetHandle(), handles[i]);
        EXPECT_GT(cache->GetFeatureCount(), 0u);
    }
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().GetActCamera());
    EXPECT_EQ(node->Record().streamCount, 1u);
    EXPECT_EQ(node->Record().localDeviceHandle, scripted::LocalDeviceHandle());
    Grabber().InstDialogUpdateCallBack(nullptr, nullptr);
}

TEST_F(OpenCameraTest, AnswersRefusedWhenTheSdkRefuses) {
    Init();
    sdk.Fail("PxnCameraOpen", PxnErrInvalidAccess);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_REFUSED);
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::OpenActCamera",
            "0 CMivoraKVNPyxenClass::OpenActCamera: Operation is invalid with the current access mode",
        }));
    EXPECT_EQ(Calls(), Texts{"PxnCameraOpen(\"cam-ext-1\", 1)"});
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(Grabber().CameraHandle(), nullptr);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
}

// The SDK gave a handle all the same.
TEST_F(OpenCameraTest, ThatWasDoneAndReportedAsFailedIsClosedBeforeTheNext) {
    static decltype(&::PxnCameraOpen) open = nullptr;
    static PxnError code = PxnErrSuccess;
    for (const PxnError failure : {PxnErrTimeout, PxnErrInUse, PxnErrInvalidAccess}) {
        Init();
        open = Grabber().Api().PxnCameraOpen;
        code = failure;
        Grabber().Api().PxnCameraOpen = [](const char* id, std::uint32_t mode,
                                           PxnHandle* camera) -> PxnError {
            open(id, mode, camera);
            return code;
        };
        EXPECT_EQ(Grabber().OpenActCamera(), MV_REFUSED);
        EXPECT_EQ(Grabber().CloseActCamera(), MV_CAMERA_NOT_OPEN);
        EXPECT_EQ(sdk.CountOpenCameras(), 1u);
        Grabber().Api().PxnCameraOpen = open;
        Forget();
        // A camera that is said to be somebody's is left to them.
        const bool isAnothers = failure != PxnErrTimeout;
        EXPECT_EQ(Grabber().OpenActCamera(), isAnothers ? MV_REFUSED : MV_OK) << failure;
        EXPECT_EQ(sdk.Calls({"PxnCameraClose"}),
                  isAnothers ? Texts{} : Texts{"PxnCameraClose(camera0)"});
        EXPECT_EQ(Grabber().DeInit(), MV_OK);
        EXPECT_EQ(sdk.CountOpenCameras(), 0u);
    }
}

TEST_F(OpenCameraTest, LeavesTheOpenCameraAloneWhenItIsOpenedAgain) {
    Open();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_REFUSED);
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    EXPECT_EQ(Grabber().CameraHandle(), scripted::CameraHandle());
}

TEST_F(OpenCameraTest, SucceedsEarlyWithoutAFeatureList) {
    Init();
    std::vector<uint32_t> updates;
    Grabber().InstDialogUpdateCallBack(&CountUpdates, &updates);
    sdk.Fail("PxnFeaturesList", PxnErrIO);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::OpenActCamera",
            "1 Successfully opened camera! Handle = 0000000000100000",
            "0 CMivoraKVNPyxenClass::PrintParameters: Could not get feature list: Low level IO error in transport layer",
        }));
    EXPECT_EQ(Calls(),
              (Texts{"PxnCameraOpen(\"cam-ext-1\", 1)", "PxnCameraInfoQueryByHandle(camera0, 80)",
                     "PxnFeaturesList(camera0, null, 0, 88)"}));
    EXPECT_STREQ(Grabber().GetFeatureCache(kCameraCache)->GetModuleName(), "Camera");
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    EXPECT_EQ(updates, std::vector<uint32_t>{kMvUpdateAll});
    Grabber().InstDialogUpdateCallBack(nullptr, nullptr);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(OpenCameraTest, SucceedsEarlyWhenTheFeatureListCannotBeFilled) {
    Init();
    sdk.Fail("PxnFeaturesList", PxnErrIO, 2);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Calls().back(), "PxnFeaturesList(camera0, array, " +
                                  std::to_string(Camera().features.size()) + ", 88)");
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
}

TEST_F(OpenCameraTest, GoesOnWhenAnotherModuleHasNoFeatureList) {
    Init();
    sdk.Fail("PxnFeaturesList", PxnErrIO, 3, 5);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    const Texts log = Log();
    const std::string line =
        "0 CMivoraKVNPyxenClass::PrintParameters: Could not get feature list: Low level IO error in transport layer";
    EXPECT_EQ(std::count(log.begin(), log.end(), line), 5);
    EXPECT_EQ(
        log.back(),
        "1 CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: First start snap then queue frames");
}

TEST_F(OpenCameraTest, KeepsTheListedRecordWhenItCannotBeRefreshed) {
    Init();
    sdk.Fail("PxnCameraInfoQueryByHandle", PxnErrIO);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    // The listed record knows neither the local device nor a stream.
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::OpenActCamera",
            "1 Successfully opened camera! Handle = 0000000000100000",
            "0 CMivoraKVNPyxenClass::PrintParameters: Could not get feature list: The given handle is not valid",
            "1 CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment",
            "0 CMivoraKVNPyxenClass::OpenActCamera: Failed to execute GVSP packet size adjustment: The given handle is not valid",
            "1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for \"if-eth0\" \"tl-gev\" \"Korvane\" \"Pyxen GigE\" \"1.4.2\" \"GEV\"",
            "1 CMivoraKVNPyxenClass::OpenActCamera: No feature synchronization file found.",
            "1 CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: First start snap then queue frames",
        }));
}

TEST_F(OpenCameraTest, BuildsTheFirstOfSeveralStreamsOnly) {
    Init();
    Camera().streams.resize(3, Camera().streams[0]);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    const Texts log = Log();
    EXPECT_EQ(std::count(log.begin(), log.end(), "0 Todo: Currently only one stream supported..."),
              2);
    EXPECT_EQ(sdk.Calls({"PxnFeaturesList(stream0"}).size(), 2u);
    EXPECT_EQ(sdk.Calls({"PxnFeaturesList(stream1", "PxnFeaturesList(stream2"}), Texts{});
}

TEST_F(OpenCameraTest, AdjustsNoPacketSizeOfAnEarlierCamera) {
    Open();
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Camera().streams.clear();
    Forget();
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandRun"}),
              Texts{"PxnFeatureCommandRun(null, \"GVSPAdjustPacketSize\")"});
}

TEST_F(OpenCameraTest, OpensACameraWithoutPacketSizeAdjustment) {
    Init();
    Camera().streams[0].Remove("GVSPAdjustPacketSize");
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    const Texts log = Log();
    EXPECT_EQ(
        std::count(
            log.begin(), log.end(),
            "0 CMivoraKVNPyxenClass::OpenActCamera: Failed to execute GVSP packet size adjustment: The designated instance (camera, feature etc.) cannot be found"),
        1);
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandIsDone"}), Texts{});
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
}

TEST_F(OpenCameraTest, AsksUntilThePacketSizeIsAdjusted) {
    Init();
    Camera().streams[0]["GVSPAdjustPacketSize"].doneSequence = {false, false, false, true};
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandIsDone"}).size(), 4u);
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{});
    EXPECT_EQ(Log()[5],
              "1 CMivoraKVNPyxenClass::OpenActCamera: GVSP Packet size adjustment completed.");
}

TEST_F(OpenCameraTest, SaysNothingWhenThePacketSizeCommandIsGone) {
    Init();
    sdk.Fail("PxnFeatureCommandIsDone", PxnErrNotFound);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    const Texts log = Log();
    EXPECT_EQ(log[4],
              "1 CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment");
    EXPECT_EQ(log[5].rfind("1 CMivoraKVNPyxenClass::OpenActCamera: No TL specific", 0), 0u);
}

TEST_F(OpenCameraTest, ReportsThatThePacketSizeIsNeverDone) {
    Init();
    Camera().streams[0]["GVSPAdjustPacketSize"].doneSequence = {false};
    sdk.Fail("PxnFeatureCommandIsDone", PxnErrBadHandle, 2);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(
        Log()[5],
        "0 CMivoraKVNPyxenClass::OpenActCamera: Failed to wait for completion of GVSP packet size adjustment: The given handle is not valid");
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
}

TEST_F(OpenCameraTest, MakesTheOpenCameraTheChosenOne) {
    Open();
    sdk.Data().system["EventCameraDiscoveryCameraID"].text = "cam-ext-1";
    sdk.Data().system["EventCameraDiscoveryType"].text = "Missing";
    int signals = 0;
    Grabber().InstCamCfgChangeCallBack([](void* context) { ++*static_cast<int*>(context); },
                                       &signals);
    EXPECT_EQ(sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery"), 1u);
    EXPECT_EQ(signals, 1);
    sdk.Data().system["EventCameraDiscoveryCameraID"].text = "cam-1";
    sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery");
    EXPECT_EQ(signals, 1);
    Grabber().InstCamCfgChangeCallBack(nullptr, nullptr);
}

TEST_F(OpenCameraTest, TakesTheIdOfTheRefreshedRecord) {
    Init();
    sdk.OnCall("PxnCameraInfoQueryByHandle", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0].extendedId = "cam-ext-1b"; });
    });
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().GetActCamera());
    EXPECT_STREQ(node->Record().cameraIdExtended, "cam-ext-1b");
    sdk.Data().system["EventCameraDiscoveryCameraID"].text = "other";
    sdk.Data().system["EventCameraDiscoveryType"].text = "Missing";
    sdk.Fire(scripted::SystemHandle(), "EventCameraDiscovery");
    EXPECT_EQ(
        Log().back(),
        "1 CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: the currently opened camera cam-ext-1b is not affected. -> ignored.");
}

TEST_F(OpenCameraTest, TellsTheDialogsOfACameraThatIsOpen) {
    Init();
    std::vector<uint32_t> states;
    std::pair<CMivoraGrabber*, std::vector<uint32_t>*> context{&Grabber(), &states};
    Grabber().InstDialogUpdateCallBack(
        [](uint32_t, void* given) {
            const auto& [asked, seen] = *static_cast<decltype(&context)>(given);
            seen->push_back(asked->IsCameraOpen());
        },
        &context);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.Fail("PxnFeaturesList", PxnErrIO);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(states, (std::vector<uint32_t>{1, 1}));
    Grabber().InstDialogUpdateCallBack(nullptr, nullptr);
}

TEST_F(OpenCameraTest, WorksWithoutASink) {
    WithoutSink();
    Open();
    EXPECT_EQ(Grabber().IsCameraOpen(), 1u);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(OpenCameraTest, StreamsWithoutHandlesAreNone) {
    Init();
    Grabber().Api().PxnCameraInfoQueryByHandle = [](PxnHandle, PxnCameraInfo* info,
                                                    std::uint32_t) -> PxnError {
        info->cameraIdExtended = "cam-ext-1";
        info->streamCount = 3;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().GetFeatureCacheByName("Stream0"), nullptr);
    for (const std::string& line : Log()) {
        EXPECT_EQ(line.find("Todo"), std::string::npos);
    }
}

TEST_F(OpenCameraTest, KeepsWhatItKnowsWhenTheCameraIsNotDescribedAnew) {
    Init();
    sdk.Fail("PxnCameraInfoQueryByHandle", PxnErrIO);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().GetActCamera());
    EXPECT_STREQ(node->Record().cameraIdExtended, "cam-ext-1");
}

// ---- the open camera alone ----

class NoAcquisitionHost final : public IAcquisitionHost {
public:
    void OnFrame(PxnFrame*) override {}
    void HandOver(std::uint64_t, bool) override {}
    void ChooseDialog() override {}
    void MarkDialog(bool) override {}
    MV_ERRCODE PrepareHostBuffers(std::uint64_t, std::uint64_t&) override { return MV_REFUSED; }
};

class OpenCameraAlone : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        record.cameraIdExtended = "cam-ext-1";
    }

    CameraIdentity identity;
    OpenCamera camera{api, identity, &sink};
    NoAcquisitionHost host;
    platform::Mutex bufferMutex;
    Acquisition acquisition{nullptr, api, camera.Handle(), bufferMutex, host, &sink};
    PxnCameraInfo record{};
};

TEST_F(OpenCameraAlone, OpensRefreshesTheRecordAndCloses) {
    ASSERT_TRUE(camera.Open(record, nullptr, "", acquisition));
    EXPECT_EQ(camera.CameraHandle(), scripted::CameraHandle());
    EXPECT_EQ(record.localDeviceHandle, scripted::LocalDeviceHandle());
    EXPECT_EQ(identity.GetOpened(), "cam-ext-1");
    EXPECT_NE(camera.Caches().FindCacheByName("Stream0"), nullptr);
    EXPECT_FALSE(acquisition.QueuesFirst());
    camera.Close(acquisition);
    camera.Clear();
    EXPECT_EQ(camera.CameraHandle(), nullptr);
    EXPECT_EQ(camera.Caches().FindCacheByName("Camera"), nullptr);
    EXPECT_EQ(identity.GetOpened(), "cam-ext-1");
}

TEST_F(OpenCameraAlone, ARefusalChangesNothing) {
    sdk.Fail("PxnCameraOpen", PxnErrIO);
    EXPECT_FALSE(camera.Open(record, nullptr, "", acquisition));
    EXPECT_EQ(camera.CameraHandle(), nullptr);
    EXPECT_EQ(identity.GetOpened(), "");
}

TEST_F(OpenCameraAlone, CountsAsClosedWhenTheSdkRefuses) {
    ASSERT_TRUE(camera.Open(record, nullptr, "", acquisition));
    sink.Take();
    sdk.Fail("PxnCameraClose", PxnErrIO);
    camera.Close(acquisition);
    EXPECT_EQ(camera.CameraHandle(), nullptr);
    EXPECT_EQ(sink.Take().size(), 1u);
}

} // namespace
