// sint_value_view.cpp - the editor of integers
#include "ui/windows/sint_value_view.h"

#include "res/resource.h"
#include "ui/value_text.h"
#include "ui/windows/wide_text.h"

#include <afxcmn.h>

using namespace pyxen;

IMPLEMENT_DYNCREATE(CSintValueView, CValueView)

BEGIN_MESSAGE_MAP(CSintValueView, CValueView)
ON_WM_HSCROLL()
ON_EN_CHANGE(IDC_SINT_EDIT, &CSintValueView::OnEditChanged)
END_MESSAGE_MAP()

CSintValueView::CSintValueView() : CValueView(IDD_SINT_VALUE) {}

bool CSintValueView::SetRange(std::int64_t min, std::int64_t max) {
    scale.SetRange(min, max);
    const HWND slider = Control(IDC_SINT_SLIDER);
    ::SendMessage(slider, TBM_SETRANGEMIN, FALSE, scale.GetSliderMin());
    ::SendMessage(slider, TBM_SETRANGEMAX, TRUE, scale.GetSliderMax());
    return slider != nullptr;
}

bool CSintValueView::SetValue(std::int64_t value) {
    scale.SetClampedValue(value);
    return ShowNumber() && MoveSlider();
}

bool CSintValueView::GetValue(std::int64_t& value) const {
    value = scale.GetValue();
    return Control(IDC_SINT_EDIT) != nullptr;
}

bool CSintValueView::CommitOnEnter() {
    if (!HasFocus(IDC_SINT_SLIDER) && !HasFocus(IDC_SINT_EDIT)) {
        return false;
    }
    SetValue(scale.GetValue());
    Tell(true);
    return true;
}

void CSintValueView::OnHScroll(UINT code, UINT position, CScrollBar* bar) {
    if (!bar || bar->m_hWnd != Control(IDC_SINT_SLIDER)) {
        CValueView::OnHScroll(code, position, bar);
        return;
    }
    scale.SetPosition(static_cast<std::int32_t>(bar->SendMessage(TBM_GETPOS)));
    ShowNumber();
}

void CSintValueView::OnEditChanged() {
    if (updating) {
        return;
    }
    if (const auto typed = ParseInteger(NarrowText(WindowText(Control(IDC_SINT_EDIT))))) {
        scale.SetValue(*typed);
        MoveSlider();
    }
}

bool CSintValueView::ShowNumber() {
    updating = true;
    const bool shown = ShowText(IDC_SINT_EDIT, FormatInteger(scale.GetValue()));
    updating = false;
    return shown;
}

bool CSintValueView::MoveSlider() {
    const HWND slider = Control(IDC_SINT_SLIDER);
    ::SendMessage(slider, TBM_SETPOS, TRUE, scale.GetPosition());
    return slider != nullptr;
}
