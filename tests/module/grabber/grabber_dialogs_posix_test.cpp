// grabber_dialogs_posix_test.cpp - requests for windows where there are none
#include "tests/module/grabber_fixture.h"

namespace {

class WithoutWindows : public GrabberFixture {
protected:
    MV_DLG_EXITCODE exitCode = static_cast<MV_DLG_EXITCODE>(77);
};

TEST_F(WithoutWindows, CameraControlIsRefusedWithOneLine) {
    Init();
    EXPECT_EQ(Grabber().CamCntrlDialog(nullptr), MV_REFUSED);
    const Texts lines = Log();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].front(), '0');
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 0u);
}

TEST_F(WithoutWindows, CameraControlChecksTheCameraFirst) {
    EXPECT_EQ(Grabber().CamCntrlDialog(nullptr), MV_NO_CAMERA);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(WithoutWindows, ChoosingACameraIsRefusedWithOneLine) {
    Init();
    EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, &exitCode), MV_REFUSED);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(Log().size(), 1u);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().GetActCameraIndex(), 0);
    EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, nullptr), MV_REFUSED);
}

TEST_F(WithoutWindows, ChoosingACameraNeedsInit) {
    EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, &exitCode), MV_NOT_INITIALISED);
    EXPECT_EQ(exitCode, 77); // as it was
    EXPECT_EQ(Log().size(), 1u);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(WithoutWindows, ConfiguringTheGrabberBehavesAsIfCancelled) {
    EXPECT_EQ(Grabber().GrabberConfigDialog(nullptr, &exitCode), MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(Log().size(), 1u);
    EXPECT_EQ(Grabber().GrabberConfigDialog(nullptr, nullptr), MV_OK);
}

TEST_F(WithoutWindows, EveryRequestWorksWithoutSink) {
    WithoutSink();
    EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, nullptr), MV_NOT_INITIALISED);
    EXPECT_EQ(Grabber().GrabberConfigDialog(nullptr, nullptr), MV_OK);
    Init();
    EXPECT_EQ(Grabber().CamCntrlDialog(nullptr), MV_REFUSED);
    EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, nullptr), MV_REFUSED);
}

} // namespace
