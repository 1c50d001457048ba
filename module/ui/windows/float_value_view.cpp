// float_value_view.cpp - the editor of floating-point numbers
#include "ui/windows/float_value_view.h"

#include "res/resource.h"
#include "ui/value_text.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

IMPLEMENT_DYNCREATE(CFloatValueView, CValueView)

BEGIN_MESSAGE_MAP(CFloatValueView, CValueView)
ON_EN_CHANGE(IDC_FLOAT_EDIT, &CFloatValueView::OnEditChanged)
END_MESSAGE_MAP()

CFloatValueView::CFloatValueView() : CValueView(IDD_FLOAT_VALUE) {}

bool CFloatValueView::SetRange(double newMin, double newMax) {
    min = newMin;
    max = newMax;
    return Control(IDC_FLOAT_EDIT) != nullptr;
}

bool CFloatValueView::SetValue(double newValue) {
    value = newValue;
    return ShowNumber();
}

bool CFloatValueView::GetValue(double& current) const {
    current = value;
    return Control(IDC_FLOAT_EDIT) != nullptr;
}

bool CFloatValueView::CommitOnEnter() {
    if (!HasFocus(IDC_FLOAT_EDIT)) {
        return false;
    }
    TakeTyped();
    ShowNumber();
    Tell(true);
    return true;
}

void CFloatValueView::OnEditChanged() {
    if (!updating && HasFocus(IDC_FLOAT_EDIT)) {
        TakeTyped();
    }
}

void CFloatValueView::TakeTyped() {
    if (const auto typed = ParseFloat(NarrowText(WindowText(Control(IDC_FLOAT_EDIT))))) {
        value = *typed;
    }
    value = ClampValue(value, min, max);
}

bool CFloatValueView::ShowNumber() {
    updating = true;
    const bool shown = ShowText(IDC_FLOAT_EDIT, FormatFloat(value));
    updating = false;
    return shown;
}
