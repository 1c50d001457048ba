// window_creation.cpp - attaching an object to a new window
#include "thread_state.h"

namespace {

thread_local AFX_WINDOW_CREATION* innermost = nullptr;

void InitControls() {
    static const BOOL done = [] {
        const INITCOMMONCONTROLSEX wanted = {sizeof(wanted),
                                             ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
        return ::InitCommonControlsEx(&wanted);
    }();
    static_cast<void>(done);
}

} // namespace

AFX_WINDOW_CREATION::AFX_WINDOW_CREATION(CWnd* forWnd) : wnd(forWnd), outer(innermost) {
    InitControls();
    innermost = this;
    hook = ::SetWindowsHookEx(WH_CBT, Hook, nullptr, ::GetCurrentThreadId());
}

AFX_WINDOW_CREATION::~AFX_WINDOW_CREATION() {
    ::UnhookWindowsHookEx(hook);
    innermost = outer;
}

LRESULT CALLBACK AFX_WINDOW_CREATION::Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && innermost && !innermost->taken) {
        innermost->taken = true;
        innermost->wnd->TakeOver(reinterpret_cast<HWND>(wParam));
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

LPCDLGTEMPLATE AfxFindDialogTemplate(UINT id) {
    const HINSTANCE instance = AfxGetResourceHandle();
    const HRSRC found = ::FindResource(instance, MAKEINTRESOURCE(id), RT_DIALOG);
    return found ? static_cast<LPCDLGTEMPLATE>(::LockResource(::LoadResource(instance, found)))
                 : nullptr;
}

INT_PTR CALLBACK AfxDialogProc(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

LPCTSTR AfxWindowClass() {
    static const LPCTSTR name = [] {
        WNDCLASS description = {};
        description.style = CS_DBLCLKS;
        description.lpfnWndProc = ::DefWindowProc;
        description.hInstance = AfxGetInstanceHandle();
        description.hCursor = ::LoadCursor(nullptr, IDC_ARROW);
        description.hbrBackground = ::GetSysColorBrush(COLOR_WINDOW);
        description.lpszClassName = TEXT("AfxWindow");
        ::RegisterClass(&description);
        return description.lpszClassName;
    }();
    return name;
}
