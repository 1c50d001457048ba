// string_value_view.cpp - the editor of texts
#include "ui/windows/string_value_view.h"

#include "res/resource.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

IMPLEMENT_DYNCREATE(CStringValueView, CValueView)

CStringValueView::CStringValueView() : CValueView(IDD_STRING_VALUE) {}

bool CStringValueView::SetText(const char* text) {
    updating = true;
    const bool shown = ShowText(IDC_STRING_EDIT, text);
    updating = false;
    return shown;
}

bool CStringValueView::GetText(std::string& text) const {
    const HWND edit = Control(IDC_STRING_EDIT);
    if (!edit) {
        return false;
    }
    text = NarrowText(WindowText(edit));
    return true;
}

bool CStringValueView::CommitOnEnter() {
    if (!HasFocus(IDC_STRING_EDIT)) {
        return false;
    }
    Tell(true);
    return true;
}
