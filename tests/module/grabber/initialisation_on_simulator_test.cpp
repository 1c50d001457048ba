// initialisation_on_simulator_test.cpp - initialising beside a grabber that is in use
#include "tests/module/simulator_grabber_fixture.h"

namespace {

class InitialisationOnSimulator : public SimulatorGrabberFixture {
protected:
    /// Runs a command of the simulator's control interface.
    void Control(const char* command) {
        using Function = std::int32_t (*)(const char*, char*, std::uint32_t);
        const auto control = reinterpret_cast<Function>(grabber->Api().FindExport("PxnControl"));
        ASSERT_TRUE(control);
        ASSERT_EQ(control(command, nullptr, 0), 0) << command;
    }
};

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
