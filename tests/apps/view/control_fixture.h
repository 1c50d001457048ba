// control_fixture.h - the viewer's control at work with virtual cameras and no window
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

/// Two cameras, "Camera A" and "Camera B", of 64 x 48 pixels. The test's thread is the window's.
class ControlTest : public testing::Test, private IControlListener {
protected:
    ControlTest();
    ~ControlTest() override;

    /// Writes the SDK's configuration: these cameras.
    void UseCameras(const std::string& cameras);
    static std::string CameraXml(const std::string& id, const std::string& attributes = {});

    /// Makes the control, runs it and waits for the stage.
    void Run(ViewStage stage);
    /// Serves the control until `isSo` answers true; fails the test after a minute.
    void WaitUntil(const std::function<bool()>& isSo);
    void WaitFor(ViewStage stage);
    /// Waits until a picture came that was not there before.
    void WaitForNewPicture();
    /// Waits until all orders so far have been carried out.
    void WaitForOrders();
    /// Waits for what went wrong, and returns it.
    std::string WaitForFailure();
    void End();
    /// Passes a line, which must be accepted, to the simulator.
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
