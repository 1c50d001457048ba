// thread_state.h - per-thread state, and the creation of windows
#pragma once

#include <afxcmn.h>

#include <map>
#include <memory>
#include <typeindex>
#include <unordered_map>
#include <utility>

/// Windows and current message of one thread. Each thread accesses only its own state.
struct AfxThreadState {
    std::unordered_map<HWND, CWnd*> windows;
    /// The temporary object of a handle that has no object. The handle is detached before the
    /// object is deleted.
    struct TemporaryObject {
        std::shared_ptr<CObject> object;
        int depth = 0; ///< of the thread when it was made
    };

    /// By class and handle.
    std::map<std::pair<std::type_index, void*>, TemporaryObject> temporaries;
    int depth = 0; ///< AFX_MAINTAIN_STATE2 objects; each one deletes the temporaries made in it
    MSG current = {};

    static AfxThreadState& Get();

    /// Enters a function that another binary calls, such as a window procedure.
    void Enter() { ++depth; }
    /// Leaves it and deletes the temporary objects made meanwhile, also while the loop of a modal
    /// dialog or message box runs further out.
    void Leave();

    /// The temporary object of `handle`; null when `handle` is null.
    template <typename Object, typename Handle>
    Object* Temporary(Handle handle) {
        if (!handle) {
            return nullptr;
        }
        TemporaryObject& held = temporaries[{typeid(Object), handle}];
        if (!held.object) {
            const std::shared_ptr<Object> made(new Object, [](Object* object) {
                Hold(*object, Handle{});
                delete object;
            });
            Hold(*made, handle);
            held = {made, depth};
        }
        return static_cast<Object*>(held.object.get());
    }

private:
    // Sets the handle only: a temporary object is not entered into `windows`.
    static void Hold(CWnd& wnd, HWND window) { wnd.m_hWnd = window; }
    static void Hold(CGdiObject& object, HGDIOBJ handle) { object.m_hObject = handle; }
    static void Hold(CDC& dc, HDC handle) { dc.m_hDC = handle; }
    static void Hold(CImageList& list, HIMAGELIST handle) { list.m_hImageList = handle; }
};

/// Attaches an object to the next window of a class that this thread creates with a parameter,
/// before the window receives its first message. Leaves other windows alone that are created
/// meanwhile, such as those of input methods. Effective while this object exists.
class AFX_WINDOW_CREATION {
public:
    AFX_WINDOW_CREATION(CWnd* wnd, LPCTSTR className, LPVOID parameter = nullptr);
    ~AFX_WINDOW_CREATION();
    AFX_WINDOW_CREATION(const AFX_WINDOW_CREATION&) = delete;
    AFX_WINDOW_CREATION& operator=(const AFX_WINDOW_CREATION&) = delete;

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);
    bool IsFor(HWND window, const CREATESTRUCT& create) const;

    CWnd* const wnd;
    const LPCTSTR wantedClass;
    const LPVOID wantedParameter;
    AFX_WINDOW_CREATION* const outer;
    HHOOK hook;
    bool taken = false;
};

/// Dialog template `id` in the resources of this binary; null when there is none.
LPCDLGTEMPLATE AfxFindDialogTemplate(UINT id);
/// Dialog procedure of all dialogs. Does nothing: the messages are handled by the dialog objects.
INT_PTR CALLBACK AfxDialogProc(HWND, UINT, WPARAM, LPARAM);
/// Window procedure of all windows that have an object.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Name of the window class for windows that are created without one.
LPCTSTR AfxWindowClass();
