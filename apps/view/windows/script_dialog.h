// script_dialog.h - commands for the camera SDK's control interface
#pragma once

#include "apps/view/camera_control.h"

#include <afxwin.h>

#include <memory>
#include <string>

/// A modeless dialog that passes commands to the SDK's control interface and shows the responses.
/// Closing it only hides it.
class CScriptDialog : public CDialog {
public:
    explicit CScriptDialog(CameraControl& cameraControl) : control(cameraControl) {}

    /// Shows the dialog, creating it first if necessary.
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
    /// Shared with pending orders, which may outlive the dialog.
    struct Answers {
        platform::Mutex mutex;
        std::string text GUARDED_BY(mutex);
    };

    CameraControl& control;
    std::shared_ptr<Answers> answers = std::make_shared<Answers>();
};
