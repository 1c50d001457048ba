// grabber_test.cpp - initialisation, driver texts and camera list of a grabber
#include "tests/host/test_grabber.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

class ThreeCameras : public testing::Test {
protected:
    ThreeCameras() { grabber.MakeCameras({11, 22, 33}); }

    TestGrabber grabber;
};

TEST(CameraList, IsEmptyAtFirst) {
    TestGrabber grabber;
    EXPECT_EQ(grabber.GetNumCameras(), 0u);
    EXPECT_EQ(grabber.GetActCameraIndex(), -1);
    EXPECT_EQ(grabber.GetFirstCamera(), nullptr);
    EXPECT_EQ(grabber.GetLastCamera(), nullptr);
    EXPECT_EQ(grabber.GetActCamera(), nullptr);
    EXPECT_EQ(grabber.GetCamera(0), nullptr);
    EXPECT_EQ(grabber.GetCameraIndexByCameraUniqueID(0), -1);
    EXPECT_EQ(grabber.GetCameraIndexByQZRCameraID(0), -1);
}

TEST_F(ThreeCameras, AreFoundByIndex) {
    EXPECT_EQ(grabber.GetNumCameras(), 3u);
    EXPECT_EQ(grabber.GetFirstCamera()->GetCameraUniqueID(), 11u);
    EXPECT_EQ(grabber.GetFirstCamera()->GetPrev(), nullptr);
    EXPECT_EQ(grabber.GetCamera(1)->GetCameraUniqueID(), 22u);
    EXPECT_EQ(grabber.GetLastCamera(), grabber.GetCamera(2));
    EXPECT_EQ(grabber.GetCamera(3), nullptr);
    EXPECT_EQ(grabber.GetCamera(-1), nullptr);
}

TEST_F(ThreeCameras, AreFoundByTheirIds) {
    grabber.GetCamera(2)->SetQZRCameraID(7);
    EXPECT_EQ(grabber.GetCameraIndexByCameraUniqueID(22), 1);
    EXPECT_EQ(grabber.GetCameraIndexByCameraUniqueID(44), -1);
    EXPECT_EQ(grabber.GetCameraIndexByQZRCameraID(7), 2);
    EXPECT_EQ(grabber.GetCameraIndexByQZRCameraID(8), -1);
    // The first two have the number 0, which stands for none.
    EXPECT_EQ(grabber.GetCameraIndexByQZRCameraID(0), -1);
}

TEST_F(ThreeCameras, BecomeActiveByIndex) {
    EXPECT_EQ(grabber.SetActCameraIndex(2), MV_OK);
    EXPECT_EQ(grabber.GetActCameraIndex(), 2);
    EXPECT_EQ(grabber.GetActCamera(), grabber.GetCamera(2));
    EXPECT_EQ(grabber.SetActCameraIndex(-1), MV_OK);
    EXPECT_EQ(grabber.GetActCamera(), nullptr);
}

TEST_F(ThreeCameras, KeepTheActiveOneForABadIndex) {
    grabber.StoreActCameraIndex(1);
    EXPECT_EQ(grabber.SetActCameraIndex(3), MV_NO_CAMERA);
    EXPECT_EQ(grabber.SetActCameraIndex(-2), MV_NO_CAMERA);
    EXPECT_EQ(grabber.GetActCameraIndex(), 1);
}

TEST_F(ThreeCameras, CannotChangeWhileAnAcquisitionRuns) {
    grabber.StoreActCameraIndex(0);
    grabber.state = 1;
    EXPECT_EQ(grabber.SetActCameraIndex(1), MV_BUSY);
    EXPECT_EQ(grabber.GetActCameraIndex(), 0);
}

TEST_F(ThreeCameras, AreClosedWhenAnotherBecomesActive) {
    grabber.StoreActCameraIndex(0);
    grabber.open = 1;
    EXPECT_EQ(grabber.SetActCameraIndex(0), MV_OK);
    EXPECT_EQ(grabber.closes, 0);
    EXPECT_EQ(grabber.SetActCameraIndex(1), MV_OK);
    EXPECT_EQ(grabber.closes, 1);
    EXPECT_EQ(grabber.IsCameraOpen(), 0u);
    EXPECT_EQ(grabber.SetActCameraIndex(2), MV_OK);
    EXPECT_EQ(grabber.closes, 1);
}

TEST_F(ThreeCameras, StayActiveWhenClosingFails) {
    grabber.StoreActCameraIndex(0);
    grabber.open = 1;
    grabber.closeResult = MV_REFUSED;
    EXPECT_EQ(grabber.SetActCameraIndex(1), MV_REFUSED);
    EXPECT_EQ(grabber.GetActCameraIndex(), 0);
}

TEST_F(ThreeCameras, AreDeletedWithTheList) {
    grabber.StoreActCameraIndex(1);
    EXPECT_EQ(grabber.DeleteInternalList(), MV_OK);
    EXPECT_EQ(grabber.GetNumCameras(), 0u);
    EXPECT_EQ(grabber.GetActCameraIndex(), -1);
}

TEST_F(ThreeCameras, AreClosedOnlyWhenOpen) {
    EXPECT_EQ(grabber.CloseActCamera(), MV_CAMERA_NOT_OPEN);
    grabber.OpenActCamera();
    EXPECT_EQ(grabber.CloseActCamera(), MV_OK);
    EXPECT_EQ(grabber.IsCameraOpen(), 0u);
}

TEST_F(ThreeCameras, KeepTheirModeInTheModeDialog) {
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    EXPECT_EQ(grabber.SelectModeDialog(nullptr, &exit), MV_NO_CAMERA);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
    grabber.StoreActCameraIndex(0);
    EXPECT_EQ(grabber.SelectModeDialog(nullptr, &exit), MV_OK);
    EXPECT_EQ(exit, MV_DLG_OK);
    EXPECT_EQ(grabber.SelectModeDialog(nullptr, nullptr), MV_OK);
    grabber.GetActCamera()->DeleteGfxModes();
    EXPECT_EQ(grabber.SelectModeDialog(nullptr, &exit), MV_NO_VIDEO_MODE);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
}

TEST(Grabber, InitialisesOnceAndAgainAfterDeInit) {
    TestGrabber grabber;
    EXPECT_EQ(grabber.DeInit(), MV_NOT_INITIALISED);
    EXPECT_EQ(grabber.Init(), MV_OK);
    EXPECT_EQ(grabber.Init(), MV_ALREADY_INITIALISED);
    grabber.MakeCameras({1});
    grabber.PrepareFrameBuffers(1);
    grabber.DoPostProcess(0, 0);
    EXPECT_EQ(grabber.DeInit(), MV_OK);
    EXPECT_EQ(grabber.GetNumCameras(), 0u);
    std::uint64_t index = 0;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_NO_FILLED_BUFFER);
    EXPECT_EQ(grabber.Init(), MV_OK);
}

TEST(Grabber, KeepsAtMost255BytesOfItsTexts) {
    TestGrabber grabber;
    EXPECT_STREQ(grabber.GetDriverDesc(), "");
    const std::string text(300, 't');
    grabber.SetDriverDesc(text.c_str());
    grabber.SetDriverName("name");
    grabber.SetDriverVersion("version");
    EXPECT_EQ(grabber.GetDriverDesc(), text.substr(0, 255));
    EXPECT_STREQ(grabber.GetDriverName(), "name");
    EXPECT_STREQ(grabber.GetDriverVersion(), "version");
    grabber.SetDriverName(nullptr);
    EXPECT_STREQ(grabber.GetDriverName(), "");
}

TEST(Grabber, KnowsItsModule) {
    int instance = 0;
    TestGrabber grabber(&instance);
    EXPECT_EQ(grabber.GetModuleInstance(), &instance);
}

} // namespace
