// afxwin.h - windows, dialogs, views, standard controls and the module's state
//
// Provides the part of the public interface of the Microsoft Foundation Classes that the dialogs
// use, under the same names, so that the dialogs compile against either. Strings are wide. Each
// binary that links this library has its own copy of all state; objects of these classes must not
// be passed from one binary to another.
//
// Threads: a window and its object belong to the thread that created or attached them, and each
// thread has its own map from windows to objects. Other threads may only post messages to m_hWnd.
#pragma once

#include <afx.h>
#include <afxgdi_.h>
#include <afxmsg_.h>
#include <atltypes.h>
#include <commctrl.h>
#include <windowsx.h>

// windowsx.h defines macros with the names of member functions.
#undef SubclassWindow
#undef GetNextSibling
#undef GetPrevSibling
#undef GetFirstChild

struct CCreateContext;

/// The application object of a binary, which defines at most one, as a global object.
class CWinApp : public CObject {
    DECLARE_DYNAMIC(CWinApp)
public:
    HINSTANCE m_hInstance;
    CWnd* m_pMainWnd = nullptr;

    CWinApp();
    ~CWinApp() override;
};

/// Global state of a binary.
struct AFX_MODULE_STATE {
    HINSTANCE m_hCurrentInstanceHandle; ///< the binary that links this library
    HINSTANCE m_hCurrentResourceHandle; ///< where templates and icons are loaded from
    CWinApp* m_pCurrentWinApp;
};

/// The state of this binary. This function and the next three may be called from any thread.
AFX_MODULE_STATE* AfxGetStaticModuleState();
/// The application object of this binary; null when it has none.
CWinApp* AfxGetApp();
HINSTANCE AfxGetInstanceHandle();
/// The binary whose resources are used.
HINSTANCE AfxGetResourceHandle();
/// Called first by a program that has its own entry function: sets the handles of the state. Only
/// `instance` is used. Returns TRUE.
BOOL AfxWinInit(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);

/// While it exists, windows are created with the version of the common controls that the binary's
/// manifest (resource 2) selects, and temporary objects that this thread makes are kept. Must exist
/// in every function that another binary calls.
class AFX_MAINTAIN_STATE2 {
public:
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* state);
    ~AFX_MAINTAIN_STATE2();
    AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2&) = delete;
    AFX_MAINTAIN_STATE2& operator=(const AFX_MAINTAIN_STATE2&) = delete;

private:
    ULONG_PTR cookie = 0;
    bool activated = false;
};
#define AFX_MANAGE_STATE(p) AFX_MAINTAIN_STATE2 afxState_(p);

/// A window that was created by this object, or an existing one that was subclassed or attached.
class CWnd : public CObject {
    DECLARE_DYNAMIC(CWnd)
public:
    HWND m_hWnd = nullptr;

    CWnd() = default;
    /// Destroys the window if one is attached.
    ~CWnd() override;

    // The map from windows to objects.
    /// The object of `window`. When it has none, a temporary object, which is valid until the
    /// current message has been handled.
    static CWnd* FromHandle(HWND window);
    /// The object of `window`; null when it has none on this thread.
    static CWnd* FromHandlePermanent(HWND window);
    BOOL Attach(HWND window);
    HWND Detach();
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }

    // Creation and destruction.
    /// Creates a child window. When `className` is null, PreCreateWindow chooses the class.
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                        CWnd* parent, UINT id, CCreateContext* context = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                  const RECT& rect, CWnd* parent, UINT id, LPVOID parameter = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                  int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
    virtual BOOL DestroyWindow();
    /// Attaches an existing window and lets this object handle its messages first.
    BOOL SubclassWindow(HWND window);
    BOOL SubclassDlgItem(UINT id, CWnd* parent);
    HWND UnsubclassWindow();

    // Messages.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessage(m_hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::PostMessage(m_hWnd, message, wParam, lParam);
    }
    /// Called with a message before a message loop dispatches it. TRUE when the message has been
    /// handled and must not be dispatched. The system's loops for modal dialogs and message boxes
    /// do not call this function.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Calls PreTranslateMessage for the receiver of `message` and then for each of its ancestors
    /// up to `stop`, until one returns TRUE.
    static BOOL WalkPreTranslateTree(HWND stop, MSG* message);

    // State.
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLong(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLong(m_hWnd, GWL_EXSTYLE)); }
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0);
    BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags = 0);
    BOOL ShowWindow(int command) { return ::ShowWindow(m_hWnd, command); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL EnableWindow(BOOL enable = TRUE) { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    HICON SetIcon(HICON icon, BOOL big) {
        return reinterpret_cast<HICON>(
            SendMessage(WM_SETICON, big ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(icon)));
    }
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds, TIMERPROC procedure) {
        return ::SetTimer(m_hWnd, id, milliseconds, procedure);
    }
    BOOL KillTimer(UINT_PTR id) { return ::KillTimer(m_hWnd, id); }
    int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = MB_OK) {
        return ::MessageBox(m_hWnd, text, caption, type);
    }

    // Text and font.
    void SetWindowText(LPCTSTR text) { ::SetWindowText(m_hWnd, text); }
    int GetWindowText(LPTSTR text, int capacity) const {
        return ::GetWindowText(m_hWnd, text, capacity);
    }
    int GetWindowTextLength() const { return ::GetWindowTextLength(m_hWnd); }
    void SetFont(CFont* font, BOOL redraw = TRUE) {
        SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font ? HFONT(*font) : nullptr),
                    MAKELPARAM(redraw, 0));
    }
    CFont* GetFont() const {
        return CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
    }

    // Related windows.
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    int SetDlgCtrlID(int id) { return static_cast<int>(::SetWindowLongPtr(m_hWnd, GWLP_ID, id)); }
    void SetDlgItemText(int id, LPCTSTR text) { ::SetDlgItemText(m_hWnd, id, text); }
    int GetDlgItemText(int id, LPTSTR text, int capacity) const {
        return static_cast<int>(::GetDlgItemText(m_hWnd, id, text, capacity));
    }
    BOOL IsChild(const CWnd* wnd) const { return ::IsChild(m_hWnd, wnd->m_hWnd); }

    // Position and drawing.
    void GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
    void GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
    void ScreenToClient(LPPOINT point) const { ::ScreenToClient(m_hWnd, point); }
    void ScreenToClient(LPRECT rect) const {
        ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(rect), 2);
    }
    void ClientToScreen(LPPOINT point) const { ::ClientToScreen(m_hWnd, point); }
    void ClientToScreen(LPRECT rect) const {
        ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(rect), 2);
    }
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE) {
        ::MoveWindow(m_hWnd, x, y, width, height, repaint);
    }
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE) {
        MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top,
                   repaint);
    }
    BOOL SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags) {
        return ::SetWindowPos(m_hWnd, after ? after->m_hWnd : nullptr, x, y, width, height, flags);
    }
    void Invalidate(BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, erase); }
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, rect, erase); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    void SetRedraw(BOOL redraw = TRUE) { SendMessage(WM_SETREDRAW, static_cast<WPARAM>(redraw)); }

    // Scroll bars of the window itself.
    BOOL SetScrollInfo(int bar, SCROLLINFO* info, BOOL redraw = TRUE) {
        return ::SetScrollInfo(m_hWnd, bar, info, redraw) >= 0;
    }
    BOOL GetScrollInfo(int bar, SCROLLINFO* info, UINT mask = SIF_ALL);
    int GetScrollPos(int bar) const { return ::GetScrollPos(m_hWnd, bar); }
    int SetScrollPos(int bar, int position, BOOL redraw = TRUE) {
        return ::SetScrollPos(m_hWnd, bar, position, redraw);
    }

    /// Called by the window procedure with every message of the window.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Called by the parent with a notification of this control, before the parent's own handler.
    /// TRUE when the notification has been handled.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);

protected:
    /// Called before the window is created; may change any parameter. Chooses a window class when
    /// `create` has none. FALSE cancels the creation.
    virtual BOOL PreCreateWindow(CREATESTRUCT& create);
    /// Called after a window has been attached and before its first message.
    virtual void PreSubclassWindow() {}
    /// Called last, after the window has been destroyed. An object that owns itself deletes itself
    /// here.
    virtual void PostNcDestroy() {}

    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Performs the default handling of the current message.
    LRESULT Default();

    // Base versions of the handlers; they perform the default handling.
    int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
    void OnDestroy() { Default(); }
    void OnClose() { Default(); }
    void OnPaint() { Default(); }
    BOOL OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
    void OnSize(UINT, int, int) { Default(); }
    void OnGetMinMaxInfo(MINMAXINFO*) { Default(); }
    void OnShowWindow(BOOL, UINT) { Default(); }
    void OnTimer(UINT_PTR) { Default(); }
    void OnSetFocus(CWnd*) { Default(); }
    UINT OnGetDlgCode() { return static_cast<UINT>(Default()); }
    void OnKeyDown(UINT, UINT, UINT) { Default(); }
    void OnChar(UINT, UINT, UINT) { Default(); }
    void OnHScroll(UINT, UINT, CWnd*) { Default(); }
    void OnVScroll(UINT, UINT, CWnd*) { Default(); }
    BOOL OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
    void OnLButtonDown(UINT, CPoint) { Default(); }
    void OnLButtonUp(UINT, CPoint) { Default(); }
    void OnLButtonDblClk(UINT, CPoint) { Default(); }
    void OnRButtonDown(UINT, CPoint) { Default(); }

    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

private:
    friend class AFX_WINDOW_CREATION;

    const AFX_MSGMAP_ENTRY* FindEntry(UINT message, UINT code, UINT id) const;
    void OnNcDestroy();
    void TakeOver(HWND window);

    WNDPROC superProc = nullptr; ///< the window procedure before subclassing
};

/// Type of the sender in scroll handlers, which may be any control.
using CScrollBar = CWnd;

/// A dialog created from a template of this binary, modal (DoModal) or modeless (Create). The
/// template must not name a window class of its own.
class CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)
public:
    explicit CDialog(UINT templateId, CWnd* parent = nullptr)
        : m_pParentWnd(parent), dialogTemplate(templateId) {}

    /// Runs the dialog and returns the value passed to EndDialog; -1 when it cannot be created.
    virtual INT_PTR DoModal();
    /// Creates a modeless dialog and returns immediately; FALSE on failure.
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    void EndDialog(int result) { ::EndDialog(m_hWnd, result); }
    BOOL PreTranslateMessage(MSG* message) override;

    /// Initialises the controls. FALSE when it has set the focus itself.
    virtual BOOL OnInitDialog() { return TRUE; }

protected:
    CDialog() = default;
    using CWnd::Create;

    /// Called for the OK button and Enter. Ends a modal dialog with IDOK.
    virtual void OnOK() { EndDialog(IDOK); }
    /// Called for the Cancel button, Escape and the close button. Ends a modal dialog with
    /// IDCANCEL.
    virtual void OnCancel() { EndDialog(IDCANCEL); }

    CWnd* m_pParentWnd = nullptr;

private:
    UINT dialogTemplate = 0;

    LRESULT HandleInitDialog(WPARAM, LPARAM) { return OnInitDialog(); }
    DECLARE_MESSAGE_MAP()
};

/// A child window that draws itself in OnDraw. It does not delete itself; its creator does.
class CView : public CWnd {
    DECLARE_DYNAMIC(CView)
protected:
    CView() = default;

    virtual void OnDraw(CDC* dc) = 0;
    void OnPaint();
    DECLARE_MESSAGE_MAP()
};

class CStatic : public CWnd {
    DECLARE_DYNAMIC(CStatic)
public:
    using CWnd::Create;
    BOOL Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id = 0xFFFF) {
        return CWnd::Create(WC_STATIC, text, style, rect, parent, id);
    }
};

class CButton : public CWnd {
    DECLARE_DYNAMIC(CButton)
public:
    using CWnd::Create;
    BOOL Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_BUTTON, caption, style, rect, parent, id);
    }
    HICON SetIcon(HICON icon) {
        return reinterpret_cast<HICON>(
            SendMessage(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon)));
    }
    HICON GetIcon() const { return reinterpret_cast<HICON>(SendMessage(BM_GETIMAGE, IMAGE_ICON)); }
    int GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int check) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
};

class CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_EDIT, nullptr, style, rect, parent, id);
    }
    void SetSel(int start, int end) {
        SendMessage(EM_SETSEL, static_cast<WPARAM>(start), static_cast<LPARAM>(end));
    }
    void LimitText(int characters = 0) {
        SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(characters));
    }
    BOOL SetReadOnly(BOOL readOnly = TRUE) {
        return static_cast<BOOL>(SendMessage(EM_SETREADONLY, static_cast<WPARAM>(readOnly)));
    }
};

class CListBox : public CWnd {
    DECLARE_DYNAMIC(CListBox)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_LISTBOX, nullptr, style, rect, parent, id);
    }
    void ResetContent() { SendMessage(LB_RESETCONTENT); }
    int AddString(LPCTSTR text) { return Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)); }
    int GetCount() const { return Send(LB_GETCOUNT); }
    int GetCurSel() const { return Send(LB_GETCURSEL); }
    int SetCurSel(int index) { return Send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
    DWORD_PTR GetItemData(int index) const {
        return static_cast<DWORD_PTR>(SendMessage(LB_GETITEMDATA, static_cast<WPARAM>(index)));
    }
    int SetItemData(int index, DWORD_PTR data) {
        return Send(LB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data));
    }
    int GetText(int index, LPTSTR text) const {
        return Send(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    }
    int GetTextLen(int index) const { return Send(LB_GETTEXTLEN, static_cast<WPARAM>(index)); }

private:
    int Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return static_cast<int>(SendMessage(message, wParam, lParam));
    }
};

class CComboBox : public CWnd {
    DECLARE_DYNAMIC(CComboBox)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_COMBOBOX, nullptr, style, rect, parent, id);
    }
    void ResetContent() { SendMessage(CB_RESETCONTENT); }
    int AddString(LPCTSTR text) { return Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)); }
    int GetCount() const { return Send(CB_GETCOUNT); }
    int GetCurSel() const { return Send(CB_GETCURSEL); }
    int SetCurSel(int index) { return Send(CB_SETCURSEL, static_cast<WPARAM>(index)); }
    int FindStringExact(int startAfter, LPCTSTR text) const {
        return Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter),
                    reinterpret_cast<LPARAM>(text));
    }
    DWORD_PTR GetItemData(int index) const {
        return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index)));
    }
    int SetItemData(int index, DWORD_PTR data) {
        return Send(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data));
    }
    int GetLBText(int index, LPTSTR text) const {
        return Send(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    }
    int GetLBTextLen(int index) const { return Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(index)); }

private:
    int Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return static_cast<int>(SendMessage(message, wParam, lParam));
    }
};
