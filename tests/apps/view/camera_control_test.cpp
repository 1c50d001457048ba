// camera_control_test.cpp - tests of the viewer's control of the grabber
#include "mivora/grabber.h"
#include "tests/apps/view/control_fixture.h"

#include "platform/file_system.h"

#include <atomic>

namespace {

class ViewControl : public ControlTest {
protected:
    bool IsAcquiring() { return control->Grabber().GetAcquisitionState() != 0; }
    std::uint32_t Signal(std::uint32_t code) {
        return control->Grabber().SignalCamCntrlDlgEvent(code);
    }
};

TEST_F(ViewControl, ShowsTheFirstCameraLive) {
    Run(ViewStage::kLive);
    WaitForNewPicture();
    WaitForNewPicture();
    const ViewState state = control->State();
    EXPECT_EQ(state.camera, "Camera A");
    EXPECT_EQ(state.layout.width, 64u);
    EXPECT_EQ(state.layout.height, 48u);
    EXPECT_EQ(state.driver.find("Mivora grabber library for Korvane Pyxen compatible cameras\n"),
              0u);
    EXPECT_GT(pipe->Frames(), 0u);
    EXPECT_EQ(pipe->Newest()->frame->layout, state.layout);
    EXPECT_EQ(control->ReceiveErrors(), 0u);
    EXPECT_TRUE(control->TakeFailures().empty());
}

TEST_F(ViewControl, ShowsTheCameraThatIsWanted) {
    options.cameras = {"Camera B"};
    Run(ViewStage::kLive);
    EXPECT_EQ(control->State().camera, "Camera B");
}

TEST_F(ViewControl, ShowsTheCameraThatIsRemembered) {
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    Run(ViewStage::kLive);
    EXPECT_EQ(control->State().camera, "Camera B");
}

TEST_F(ViewControl, StopsAndStarts) {
    Run(ViewStage::kLive);
    control->Stop();
    WaitFor(ViewStage::kOpen);
    EXPECT_FALSE(IsAcquiring());
    control->Start();
    WaitFor(ViewStage::kLive);
    WaitForNewPicture();
    control->Start(); // has no effect
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kLive);
    EXPECT_TRUE(control->TakeFailures().empty());
}

TEST_F(ViewControl, SnapsOneImageAndStaysStopped) {
    Run(ViewStage::kLive);
    control->Snap();
    WaitFor(ViewStage::kSnapping);
    WaitFor(ViewStage::kOpen);
    EXPECT_EQ(pipe->Frames(), 1u);
    EXPECT_FALSE(IsAcquiring());
}

TEST_F(ViewControl, GoesOnLiveAfterASnapThatGetsNoImage) {
    Run(ViewStage::kLive);
    Sdk("frame-random 1 100 drop");
    control->Snap();
    WaitFor(ViewStage::kSnapping);
    control->Start();
    WaitFor(ViewStage::kLive);
    Sdk("clear");
    WaitForNewPicture();
}

TEST_F(ViewControl, CountsFramesInError) {
    Run(ViewStage::kLive);
    Sdk("frame-random 1 50 incomplete");
    WaitUntil([this] { return control->ReceiveErrors() > 1; });
}

TEST_F(ViewControl, WaitsForItsCameraAndGoesOn) {
    options.cameras = {"Camera B"};
    Run(ViewStage::kLive);
    Sdk("unplug B");
    control->CamerasChanged();
    WaitFor(ViewStage::kWaiting);
    EXPECT_EQ(control->State().camera, "Camera B") << "not another one";
    Sdk("plug B");
    control->CamerasChanged();
    WaitFor(ViewStage::kLive);
    EXPECT_EQ(control->State().camera, "Camera B");
    WaitForNewPicture();
    EXPECT_TRUE(control->TakeFailures().empty()) << "a camera that is away is no failure";
}

TEST_F(ViewControl, StaysStoppedWhenItsCameraComesBack) {
    Run(ViewStage::kLive);
    control->Stop();
    WaitFor(ViewStage::kOpen);
    Sdk("unplug A");
    control->CamerasChanged();
    WaitFor(ViewStage::kWaiting);
    Sdk("plug A");
    control->CamerasChanged();
    WaitFor(ViewStage::kOpen);
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kOpen);
}

TEST_F(ViewControl, FindsACameraWithoutANotification) {
    UseCameras(CameraXml("A", "plugged=\"false\""));
    Run(ViewStage::kNoCamera);
    control->Start();
    control->Snap();
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kNoCamera);
    control->Start();
    Sdk("plug A");
    WaitFor(ViewStage::kLive);
}

TEST_F(ViewControl, ReportsThatTheRequestedCameraIsMissingAndWaitsForIt) {
    UseCameras(CameraXml("A") + CameraXml("B", "plugged=\"false\""));
    options.cameras = {"Camera B"};
    Run(ViewStage::kNoCamera);
    EXPECT_EQ(WaitForFailure().find("there is no camera \"Camera B\"; there are\n  camera 0"), 0u);
    Sdk("plug B");
    control->CamerasChanged();
    WaitFor(ViewStage::kLive);
    EXPECT_EQ(control->State().camera, "Camera B");
}

TEST_F(ViewControl, ReportsThatTheGrabberCannotBeUsed) {
    options.sdk = directory.PathOf("nowhere");
    Run(ViewStage::kFailed);
    EXPECT_EQ(WaitForFailure().find("Init failed with 4"), 0u);
    control->Start();
    control->CamerasChanged();
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kFailed);
}

TEST_F(ViewControl, StopsForAChangeOfTheBuffersAndGoesOnWithTheNewSize) {
    Run(ViewStage::kLive);
    EXPECT_EQ(Signal(kMvEventBufferImpactBegins), 1u);
    EXPECT_FALSE(IsAcquiring()) << "the change comes as soon as the signal has returned";
    Sdk("set A Width 32");
    EXPECT_EQ(Signal(kMvEventBufferImpactEnded), 1u);
    WaitUntil([this] {
        const auto shown = pipe->Newest();
        return shown && shown->image.width == 32;
    });
    EXPECT_EQ(control->State().stage, ViewStage::kLive);
    EXPECT_EQ(control->State().layout.width, 32u);
}

TEST_F(ViewControl, DoesNotGoOnAfterAChangeWhenItWasStoppedMeanwhile) {
    Run(ViewStage::kLive);
    Signal(kMvEventBufferImpactBegins);
    control->Stop();
    Signal(kMvEventBufferImpactEnded);
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kOpen);
    Signal(kMvEventBufferImpactBegins);
    Signal(kMvEventBufferImpactEnded);
    WaitForOrders();
    EXPECT_EQ(control->State().stage, ViewStage::kOpen) << "nothing was to be paused";
}

TEST_F(ViewControl, TakesOneChangeOfTheBuffersAfterAnother) {
    Run(ViewStage::kLive);
    for (int width = 16; width <= 64; width += 4) {
        Signal(kMvEventBufferImpactBegins);
        ASSERT_FALSE(IsAcquiring());
        Sdk("set A Width " + std::to_string(width));
        Signal(kMvEventBufferImpactEnded);
        WaitFor(ViewStage::kLive);
    }
    WaitUntil([this] {
        const auto shown = pipe->Newest();
        return shown && shown->image.width == 64 && control->State().stage == ViewStage::kLive;
    });
    EXPECT_TRUE(control->TakeFailures().empty());
}

TEST_F(ViewControl, PassesScriptsOnUntilALineFails) {
    Run(ViewStage::kLive);
    std::string answers;
    std::atomic<bool> isDone{false};
    control->RunScript("# a comment\n drain \nfly\nclear\n", [&](const std::string& text) {
        answers = text;
        isDone = true;
    });
    WaitUntil([&] { return isDone.load(); });
    EXPECT_EQ(answers, "drain\n  0 ok\nfly\n  -7 no command \"fly\"; try help\n");
}

TEST_F(ViewControl, SavesTheImageThatIsShown) {
    Run(ViewStage::kLive);
    WaitForNewPicture();
    const auto frame = pipe->Newest()->frame;
    control->SaveImage(frame, directory.PathOf("image.raw"));
    WaitForOrders();
    EXPECT_EQ(directory.Read("image.raw"), std::string(frame->bytes.begin(), frame->bytes.end()));
    const std::string nowhere = directory.PathOf("nowhere/image.raw");
    control->SaveImage(frame, nowhere);
    EXPECT_EQ(WaitForFailure().find("cannot write " + nowhere + ": "), 0u);
}

TEST_F(ViewControl, SavesTheConfiguration) {
    Run(ViewStage::kLive);
    control->SaveConfiguration();
    WaitForOrders();
    EXPECT_NE(directory.Read("host.ini").find("UniqueId=Eth0|A\n"), std::string::npos);
    EXPECT_TRUE(control->TakeFailures().empty());
}

TEST_F(ViewControl, ReportsThatThereIsNoFileForTheConfiguration) {
    options.configFile.clear();
    Run(ViewStage::kLive); // with the simulator's default cameras
    control->SaveConfiguration();
    EXPECT_NE(WaitForFailure().find("for no file was given with --config"), std::string::npos);
}

TEST_F(ViewControl, EndsInEveryStage) {
    Run(ViewStage::kLive);
    End();
    Run(ViewStage::kLive);
    control->Stop();
    WaitFor(ViewStage::kOpen);
    End();
    Run(ViewStage::kLive);
    Sdk("unplug A");
    control->CamerasChanged();
    WaitFor(ViewStage::kWaiting);
    End();
    Run(ViewStage::kLive);
    Signal(kMvEventBufferImpactBegins);
    End();
}

} // namespace
