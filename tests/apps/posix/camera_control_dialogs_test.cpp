// Where there are no windows the grabber's dialogs answer 4, or as if they were cancelled: enough
// to see that what waits for the window's thread runs there and what follows.
#include "mivora/grabber.h"
#include "tests/apps/view/control_fixture.h"

namespace {

class ViewDialogs : public ControlTest {};

TEST_F(ViewDialogs, TellThatTheyCannotBeShown) {
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
