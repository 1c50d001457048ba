// script_dialog.h - commands for the camera SDK's control interface
#pragma once

#include "apps/view/camera_control.h"

#include <afxwin.h>

#include <memory>
#include <string>

/// A modeless dialog that passes lines to the simulator and shows its answers. It is hidden, not
/// destroyed, when the user closes it.
class CScriptDialog : public CDialog {
public:
    explicit CScriptDialog(CameraControl& cameraControl) : control(cameraControl) {}

    /// Makes the dialog when it is not there yet, and shows it.
    void Open(CWnd& parent);

protected:
    using CDialog::Create;
    BOOL OnInitDialog() override;
    void OnOK() override { OnRun(); }
    void OnCancel() override { ShowWindow(SW_HIDE); }
    void OnRun();
    LRESULT OnAnswered(WPARAM, LPARAM);
    DECLARE_MESSAGE_MAP()

private:
    /// Outlives the dialog while answers are on their way.
    struct Answers {
        platform::Mutex mutex;
        std::string text GUARDED_BY(mutex);
    };

    CameraControl& control;
    std::shared_ptr<Answers> answers = std::make_shared<Answers>();
};
