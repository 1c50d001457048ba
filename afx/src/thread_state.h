// thread_state.h - what one thread knows of its windows
#pragma once

#include <afxcmn.h>

#include <map>
#include <memory>
#include <typeindex>
#include <unordered_map>
#include <utility>

/// The windows of one thread and the message it is at. Each thread reaches only its own.
struct AfxThreadState {
    std::unordered_map<HWND, CWnd*> windows;
    /// Objects for handles that have none of their own, by kind. They give their handle up before
    /// they go.
    std::map<std::pair<std::type_index, void*>, std::shared_ptr<CObject>> temporaries;
    int depth = 0; ///< entries that have not been left; temporary objects go with the last
    MSG current = {};

    static AfxThreadState& Get();

    template <class Object, class Handle>
    Object* Temporary(Handle handle) {
        if (!handle) {
            return nullptr;
        }
        auto& held = temporaries[{typeid(Object), handle}];
        if (!held) {
            const std::shared_ptr<Object> made(new Object, [](Object* object) {
                Hold(*object, Handle{});
                delete object;
            });
            Hold(*made, handle);
            held = made;
        }
        return static_cast<Object*>(held.get());
    }

private:
    // A temporary object of a window stays out of the map, and never owns what it holds.
    static void Hold(CWnd& wnd, HWND window) { wnd.m_hWnd = window; }
    static void Hold(CGdiObject& object, HGDIOBJ handle) { object.m_hObject = handle; }
    static void Hold(CDC& dc, HDC handle) { dc.m_hDC = handle; }
    static void Hold(CImageList& list, HIMAGELIST handle) { list.m_hImageList = handle; }
};

/// While it stands, the next window that this thread makes becomes that of the given object, before
/// the window's first message.
class AFX_WINDOW_CREATION {
public:
    explicit AFX_WINDOW_CREATION(CWnd* wnd);
    ~AFX_WINDOW_CREATION();
    AFX_WINDOW_CREATION(const AFX_WINDOW_CREATION&) = delete;
    AFX_WINDOW_CREATION& operator=(const AFX_WINDOW_CREATION&) = delete;

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);

    CWnd* const wnd;
    AFX_WINDOW_CREATION* const outer;
    HHOOK hook;
    bool taken = false;
};

/// The template of that number in this binary's resources, or null.
LPCDLGTEMPLATE AfxFindDialogTemplate(UINT id);
/// The dialog procedure of all dialogs: their objects handle the messages before it.
INT_PTR CALLBACK AfxDialogProc(HWND, UINT, WPARAM, LPARAM);
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// The window class of windows made without one.
LPCTSTR AfxWindowClass();
