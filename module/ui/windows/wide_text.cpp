// wide_text.cpp - between the module's narrow texts (UTF-8) and the windows' wide ones
#include "ui/windows/wide_text.h"

namespace pyxen {

namespace {

std::wstring Convert(std::string_view utf8, DWORD flags) {
    const int length = static_cast<int>(utf8.size());
    const int needed =
        length == 0 ? 0 : ::MultiByteToWideChar(CP_UTF8, flags, utf8.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    ::MultiByteToWideChar(CP_UTF8, flags, utf8.data(), length, wide.data(), needed);
    return wide;
}

} // namespace

std::wstring WideText(std::string_view utf8) {
    return Convert(utf8, 0);
}

std::wstring StrictWideText(std::string_view utf8) {
    return Convert(utf8, MB_ERR_INVALID_CHARS);
}

std::string NarrowText(std::wstring_view wide) {
    const int length = static_cast<int>(wide.size());
    const int needed = length == 0 ? 0
                                   : ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr,
                                                           0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(needed), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}

std::wstring WindowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLength(window)) + 1, L'\0');
    const int length = ::GetWindowText(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// The tree does not tell a text's length, and may point to its own copy instead of filling ours.
std::wstring TreeItemText(const CTreeCtrl& tree, HTREEITEM item) {
    std::wstring buffer(256, L'\0');
    for (;;) {
        TVITEM wanted = {};
        wanted.mask = TVIF_HANDLE | TVIF_TEXT;
        wanted.hItem = item;
        wanted.pszText = buffer.data();
        wanted.cchTextMax = static_cast<int>(buffer.size());
        if (!tree.GetItem(&wanted)) {
            return {};
        }
        std::wstring text(wanted.pszText);
        if (text.size() + 1 < buffer.size()) {
            return text;
        }
        buffer.resize(buffer.size() * 2);
    }
}

} // namespace pyxen
