// wide_text.h - between the module's narrow texts (UTF-8) and the windows' wide ones
#pragma once

#include <afxcmn.h>

#include <string>
#include <string_view>

namespace pyxen {

/// Bytes that are no UTF-8 become U+FFFD.
std::wstring WideText(std::string_view utf8);
/// As WideText, but empty when the text is no UTF-8.
std::wstring StrictWideText(std::string_view utf8);
std::string NarrowText(std::wstring_view wide);

/// A window's whole text.
std::wstring WindowText(HWND window);
/// A tree row's whole text; empty when there is no such row.
std::wstring TreeItemText(const CTreeCtrl& tree, HTREEITEM item);

} // namespace pyxen
