// dialog.cpp - dialogs and views
#include "thread_state.h"

#include <afxext.h>

IMPLEMENT_DYNAMIC(CDialog, CWnd)
IMPLEMENT_DYNAMIC(CView, CWnd)
IMPLEMENT_DYNAMIC(CFormView, CView)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_MESSAGE(WM_INITDIALOG, &CDialog::HandleInitDialog)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CView, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CFormView, CView)
ON_MESSAGE(WM_INITDIALOG, &CFormView::HandleInitDialog)
END_MESSAGE_MAP()

INT_PTR CDialog::DoModal() {
    const AFX_MAINTAIN_STATE2 entered(AfxGetStaticModuleState());
    const LPCDLGTEMPLATE found = AfxFindDialogTemplate(dialogTemplate);
    if (!found) {
        return -1;
    }
    const AFX_WINDOW_CREATION creation(this, WC_DIALOG);
    return ::DialogBoxIndirectParam(AfxGetInstanceHandle(), found,
                                    m_pParentWnd ? m_pParentWnd->m_hWnd : nullptr, AfxDialogProc,
                                    0);
}

BOOL CDialog::Create(UINT templateId, CWnd* parent) {
    const AFX_MAINTAIN_STATE2 entered(AfxGetStaticModuleState());
    const LPCDLGTEMPLATE found = AfxFindDialogTemplate(templateId);
    if (!found) {
        return FALSE;
    }
    const AFX_WINDOW_CREATION creation(this, WC_DIALOG);
    return ::CreateDialogIndirectParam(AfxGetInstanceHandle(), found,
                                       parent ? parent->m_hWnd : nullptr, AfxDialogProc,
                                       0) != nullptr;
}

BOOL CDialog::PreTranslateMessage(MSG* message) {
    return ::IsDialogMessage(m_hWnd, message);
}

void CView::OnPaint() {
    CPaintDC dc(this);
    OnDraw(&dc);
}

BOOL CFormView::Create(LPCTSTR, LPCTSTR, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                       CCreateContext*) {
    const AFX_MAINTAIN_STATE2 entered(AfxGetStaticModuleState());
    const LPCDLGTEMPLATE found = AfxFindDialogTemplate(m_nIDTemplate);
    if (!found) {
        return FALSE;
    }
    const AFX_WINDOW_CREATION creation(this, WC_DIALOG);
    if (!::CreateDialogIndirectParam(AfxGetInstanceHandle(), found, parent->m_hWnd, AfxDialogProc,
                                     0)) {
        return FALSE;
    }
    SetDlgCtrlID(static_cast<int>(id));
    ::SetWindowPos(m_hWnd, nullptr, rect.left, rect.top, rect.right - rect.left,
                   rect.bottom - rect.top,
                   SWP_NOZORDER | SWP_NOACTIVATE | (style & WS_VISIBLE ? SWP_SHOWWINDOW : 0u));
    OnInitialUpdate();
    return TRUE;
}
