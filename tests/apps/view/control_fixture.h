// control_fixture.h - runs the viewer's control on virtual cameras without a window
#pragma once

#include "apps/common/sdk_control.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "apps/view/camera_control.h"
#include "platform/event.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

/// Two cameras, "Camera A" and "Camera B", of 64 x 48 pixels. The test's thread acts as the
/// window's.
class ControlTest : public testing::Test, private IControlListener {
protected:
    ControlTest();
    ~ControlTest() override;

    /// Writes the SDK's configuration with these cameras.
    void UseCameras(const std::string& cameras);
    static std::string CameraXml(const std::string& id, const std::string& attributes = {});

    /// Creates and runs the control, then waits for the stage.
    void Run(ViewStage stage);
    /// Serves the control until `isSo` returns true; fails the test after a minute.
    void WaitUntil(const std::function<bool()>& isSo);
    void WaitFor(ViewStage stage);
    /// Waits for a picture newer than the current one.
    void WaitForNewPicture();
    /// Waits until all orders given so far have been carried out.
    void WaitForOrders();
    /// Waits for a failure and returns it.
    std::string WaitForFailure();
    void End();
    /// Passes a command to the simulator, which must accept it.
    void Sdk(const std::string& command);

    const support::TemporaryDirectory directory;
    AppOptions options;
    std::optional<FramePipe> pipe;
    std::optional<CameraControl> control;

private:
    void OnControlChanged() override { news.Set(); }

    const support::NoSettling noSettling;
    const support::EnvironmentGuard home;
    SdkControl sdk;
    LinkedMaker maker;
    platform::Event news;
};
