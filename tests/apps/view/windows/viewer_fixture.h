// viewer_fixture.h - runs the viewer on virtual cameras
#pragma once

#include "apps/common/module_maker.h"
#include "apps/common/sdk_control.h"
#include "apps/view/windows/viewer_window.h"
#include "tests/support/environment_guard.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

/// Four cameras: "Mono", "Bayer", "Yuv" and "Twelve", each of 320 x 240 pixels.
class ViewerTest : public ::testing::Test {
protected:
    ViewerTest();
    ~ViewerTest() override;

    /// Opens the window with a camera and waits for live images.
    void OpenLive(const std::string& camera);
    /// Handles messages until `done` returns true; fails the test after a minute.
    void PumpUntil(const std::function<bool()>& done);
    /// Chooses a menu item and handles the pending messages.
    void Choose(UINT command);
    void WaitForStatus(ViewerStatus part, const std::wstring& text);
    /// Stops live images and waits until the last picture is on the screen.
    void StopLive();
    /// The newest picture.
    const ShownFrame& Shown() { return *window.ImageView().Shown(); }
    std::string TemporaryFile(const std::string& name) const;
    void Close();

    AppOptions options;
    ModuleMaker modules;
    CViewerWindow window;
    SdkControl sdk;

private:
    void Pump();

    const AFX_MAINTAIN_STATE2 entered{AfxGetStaticModuleState()};
    const support::EnvironmentGuard home{"PYXEN_HOME"};
    const support::TemporaryDirectory directory;
};

/// Waits on its own thread for a dialog or message box of this program, acts on it and waits until
/// it is closed. The thread that shows the dialog is busy meanwhile.
class DialogDriver {
public:
    using Action = std::function<void(HWND dialog)>;

    DialogDriver(const std::wstring& dialogCaption, Action dialogAction);
    /// Waits for the end of all that; fails the test if no dialog appeared within a minute.
    ~DialogDriver();
    bool IsDone() const { return isDone.load(); }

    /// An action that presses a button of the dialog.
    static Action Press(int button);

private:
    void Run();

    const std::wstring caption;
    const Action action;
    std::atomic<bool> isDone{false};
    std::thread thread;
};

/// A window's text.
std::wstring TextOf(HWND window);
/// The text of a message box.
std::wstring BoxText(HWND box);
