// wnd.cpp - creating, attaching and destroying windows
#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNAMIC(CWnd, CObject)

CWnd::~CWnd() {
    CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandle(HWND window) {
    CWnd* const known = FromHandlePermanent(window);
    return known ? known : AfxThreadState::Get().Temporary<CWnd>(window);
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    const auto& windows = AfxThreadState::Get().windows;
    const auto found = windows.find(window);
    return found == windows.end() ? nullptr : found->second;
}

BOOL CWnd::Attach(HWND window) {
    if (m_hWnd || !window) {
        return FALSE;
    }
    AfxThreadState::Get().windows[window] = this;
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach() {
    auto& windows = AfxThreadState::Get().windows;
    const auto found = windows.find(m_hWnd);
    if (found != windows.end() && found->second == this) {
        windows.erase(found);
    }
    return std::exchange(m_hWnd, nullptr);
}

void CWnd::TakeOver(HWND window) {
    Attach(window);
    PreSubclassWindow();
    superProc = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AfxWndProc)));
}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id, CCreateContext* context) {
    return CreateEx(0, className, windowName, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                    const RECT& rect, CWnd* parent, UINT id, LPVOID parameter) {
    return CreateEx(exStyle, className, windowName, style, rect.left, rect.top,
                    rect.right - rect.left, rect.bottom - rect.top,
                    parent ? parent->m_hWnd : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                    int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter) {
    const AFX_MAINTAIN_STATE2 entered(AfxGetStaticModuleState());
    CREATESTRUCT create = {};
    create.lpCreateParams = parameter;
    create.hInstance = AfxGetInstanceHandle();
    create.hMenu = idOrMenu;
    create.hwndParent = parent;
    create.cy = height;
    create.cx = width;
    create.y = y;
    create.x = x;
    create.style = static_cast<LONG>(style);
    create.lpszName = windowName;
    create.lpszClass = className;
    create.dwExStyle = exStyle;
    if (m_hWnd || !PreCreateWindow(create)) {
        PostNcDestroy();
        return FALSE;
    }
    const AFX_WINDOW_CREATION creation(this, create.lpszClass, create.lpCreateParams);
    return ::CreateWindowEx(create.dwExStyle, create.lpszClass, create.lpszName,
                            static_cast<DWORD>(create.style), create.x, create.y, create.cx,
                            create.cy, create.hwndParent, create.hMenu, create.hInstance,
                            create.lpCreateParams) != nullptr;
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT& create) {
    if (!create.lpszClass) {
        create.lpszClass = AfxWindowClass();
    }
    return TRUE;
}

BOOL CWnd::DestroyWindow() {
    if (!m_hWnd) {
        return FALSE;
    }
    return ::DestroyWindow(m_hWnd);
}

BOOL CWnd::SubclassWindow(HWND window) {
    if (m_hWnd || !window || FromHandlePermanent(window)) {
        return FALSE;
    }
    TakeOver(window);
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT id, CWnd* parent) {
    return SubclassWindow(::GetDlgItem(parent->m_hWnd, static_cast<int>(id)));
}

HWND CWnd::UnsubclassWindow() {
    ::SetWindowLongPtr(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(superProc));
    superProc = nullptr;
    return Detach();
}

namespace {

BOOL ChangeBits(HWND window, int which, DWORD remove, DWORD add, UINT positionFlags) {
    const auto before = static_cast<DWORD>(::GetWindowLong(window, which));
    const DWORD after = (before & ~remove) | add;
    if (after == before) {
        return FALSE;
    }
    ::SetWindowLong(window, which, static_cast<LONG>(after));
    if (positionFlags) {
        ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | positionFlags);
    }
    return TRUE;
}

} // namespace

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT positionFlags) {
    return ChangeBits(m_hWnd, GWL_STYLE, remove, add, positionFlags);
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags) {
    return ChangeBits(m_hWnd, GWL_EXSTYLE, remove, add, positionFlags);
}

BOOL CWnd::GetScrollInfo(int bar, SCROLLINFO* info, UINT mask) {
    info->cbSize = sizeof(*info);
    info->fMask = mask;
    return ::GetScrollInfo(m_hWnd, bar, info);
}
