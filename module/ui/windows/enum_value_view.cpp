// enum_value_view.cpp - the editor of enumerations and booleans
#include "ui/windows/enum_value_view.h"

#include "res/resource.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

IMPLEMENT_DYNCREATE(CEnumValueView, CValueView)

CEnumValueView::CEnumValueView() : CValueView(IDD_ENUM_VALUE) {}

bool CEnumValueView::SetOptions(const char* const* names, std::uint32_t count) {
    const HWND list = Control(IDC_ENUM_LIST);
    if (!list) {
        return false;
    }
    ::SendMessage(list, CB_RESETCONTENT, 0, 0);
    for (std::uint32_t index = 0; index < count; ++index) {
        if (names[index] &&
            ::SendMessage(list, CB_ADDSTRING, 0,
                          reinterpret_cast<LPARAM>(WideText(names[index]).c_str())) < 0) {
            return false;
        }
    }
    return true;
}

bool CEnumValueView::SelectOption(const char* name) {
    const HWND list = Control(IDC_ENUM_LIST);
    if (!list) {
        return false;
    }
    // The search goes on at the start, so every entry is looked at.
    const LRESULT found = ::SendMessage(list, CB_FINDSTRINGEXACT, 0,
                                        reinterpret_cast<LPARAM>(WideText(name).c_str()));
    return found >= 0 && ::SendMessage(list, CB_SETCURSEL, static_cast<WPARAM>(found), 0) >= 0;
}

bool CEnumValueView::GetSelection(std::string& name) const {
    const HWND list = Control(IDC_ENUM_LIST);
    const LRESULT selected = list ? ::SendMessage(list, CB_GETCURSEL, 0, 0) : CB_ERR;
    if (selected < 0) {
        return false;
    }
    const auto index = static_cast<WPARAM>(selected);
    const LRESULT length = ::SendMessage(list, CB_GETLBTEXTLEN, index, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    ::SendMessage(list, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    name = NarrowText(text);
    return true;
}

bool CEnumValueView::CommitOnEnter() {
    if (!HasFocus(IDC_ENUM_LIST)) {
        return false;
    }
    Tell(true);
    return true;
}
