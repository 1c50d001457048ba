// camera_list_test.cpp - the cameras as the host sees them
#include "grabber/camera_list.h"

#include "grabber/camera_identity.h"
#include "grabber/camera_key.h"
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "tests/module/grabber_fixture.h"

using namespace pyxen;

namespace {

void KeepMask(uint32_t mask, void* context) {
    static_cast<std::vector<uint32_t>*>(context)->push_back(mask);
}

class CameraList : public GrabberFixture {
protected:
    void SetUp() override {
        GrabberFixture::SetUp();
        MakeCameras({"one", "two", "three"});
    }
    void MakeCameras(const Texts& extendedIds) {
        auto& cameras = sdk.Data().cameras;
        const scripted::Camera pattern = cameras.empty() ? firstPattern : cameras[0];
        firstPattern = pattern;
        cameras.assign(extendedIds.size(), pattern);
        for (std::size_t index = 0; index < extendedIds.size(); ++index) {
            cameras[index].id = "plain-" + extendedIds[index];
            cameras[index].extendedId = extendedIds[index];
            cameras[index].name = "Name " + extendedIds[index];
            cameras[index].modelName = "Model " + extendedIds[index];
        }
    }
    void Remember(const std::string& id) {
        WriteIni("[Grabber_0]\nUniqueId=" + id + "\n");
        ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    }
    Texts Names() {
        Texts names;
        for (CMivoraCamera* node = Grabber().GetFirstCamera(); node; node = node->GetNext()) {
            names.push_back(node->GetCameraName());
        }
        return names;
    }

    scripted::Camera firstPattern;
};

TEST_F(CameraList, HoldsEveryCameraInTheSdksOrder) {
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Names(), (Texts{"Model one", "Model two", "Model three"}));
    EXPECT_EQ(Grabber().GetNumCameras(), 3u);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
    EXPECT_EQ(Grabber().GetFirstCamera()->GetPrev(), nullptr);
    CMivoraCamera* previous = nullptr;
    std::size_t index = 0;
    for (CMivoraCamera* node = Grabber().GetFirstCamera(); node; node = node->GetNext()) {
        const std::string& id = sdk.Data().cameras[index].extendedId;
        EXPECT_EQ(node->GetPrev(), previous);
        EXPECT_EQ(node->GetCameraUniqueID(), CameraKey(id.c_str()));
        EXPECT_EQ(node->GetCameraSectionNum(), -1);
        EXPECT_EQ(node->GetCamCntrlDlgIndex(), 2u);
        EXPECT_EQ(node->GetNumGfxModes(), 1u);
        const auto& record = *static_cast<PxnCameraInfo*>(node->GetCameraRecord());
        EXPECT_EQ(record.cameraIdExtended, id);
        EXPECT_EQ(record.cameraIdString, "plain-" + id);
        previous = node;
        ++index;
    }
    EXPECT_EQ(Grabber().GetLastCamera(), previous);
}

TEST_F(CameraList, WithoutCameraIsEmpty) {
    MakeCameras({});
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetFirstCamera(), nullptr);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(CameraList, CutsLongNamesAt255Bytes) {
    sdk.Data().cameras[0].modelName = std::string(256, 'm');
    sdk.Data().cameras[1].modelName = std::string(255, 'n');
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Names()[0], std::string(255, 'm'));
    EXPECT_EQ(Names()[1], std::string(255, 'n'));
}

TEST_F(CameraList, MakesTheRememberedCameraActive) {
    Remember("two");
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 1);
}

TEST_F(CameraList, LeavesNoCameraActiveWhenTheRememberedOneIsAbsent) {
    Remember("four");
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(CameraList, OfEqualKeysTheLaterCameraBecomesActive) {
    MakeCameras({"l5dmvs", "other", "pz8lbs", "last"});
    Remember("l5dmvs");
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 2);
}

TEST_F(CameraList, WithoutRememberedCameraTheOneWithoutIdentifierBecomesActive) {
    MakeCameras({"one", "", "three"});
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 1);
}

TEST_F(CameraList, RefreshIsRefusedBeforeInit) {
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_NOT_INITIALISED);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(CameraList, RefreshFollowsTheCamerasAndKeepsTheActiveOne) {
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(2), MV_OK);
    std::vector<uint32_t> masks;
    Grabber().InstDialogUpdateCallBack(KeepMask, &masks);
    MakeCameras({"zero", "three", "one"});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Names(), (Texts{"Model zero", "Model three", "Model one"}));
    EXPECT_EQ(Grabber().GetActCameraIndex(), 1);
    EXPECT_EQ(masks, std::vector<uint32_t>{0xFFFFFFFF});
    EXPECT_EQ(Calls(), Texts{"PxnCamerasList(array, 100, 80)"});
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::CloseActCamera"});
}

TEST_F(CameraList, RefreshTellsTheDialogsWhenTheActiveCameraIsKnown) {
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(2), MV_OK);
    struct Dialogs {
        CMivoraGrabber& grabber;
        std::vector<int32_t> active;
    } dialogs{Grabber(), {}};
    Grabber().InstDialogUpdateCallBack(
        [](uint32_t, void* context) {
            auto& told = *static_cast<Dialogs*>(context);
            told.active.push_back(told.grabber.GetActCameraIndex());
        },
        &dialogs);
    MakeCameras({"zero", "three", "one"});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(dialogs.active, std::vector<int32_t>{1});
    Grabber().InstDialogUpdateCallBack(nullptr, nullptr);
}

TEST_F(CameraList, TheSdksListIsReadBeforeTheActiveCameraIsRemembered) {
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().CreateCamera());
    node->Record().cameraIdExtended = "two";
    Grabber().SetFirstCamera(node);
    ASSERT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
    sdk.OnCall("PxnCamerasList", [&] { node->Record().cameraIdExtended = "three"; });
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 2);
}

TEST_F(CameraList, InitTakesThePlaceOfAListThatTheHostMadeAndKeepsItsCamera) {
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().CreateCamera());
    node->Record().cameraIdExtended = "two";
    Grabber().SetFirstCamera(node);
    ASSERT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Names(), (Texts{"Model one", "Model two", "Model three"}));
    EXPECT_EQ(Grabber().GetActCameraIndex(), 1);
}

TEST_F(CameraList, RefreshRemembersTheCameraThatWasRememberedBefore) {
    Remember("two");
    ASSERT_EQ(Grabber().Init(), MV_OK);
    ASSERT_EQ(Grabber().SetActCameraIndex(2), MV_OK);
    ASSERT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 2);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 1);
}

TEST_F(CameraList, RefreshClosesTheOpenCamera) {
    Open();
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose", "PxnCamerasList"}),
              (Texts{"PxnCameraClose(camera0)", "PxnCamerasList(array, 100, 80)"}));
    EXPECT_EQ(Grabber().GetActCameraIndex(), 0);
}

TEST_F(CameraList, RefreshLeavesNoCameraActiveWhenItsCameraIsGone) {
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(1), MV_OK);
    MakeCameras({"one", "three"});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(CameraList, RefreshLeavesNoCameraActiveWhenThereWasNone) {
    Remember("two");
    MakeCameras({"one"});
    ASSERT_EQ(Grabber().Init(), MV_OK);
    ASSERT_EQ(Grabber().GetActCameraIndex(), -1);
    MakeCameras({"one", "two"});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(CameraList, AFailedRefreshIsAnEmptyList) {
    Init();
    sdk.Fail("PxnCamerasList", PxnErrIO);
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(Grabber().GetNumCameras(), 0u);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
}

TEST_F(CameraList, TheNextInitBeginsWithTheCameraThatWasRemembered) {
    Remember("two");
    ASSERT_EQ(Grabber().Init(), MV_OK);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    MakeCameras({"two", "one"});
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), 0);
}

// ---- the nodes alone ----

class CameraNodesTest : public ::testing::Test {
protected:
    ~CameraNodesTest() override {
        while (nodes.first) {
            CMivoraCamera* const next = nodes.first->GetNext();
            delete nodes.first;
            nodes.first = next;
        }
    }
    static PxnCameraInfo Record(const char* id, const char* name) {
        PxnCameraInfo record{};
        record.cameraIdExtended = id;
        record.modelName = name;
        return record;
    }

    CameraIdentity identity;
    CameraNodes nodes;
};

TEST_F(CameraNodesTest, AreMadeInOrderWithoutModes) {
    const PxnCameraInfo records[] = {Record("a", "First"), Record("b", nullptr)};
    ASSERT_TRUE(MakeCameraNodes(records, 2, identity, nodes));
    const auto* const first = static_cast<CMivoraCameraKVNPyxen*>(nodes.first);
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(first->GetCameraName(), "First");
    EXPECT_EQ(first->GetCameraUniqueID(), CameraKey("a"));
    EXPECT_EQ(first->GetCameraSectionNum(), -1);
    EXPECT_EQ(first->GetNumGfxModes(), 0u);
    EXPECT_EQ(first->GetPrev(), nullptr);
    const CMivoraCamera* const second = first->GetNext();
    ASSERT_NE(second, nullptr);
    EXPECT_STREQ(second->GetCameraName(), "");
    EXPECT_EQ(second->GetPrev(), first);
    EXPECT_EQ(second->GetNext(), nullptr);
    EXPECT_EQ(nodes.chosen, -1);
}

TEST_F(CameraNodesTest, TellWhichIsTheChosenCameraTheLastOfEqualOnes) {
    const PxnCameraInfo records[] = {Record("a", ""), Record("b", ""), Record("b", ""),
                                     Record("c", "")};
    ASSERT_TRUE(identity.Select("b"));
    ASSERT_TRUE(MakeCameraNodes(records, 4, identity, nodes));
    EXPECT_EQ(nodes.chosen, 2);
}

TEST_F(CameraNodesTest, AreNoneWithoutCameras) {
    ASSERT_TRUE(MakeCameraNodes(nullptr, 0, identity, nodes));
    EXPECT_EQ(nodes.first, nullptr);
    EXPECT_EQ(nodes.chosen, -1);
}

} // namespace
