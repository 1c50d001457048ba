// camera_control_posix_test.cpp - tests of the viewer's control with dialogs that cannot be shown
//
// Without windows the grabber's dialogs return 4 or behave as if cancelled. That suffices to test
// that jobs run on the window's thread, and what follows.
#include "mivora/grabber.h"
#include "tests/apps/view/control_fixture.h"

namespace {

class ViewDialogs : public ControlTest {};

TEST_F(ViewDialogs, ReportThatTheyCannotBeShown) {
    Run(ViewStage::kLive);
    control->ShowCameraControl(nullptr);
    EXPECT_EQ(WaitForFailure().find("CamCntrlDialog failed with 4"), 0u);
    EXPECT_EQ(control->State().stage, ViewStage::kLive);
}

TEST_F(ViewDialogs, LeaveTheCameraLiveWhenAnotherCannotBeChosen) {
    Run(ViewStage::kLive);
    control->SelectCamera(nullptr);
    EXPECT_EQ(WaitForFailure().find("SelectCameraDialog failed with 4"), 0u);
    WaitFor(ViewStage::kLive);
    WaitForNewPicture();
    EXPECT_EQ(control->State().camera, "Camera A");
}

TEST_F(ViewDialogs, AreNoFailureWhenTheyAreCancelled) {
    Run(ViewStage::kLive);
    control->ConfigureGrabber(nullptr);
    control->ConfigureChannel(nullptr);
    control->ConfigureChannel(nullptr);
    WaitForOrders();
    EXPECT_TRUE(control->TakeFailures().empty());
    EXPECT_EQ(control->Grabber().GetNumCmdChannels(), 1u) << "one is made, the first time";
}

} // namespace
