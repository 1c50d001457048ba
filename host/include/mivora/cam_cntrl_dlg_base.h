// cam_cntrl_dlg_base.h - the base of camera control dialogs
//
// All of it stands here and is compiled into the module that derives from it, so that no window
// object crosses the border between host and module. Windows only.
#pragma once

#include "mivora/cam_cntrl_dialog.h"

#include <afxwin.h>

/// A modeless dialog that a grabber holds. It is hidden and shown, and destroyed with the object.
/// User-interface thread only, but for Update and SetAcquisitionMarks.
class CCamCntrlDlgBase : public CDialog, public ICamCntrlDialog {
public:
    /// Shows the dialog in front, small or not before.
    void Show() override {
        AFX_MANAGE_STATE(AfxGetStaticModuleState())
        ShowWindow(::IsIconic(m_hWnd) ? SW_RESTORE : SW_SHOW);
        ::SetForegroundWindow(m_hWnd);
    }
    void Hide() override {
        AFX_MANAGE_STATE(AfxGetStaticModuleState())
        ShowWindow(SW_HIDE);
    }
    bool IsVisible() const override { return m_hWnd && ::IsWindowVisible(m_hWnd); }

protected:
    explicit CCamCntrlDlgBase(UINT templateId, CWnd* parent = nullptr)
        : CDialog(templateId, parent) {}

    /// Enter on a button presses it, also inside a form, whose buttons the system does not look
    /// for.
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
        const HWND control = reinterpret_cast<HWND>(lParam);
        const HWND form = control ? ::GetParent(control) : nullptr;
        // Other controls inside forms and views may have the number of OK or Cancel by chance.
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
