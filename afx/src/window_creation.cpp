// window_creation.cpp - attaching an object to a new window
#include "thread_state.h"

#include <iterator>

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

AFX_WINDOW_CREATION::AFX_WINDOW_CREATION(CWnd* forWnd, LPCTSTR className, LPVOID parameter)
    : wnd(forWnd), wantedClass(className), wantedParameter(parameter), outer(innermost) {
    InitControls();
    innermost = this;
    hook = ::SetWindowsHookEx(WH_CBT, Hook, nullptr, ::GetCurrentThreadId());
}

AFX_WINDOW_CREATION::~AFX_WINDOW_CREATION() {
    ::UnhookWindowsHookEx(hook);
    innermost = outer;
}

bool AFX_WINDOW_CREATION::IsFor(HWND window, const CREATESTRUCT& create) const {
    if (create.lpCreateParams != wantedParameter) {
        return false;
    }
    if (IS_INTRESOURCE(wantedClass)) {
        return ::GetClassLongPtr(window, GCW_ATOM) == reinterpret_cast<ULONG_PTR>(wantedClass);
    }
    TCHAR name[257] = TEXT("");
    ::GetClassName(window, name, static_cast<int>(std::size(name)));
    return ::lstrcmpi(name, wantedClass) == 0;
}

LRESULT CALLBACK AFX_WINDOW_CREATION::Hook(int code, WPARAM wParam, LPARAM lParam) {
    const HWND window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && innermost && !innermost->taken &&
        innermost->IsFor(window, *reinterpret_cast<const CBT_CREATEWND*>(lParam)->lpcs)) {
        innermost->taken = true;
        innermost->wnd->TakeOver(window);
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
