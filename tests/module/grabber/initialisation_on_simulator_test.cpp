// initialisation_on_simulator_test.cpp - initialising beside a grabber that is in use
#include "tests/module/simulator_grabber_fixture.h"

namespace {

using InitialisationOnSimulator = SimulatorGrabberFixture;

TEST_F(InitialisationOnSimulator, AFailedOneLeavesTheOpenCameraOfAnotherGrabberAlone) {
    ASSERT_EQ(grabber->Snap(1), MV_OK);
    ExpectMoreFrames();
    Control("fail PxnStartup 1 -30");
    {
        const auto other = MakeGrabber();
        EXPECT_EQ(other->Init(), MV_REFUSED);
        EXPECT_EQ(other->Init(), MV_OK);
        EXPECT_EQ(other->GetNumCameras(), 1u);
    }
    ExpectMoreFrames();
    EXPECT_EQ(grabber->StopSnap(), MV_OK);
    EXPECT_EQ(grabber->CloseActCamera(), MV_OK);
    EXPECT_EQ(grabber->OpenActCamera(), MV_OK);
}

} // namespace
