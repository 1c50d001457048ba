// out_of_memory_posix_test.cpp - the grabber core with every allocation refused in turn
//
// The SDK behind it has no camera and allocates nothing, so that all that fails is the module's
// and the host's own.
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "mivora/module_entry.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "tests/module/scripted_sleep.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/environment_guard.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

using support::GrantAllocations;
using support::RefuseEachAllocationBothWays;

std::string BesideTests(const std::string& name) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name);
}

// Two cameras with identifiers too long for a string's own memory.
PxnError ListTwoCameras(PxnCameraInfo* cameras, std::uint32_t, std::uint32_t* found,
                        std::uint32_t) {
    cameras[0] = {};
    cameras[0].cameraIdExtended = "the-first-camera-with-a-long-extended-identifier";
    cameras[0].modelName = "First";
    cameras[1] = {};
    cameras[1].cameraIdExtended = "the-second-camera-with-a-long-extended-identifier";
    cameras[1].modelName = "Second";
    *found = 2;
    return PxnErrSuccess;
}

PxnError GetLongText(PxnHandle, const char*, char* buffer, std::uint32_t, std::uint32_t* filled) {
    static constexpr char kText[] = "a text that is too long for a string's own memory";
    if (buffer) {
        std::copy(std::begin(kText), std::end(kText), buffer);
    }
    *filled = sizeof kText;
    return PxnErrSuccess;
}

class GrabberOutOfMemory : public ::testing::Test {
protected:
    GrabberOutOfMemory() {
        EXPECT_EQ(grabber.SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
    }
    void Init() {
        ASSERT_EQ(grabber.Init(), MV_OK);
        grabber.Api().PxnCamerasList = ListTwoCameras;
        ASSERT_EQ(grabber.RefreshCameraList(), MV_OK);
        ASSERT_EQ(grabber.GetNumCameras(), 2u);
    }

    support::EnvironmentGuard home{"PYXEN_HOME", BesideTests("bare")};
    support::TemporaryDirectory directory;
    CMivoraKVNPyxenClass grabber{nullptr};
};

TEST_F(GrabberOutOfMemory, TheModuleAnswersNullInPlaceOfAGrabber) {
    platform::SharedLibrary module;
    ASSERT_TRUE(
        module.Load(BesideTests(platform::LibraryFileName("MivoraKVNPyxen")), true, nullptr));
    const auto create =
        reinterpret_cast<MV_CREATE_GRABBER>(module.FindSymbol(kMvCreateGrabberName));
    const auto destroy =
        reinterpret_cast<MV_DELETE_GRABBER>(module.FindSymbol(kMvDeleteGrabberName));
    ASSERT_TRUE(create && destroy);
    const int allocations = RefuseEachAllocationBothWays([&] {
        CMivoraGrabber* const made = create(nullptr);
        const bool refused = GrantAllocations();
        EXPECT_TRUE(made || refused);
        destroy(made);
    });
    EXPECT_GT(allocations, 5);
}

TEST_F(GrabberOutOfMemory, InitIsRefusedOrDone) {
    const int allocations = RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE result = grabber.Init();
        const bool isInitialized = grabber.IsInitialized();
        const bool isLoaded = grabber.Api().IsValid();
        const MV_ERRCODE deInitResult = grabber.DeInit();
        const bool refused = GrantAllocations();
        EXPECT_TRUE(result == MV_OK || (refused && result == MV_REFUSED)) << result;
        EXPECT_EQ(isInitialized, result == MV_OK);
        EXPECT_EQ(isLoaded, result == MV_OK);
        EXPECT_EQ(deInitResult, MV_OK);
    });
    EXPECT_GT(allocations, 5);
    EXPECT_EQ(grabber.Init(), MV_OK);
}

TEST_F(GrabberOutOfMemory, ARefreshGivesTheWholeListOrNone) {
    Init();
    const int allocations = RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE result = grabber.RefreshCameraList();
        const uint32_t count = grabber.GetNumCameras();
        uint32_t modes = 0;
        for (CMivoraCamera* camera = grabber.GetFirstCamera(); camera; camera = camera->GetNext()) {
            modes += camera->GetNumGfxModes();
        }
        const bool refused = GrantAllocations();
        EXPECT_EQ(result, MV_OK);
        EXPECT_TRUE(count == 2 || (refused && count == 0)) << count;
        EXPECT_EQ(modes, count);
    });
    EXPECT_GT(allocations, 5);
    EXPECT_EQ(grabber.GetNumCameras(), 2u);
}

TEST_F(GrabberOutOfMemory, ConfigurationIsKeptOrRefused) {
    Init();
    ASSERT_EQ(grabber.SetActCameraIndex(1), MV_OK);
    RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE saved = grabber.SaveGrabberConfig();
        const bool refused = GrantAllocations();
        EXPECT_TRUE(saved == MV_OK || refused) << saved;
    });
    RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE loaded = grabber.LoadGrabberConfig();
        const bool refused = GrantAllocations();
        EXPECT_TRUE(loaded == MV_OK || refused) << loaded;
    });
    ASSERT_EQ(grabber.SetActCameraIndex(-1), MV_OK);
    EXPECT_EQ(grabber.DeInit(), MV_OK);
    Init();
    char id[128];
    grabber.GetIni()->GetText("Grabber_0", "UniqueId", "", id, sizeof id);
    EXPECT_STREQ(id, "the-second-camera-with-a-long-extended-identifier");
}

// What the allocator may not be asked for while it refuses is kept without it.
class ErrorLineSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override {}
    void WriteError(const char* text) override {
        failed = std::strcmp(text, "CMivoraKVNPyxenClass::Init: "
                                   "CMivoraKVNPyxenClass::BuildInternalList failed!") == 0;
    }

    bool failed = false;
};

PxnError ListTwoCamerasAndRefuse(PxnCameraInfo* cameras, std::uint32_t capacity,
                                 std::uint32_t* found, std::uint32_t size) {
    support::RefuseAllocationsAfter(0);
    return ListTwoCameras(cameras, capacity, found, size);
}

// The scripted SDK, with a camera.
class ScriptedOutOfMemory : public ::testing::Test {
protected:
    ScriptedOutOfMemory() {
        sdk.Reset();
        MivoraInstallLogSink(&sink);
        grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
    }
    ~ScriptedOutOfMemory() override { sdk.ClearHooks(); }

    scripted::Sdk& sdk = scripted::GetSdk();
    support::EnvironmentGuard home{"PYXEN_HOME", scripted::Home()};
    ScriptedSleep sleep;
    ErrorLineSink sink;
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
};

TEST_F(ScriptedOutOfMemory, InitTellsThatTheCameraListFailed) {
    sdk.OnCall("PxnVersionQuery", [&] { grabber->Api().PxnCamerasList = ListTwoCamerasAndRefuse; });
    const MV_ERRCODE result = grabber->Init();
    EXPECT_TRUE(GrantAllocations());
    EXPECT_EQ(result, MV_REFUSED);
    EXPECT_TRUE(sink.failed);
    EXPECT_TRUE(grabber->IsInitialized());
    EXPECT_EQ(grabber->GetNumCameras(), 0u);
}

TEST_F(ScriptedOutOfMemory, EventsOfACameraWhoseIdIsLostAreReported) {
    ASSERT_EQ(grabber->Init(), MV_OK);
    int signals = 0;
    grabber->InstCamCfgChangeCallBack([](void* context) { ++*static_cast<int*>(context); },
                                      &signals);
    scripted::Module& system = sdk.Data().system;
    system.Put(scripted::StringFeature("EventCameraDiscoveryCameraID", "another camera's id"));
    system.Put(scripted::EnumFeature("EventCameraDiscoveryType", "Missing", {}));
    ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
    const auto signal = [&] {
        grabber->InvalidationCallback(scripted::SystemHandle(), "EventCameraDiscovery");
        return std::exchange(signals, 0);
    };
    static constexpr char kLongId[] = "an extended identifier too long for a string's own memory";
    grabber->Api().PxnCameraOpen = [](const char*, std::uint32_t, PxnHandle* handle) -> PxnError {
        *handle = scripted::CameraHandle();
        return PxnErrSuccess;
    };
    static_cast<CMivoraCameraKVNPyxen*>(grabber->GetActCamera())->Record().cameraIdExtended =
        kLongId;
    grabber->Api().PxnCameraInfoQueryByHandle = [](PxnHandle, PxnCameraInfo* info,
                                                   std::uint32_t) -> PxnError {
        info->cameraIdExtended = kLongId;
        return PxnErrSuccess;
    };
    support::RefuseAllocationsAfter(0);
    const MV_ERRCODE opened = grabber->OpenActCamera();
    EXPECT_TRUE(GrantAllocations());
    EXPECT_EQ(opened, MV_OK);
    EXPECT_EQ(signal(), 1);
    EXPECT_EQ(grabber->CloseActCamera(), MV_OK);
    EXPECT_EQ(grabber->OpenActCamera(), MV_OK);
    EXPECT_EQ(signal(), 0);
    grabber->InstCamCfgChangeCallBack(nullptr, nullptr);
}

TEST_F(ScriptedOutOfMemory, WithoutItsEventsAGrabberSnapsNothing) {
    ASSERT_EQ(grabber->Init(), MV_OK);
    ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
    ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
    ASSERT_EQ(grabber->PrepareFrameBuffers(1), MV_OK);
    support::RefuseAllocationsAfter(0);
    grabber->InitMembers();
    EXPECT_TRUE(GrantAllocations());
    sdk.ClearCalls();
    for (const uint32_t mode : {0u, 1u, 2u, 3u}) {
        EXPECT_EQ(grabber->Snap(mode), MV_ACQUISITION_FAILED);
        EXPECT_EQ(grabber->GetAcquisitionState(), 0u);
    }
    EXPECT_EQ(sdk.Calls(), std::vector<std::string>{});
    grabber->SetAcquisitionState(1);
    EXPECT_EQ(grabber->StopSnap(), MV_OK);
    grabber->InitMembers();
    EXPECT_EQ(grabber->Snap(1), MV_OK);
}

TEST_F(GrabberOutOfMemory, NodesAndChannelsAreWholeOrNull) {
    RefuseEachAllocationBothWays([&] {
        CMivoraCamera* const camera = grabber.CreateCamera();
        CMivoraGfxMode* const mode = camera ? camera->CreateGfxMode() : nullptr;
        const uint32_t modes = camera ? camera->BuildGfxModeList(&grabber) : 0;
        const bool refused = GrantAllocations();
        EXPECT_TRUE((camera && mode && modes == 1) || refused);
        delete mode;
        delete camera;
    });
    for (const uint32_t type : {0u, 1u}) {
        RefuseEachAllocationBothWays([&] {
            CCmdChannel* const channel = grabber.CreateCmdChannel(type);
            const bool refused = GrantAllocations();
            EXPECT_TRUE(channel || refused) << type;
            grabber.DeleteCmdChannel(channel);
        });
    }
}

TEST_F(GrabberOutOfMemory, VersionTextAndDialogsNeverThrow) {
    Init();
    ASSERT_EQ(grabber.SetActCameraIndex(0), MV_OK);
    RefuseEachAllocationBothWays([&] {
        const char* const version = grabber.GetDriverVersion();
        const MV_ERRCODE control = grabber.CamCntrlDialog(nullptr);
        const MV_ERRCODE finder = grabber.SelectCameraDialog(nullptr, nullptr);
        const MV_ERRCODE config = grabber.GrabberConfigDialog(nullptr, nullptr);
        GrantAllocations();
        EXPECT_NE(version, nullptr);
        EXPECT_EQ(control, MV_REFUSED);
        EXPECT_EQ(finder, MV_REFUSED);
        EXPECT_EQ(config, MV_OK);
    });
}

TEST_F(GrabberOutOfMemory, ATextForWhichThereIsNoMemoryIsOtherError) {
    Init();
    CPyxenAPIAccess& api = grabber.Api();
    api.PxnFeatureStringGet = GetLongText;
    const int allocations = RefuseEachAllocationBothWays([&] {
        std::string text;
        const PxnError result = api.GetFeatureAsText(PXN_SYSTEM_HANDLE, "Any", text);
        const bool refused = GrantAllocations();
        EXPECT_EQ(result, refused ? PxnErrOther : PxnErrSuccess);
        EXPECT_EQ(text.empty(), refused);
    });
    EXPECT_EQ(allocations, 2);
}

} // namespace
