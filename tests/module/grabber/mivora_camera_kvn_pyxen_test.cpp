// mivora_camera_kvn_pyxen_test.cpp - a camera of this module in the host's list
#include "grabber/mivora_camera_kvn_pyxen.h"

#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "tests/module/grabber_fixture.h"

#include <cstring>

using namespace pyxen;

namespace {

using CameraNode = GrabberFixture;

TEST_F(CameraNode, BeginsWithAnEmptyRecordAndTheFeatureControlDialog) {
    CMivoraCameraKVNPyxen node;
    const PxnCameraInfo empty{};
    EXPECT_EQ(std::memcmp(&node.Record(), &empty, sizeof empty), 0);
    EXPECT_EQ(node.GetCameraRecord(), &node.Record());
    EXPECT_EQ(node.GetCamCntrlDlgIndex(), 2u);
    EXPECT_STREQ(node.GetExtraDescription(), "");
    EXPECT_EQ(node.GetNumGfxModes(), 0u);
}

TEST_F(CameraNode, MakesModesWithoutGrabber) {
    CMivoraCameraKVNPyxen node;
    const std::unique_ptr<CMivoraGfxMode> mode(node.CreateGfxMode());
    ASSERT_NE(dynamic_cast<CMivoraGfxModeKVNPyxen*>(mode.get()), nullptr);
    EXPECT_EQ(mode->GetxRes(), 0u);
    EXPECT_EQ(node.GetNumGfxModes(), 0u);
}

TEST_F(CameraNode, BuildsOneModeBoundToTheGrabber) {
    Open();
    CMivoraCameraKVNPyxen node;
    EXPECT_EQ(node.BuildGfxModeList(&Grabber()), 1u);
    ASSERT_EQ(node.GetNumGfxModes(), 1u);
    CMivoraGfxMode* const mode = node.GetFirstGfxMode();
    ASSERT_NE(dynamic_cast<CMivoraGfxModeKVNPyxen*>(mode), nullptr);
    EXPECT_EQ(mode->GetxRes(), 640u);
    EXPECT_EQ(node.GetActGfxMode(), mode);
    EXPECT_EQ(node.BuildGfxModeList(&Grabber()), 1u);
    EXPECT_EQ(node.GetFirstGfxMode(), mode);
}

TEST_F(CameraNode, KeepsTheModesItHas) {
    CMivoraCameraKVNPyxen node;
    for (unsigned count = 0; count < 3; ++count) {
        node.AddGfxMode(node.CreateGfxMode());
    }
    EXPECT_EQ(node.BuildGfxModeList(&Grabber()), 3u);
    EXPECT_EQ(node.GetNumGfxModes(), 3u);
}

TEST_F(CameraNode, WithoutGrabberItsModeAnswersNothing) {
    CMivoraCameraKVNPyxen node;
    EXPECT_EQ(node.BuildGfxModeList(nullptr), 1u);
    EXPECT_EQ(node.GetFirstGfxMode()->GetyRes(), 0u);
}

} // namespace
