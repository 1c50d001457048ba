// cam_cntrl_dlg_base.h - base class of camera control dialogs
//
// Header-only: it is compiled into the module that derives from it, so that no window object
// crosses the boundary between host and module. Windows only.
#pragma once

#include "mivora/cam_cntrl_dialog.h"

#include <afxwin.h>

/// A modeless dialog that a grabber holds. Its window exists until the object is destroyed and is
/// only shown and hidden. User-interface thread only, except Update and SetAcquisitionMarks.
class CCamCntrlDlgBase : public CDialog, public ICamCntrlDialog {
public:
    /// Brings the dialog to the foreground, restoring it if it is minimised.
    void Show() override {
        AFX_MANAGE_STATE(AfxGetStaticModuleState())
        ShowWindow(::IsIconic(m_hWnd) ? SW_RESTORE : SW_SHOW);
        ::SetForegroundWindow(m_hWnd);
    }
    /// Hides the window; it stays until the object is destroyed.
    void Hide() override {
        AFX_MANAGE_STATE(AfxGetStaticModuleState())
        ShowWindow(SW_HIDE);
    }
    /// True while the window is shown; false without a window.
    bool IsVisible() const override { return m_hWnd && ::IsWindowVisible(m_hWnd); }

protected:
    /// `templateId` is the dialog template in the resources of the deriving module.
    explicit CCamCntrlDlgBase(UINT templateId, CWnd* parent = nullptr)
        : CDialog(templateId, parent) {}

    /// Forwards the commands of push buttons inside child forms to their form, and makes Enter
    /// press the focused push button there; the system looks for it among direct children only.
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
        const HWND control = reinterpret_cast<HWND>(lParam);
        const HWND form = control ? ::GetParent(control) : nullptr;
        // Limited to push buttons: other controls inside forms and views may happen to have the
        // id of OK or Cancel.
        if (form && form != m_hWnd && IsPushButtonInside(control)) {
            return static_cast<BOOL>(::SendMessage(form, WM_COMMAND, wParam, lParam));
        }
        const HWND focus = ::GetFocus();
        if (LOWORD(wParam) == IDOK && focus != control && IsPushButtonInside(focus)) {
            ::SendMessage(focus, BM_CLICK, 0, 0);
            return TRUE;
        }
        return CDialog::OnCommand(wParam, lParam);
    }

private:
    bool IsPushButtonInside(HWND window) const {
        return ::IsChild(m_hWnd, window) && (::SendMessage(window, WM_GETDLGCODE, 0, 0) &
                                             (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON));
    }
};
