// value_view.cpp - what all value editors have in common
#include "ui/windows/value_view.h"

#include "res/resource.h"
#include "ui/windows/wide_text.h"

#include <algorithm>

using namespace pyxen;

IMPLEMENT_DYNCREATE(CValueView, CFormView)

namespace {

constexpr int kNarrowest = 94; // in dialog units

} // namespace

BEGIN_MESSAGE_MAP(CValueView, CFormView)
ON_BN_CLICKED(IDC_VALUE_APPLY, &CValueView::OnApply)
ON_BN_CLICKED(IDC_VALUE_REVERT, &CValueView::OnRevert)
ON_WM_SIZE()
END_MESSAGE_MAP()

CValueView::CValueView() : CValueView(IDD_ENUM_VALUE) {}

CValueView::CValueView(UINT templateId)
    : CFormView(templateId),
      applyIcon(LoadSmallIcon(IDI_VALUE_APPLY)),
      revertIcon(LoadSmallIcon(IDI_VALUE_REVERT)) {}

bool CValueView::Create(IObserver* newObserver, const RECT& rect, CWnd* parent) {
    if (!applyIcon || !revertIcon ||
        !CFormView::Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, rect, parent,
                           0, nullptr)) {
        return false;
    }
    SetScrollSizes(MM_TEXT, CSize(0, 0)); // the controls are fitted instead
    MakeIconButton(IDC_VALUE_APPLY, applyIcon.get());
    MakeIconButton(IDC_VALUE_REVERT, revertIcon.get());
    observer = newObserver;
    RememberPlaces();
    CRect client;
    GetClientRect(client);
    FitControls(client.Width());
    return true;
}

void CValueView::MakeIconButton(int id, HICON icon) {
    CWnd* const button = GetDlgItem(id);
    button->ModifyStyle(BS_BITMAP, BS_ICON);
    button->SendMessage(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
}

void CValueView::RememberPlaces() {
    for (HWND child = ::GetWindow(m_hWnd, GW_CHILD); child;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        CRect rect;
        // A combo box is placed with the height of its list dropped down.
        if (!::SendMessage(child, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect))) {
            ::GetWindowRect(child, rect);
        }
        ScreenToClient(rect);
        places.push_back({child, rect});
    }
}

// Buttons and unit keep to the right edge; what stands left of them grows with the form, and
// shrinks as long as an edit can still be used.
void CValueView::FitControls(int width) {
    CRect units(kNarrowest, 0, VALUE_FORM_WIDTH, 0);
    ::MapDialogRect(m_hWnd, units);
    const int more = std::max<int>(width, units.left) - units.right;
    for (const Place& place : places) {
        const int id = ::GetDlgCtrlID(place.control);
        const bool keepsRight =
            id == IDC_VALUE_APPLY || id == IDC_VALUE_REVERT || id == IDC_VALUE_UNIT;
        ::SetWindowPos(place.control, nullptr, place.rect.left + (keepsRight ? more : 0),
                       place.rect.top, place.rect.Width() + (keepsRight ? 0 : more),
                       place.rect.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void CValueView::OnSize(UINT type, int width, int height) {
    CFormView::OnSize(type, width, height);
    FitControls(width);
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
