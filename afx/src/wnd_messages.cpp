// wnd_messages.cpp - routing messages to their handlers
#include "thread_state.h"

namespace {

/// Sets the current message of the thread and restores the previous one in its destructor.
class CurrentMessage {
public:
    CurrentMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
        : before(AfxThreadState::Get().current) {
        MSG& current = AfxThreadState::Get().current;
        current = {};
        current.hwnd = window;
        current.message = message;
        current.wParam = wParam;
        current.lParam = lParam;
    }
    ~CurrentMessage() { AfxThreadState::Get().current = before; }
    CurrentMessage(const CurrentMessage&) = delete;
    CurrentMessage& operator=(const CurrentMessage&) = delete;

private:
    const MSG before;
};

} // namespace

// Exceptions must not propagate through stack frames of the system, so the message is dropped. A
// window that failed to paint is validated, or the system would send WM_PAINT again and again.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    CWnd* const wnd = CWnd::FromHandlePermanent(window);
    if (!wnd) {
        return ::DefWindowProc(window, message, wParam, lParam);
    }
    const CurrentMessage current(window, message, wParam, lParam);
    try {
        return wnd->WindowProc(message, wParam, lParam);
    } catch (...) {
        if (message == WM_PAINT) {
            ::ValidateRect(window, nullptr);
        }
        return message == WM_CREATE ? -1 : 0;
    }
}

const AFX_MSGMAP* CWnd::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY none = {0, 0, 0, 0, nullptr};
    static const AFX_MSGMAP map = {nullptr, &none};
    return &map;
}

const AFX_MSGMAP* CWnd::GetMessageMap() const {
    return GetThisMessageMap();
}

const AFX_MSGMAP_ENTRY* CWnd::FindEntry(UINT message, UINT code, UINT id) const {
    const AFX_MSGMAP* map = GetMessageMap();
    while (map) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage; ++entry) {
            if (entry->nMessage == message && entry->nCode == code && entry->nID <= id &&
                id <= entry->nLastID) {
                return entry;
            }
        }
        map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr;
    }
    return nullptr;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result
                                                      : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    switch (message) {
    case WM_COMMAND:
        return OnCommand(wParam, lParam);
    case WM_NOTIFY:
        return lParam && OnNotify(wParam, lParam, result);
    case WM_NCDESTROY:
        OnNcDestroy();
        return TRUE;
    default:
        break;
    }
    const AFX_MSGMAP_ENTRY* const entry = FindEntry(message, 0, 0);
    return entry && entry->pfnCall(this, wParam, lParam, result);
}

// Menus and accelerators pass no control; their code only distinguishes one from the other.
BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    const UINT code = lParam ? HIWORD(wParam) : CN_COMMAND;
    const AFX_MSGMAP_ENTRY* const entry = FindEntry(WM_COMMAND, code, LOWORD(wParam));
    LRESULT unused = 0;
    return entry && entry->pfnCall(this, wParam, lParam, &unused);
}

BOOL CWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const NMHDR* const header = reinterpret_cast<const NMHDR*>(lParam);
    CWnd* const sender = FromHandlePermanent(header->hwndFrom);
    if (sender && sender->OnChildNotify(WM_NOTIFY, wParam, lParam, result)) {
        return TRUE;
    }
    const AFX_MSGMAP_ENTRY* const entry =
        FindEntry(WM_NOTIFY, header->code, static_cast<UINT>(header->idFrom));
    return entry && entry->pfnCall(this, wParam, lParam, result);
}

BOOL CWnd::OnChildNotify(UINT, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
    const AFX_MSGMAP_ENTRY* const entry = FindEntry(AFX_WM_REFLECT_NOTIFY, code, 0);
    return entry && entry->pfnCall(this, wParam, lParam, result);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return superProc ? ::CallWindowProc(superProc, m_hWnd, message, wParam, lParam)
                     : ::DefWindowProc(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const MSG current = AfxThreadState::Get().current;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

void CWnd::OnNcDestroy() {
    Default();
    Detach();
    superProc = nullptr;
    PostNcDestroy();
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}

BOOL CWnd::WalkPreTranslateTree(HWND stop, MSG* message) {
    for (HWND at = message->hwnd; at; at = ::GetParent(at)) {
        CWnd* const wnd = FromHandlePermanent(at);
        if (wnd && wnd->PreTranslateMessage(message)) {
            return TRUE;
        }
        if (at == stop) {
            break;
        }
    }
    return FALSE;
}
