// value_view.cpp - what all value editors have in common
#include "ui/windows/value_view.h"

#include "res/resource.h"
#include "ui/windows/wide_text.h"

IMPLEMENT_DYNCREATE(CValueView, CFormView)

BEGIN_MESSAGE_MAP(CValueView, CFormView)
ON_BN_CLICKED(IDC_VALUE_APPLY, OnApply)
ON_BN_CLICKED(IDC_VALUE_REVERT, OnRevert)
END_MESSAGE_MAP()

CValueView::CValueView() : CValueView(IDD_ENUM_VALUE) {}

CValueView::CValueView(UINT templateId)
    : CFormView(templateId),
      applyIcon(LoadSmallIcon(IDI_VALUE_APPLY)),
      revertIcon(LoadSmallIcon(IDI_VALUE_REVERT)) {}

bool CValueView::Create(IObserver* newObserver, const RECT& rect, CWnd* parent) {
    if (!applyIcon || !revertIcon ||
        !CFormView::Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, rect, parent,
                           0)) {
        return false;
    }
    MakeIconButton(IDC_VALUE_APPLY, applyIcon.get());
    MakeIconButton(IDC_VALUE_REVERT, revertIcon.get());
    observer = newObserver;
    return true;
}

void CValueView::MakeIconButton(int id, HICON icon) {
    CWnd* const button = GetDlgItem(id);
    button->ModifyStyle(BS_BITMAP, BS_ICON);
    button->SendMessage(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
}

void CValueView::SetFeatureName(const char* name) {
    ShowText(IDC_VALUE_NAME, name);
}

void CValueView::SetUnit(const wchar_t* unit) {
    SetDlgItemText(IDC_VALUE_UNIT, unit);
}

void CValueView::SetNarrowUnit(const char* unit) {
    ShowText(IDC_VALUE_UNIT, unit);
}

bool CValueView::CommitOnEnter() {
    return false;
}

bool CValueView::HasFocus(int id) const {
    const HWND focus = ::GetFocus();
    return focus && focus == Control(id);
}

bool CValueView::ShowText(int id, std::string_view text) {
    const HWND control = Control(id);
    return control && ::SetWindowText(control, WideText(text).c_str());
}
