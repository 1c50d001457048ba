// afxwin.h - windows, dialogs, views, standard controls and the module's state
//
// Written against the public interface of the Microsoft Foundation Classes, whose names it keeps,
// so that the same dialogs compile against either. Texts are wide. Every binary that links this
// library has its own copy of everything: no object of these classes may cross a binary's border.
//
// Threads: a window and its object belong to the thread that created or attached them, and the map
// from windows to objects is kept per thread; other threads may only post messages to m_hWnd.
#pragma once

#include <afx.h>
#include <afxgdi_.h>
#include <afxmsg_.h>
#include <atltypes.h>
#include <commctrl.h>
#include <windowsx.h>

// windowsx.h makes macros of names that are operations here.
#undef SubclassWindow
#undef GetNextSibling
#undef GetPrevSibling
#undef GetFirstChild

struct CCreateContext;

/// The application object of a binary; a binary defines at most one, as a global object.
class CWinApp : public CObject {
    DECLARE_DYNAMIC(CWinApp)
public:
    HINSTANCE m_hInstance;
    CWnd* m_pMainWnd = nullptr;

    CWinApp();
    ~CWinApp() override;
};

/// What a binary knows of itself.
struct AFX_MODULE_STATE {
    HINSTANCE m_hCurrentInstanceHandle; ///< the binary that links this library
    HINSTANCE m_hCurrentResourceHandle; ///< where templates and icons are looked for
    CWinApp* m_pCurrentWinApp;
};

AFX_MODULE_STATE* AfxGetStaticModuleState();
CWinApp* AfxGetApp();
HINSTANCE AfxGetInstanceHandle();
HINSTANCE AfxGetResourceHandle();

/// While it stands, windows are made with the control styles that the binary's own manifest
/// (resource 2) asks for, and temporary objects stay. Stands at every entry from another binary.
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

/// A window: either one made here, or a system control that was subclassed or attached.
class CWnd : public CObject {
    DECLARE_DYNAMIC(CWnd)
public:
    HWND m_hWnd = nullptr;

    CWnd() = default;
    /// Destroys the window that is still attached.
    ~CWnd() override;

    // The map between windows and objects.
    /// The window's object, or a temporary one that lasts until the message at hand was handled.
    static CWnd* FromHandle(HWND window);
    /// The window's object, or null when it has none on this thread.
    static CWnd* FromHandlePermanent(HWND window);
    BOOL Attach(HWND window);
    HWND Detach();
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }

    // Making and ending.
    /// Makes a child window; a null class name asks PreCreateWindow for one.
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                        CWnd* parent, UINT id, CCreateContext* context = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                  const RECT& rect, CWnd* parent, UINT id, LPVOID parameter = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                  int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
    virtual BOOL DestroyWindow();
    /// Routes the messages of a window that stands through this object first.
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
    /// Offered every message of a loop before it is dispatched; true when it was used up. The
    /// loops that the system runs for modal dialogs and boxes do not ask.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Offers a message to the window it goes to and to each window above it, up to `stop`.
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

    // Kin.
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    int SetDlgCtrlID(int id) { return static_cast<int>(::SetWindowLongPtr(m_hWnd, GWLP_ID, id)); }
    void SetDlgItemText(int id, LPCTSTR text) { ::SetDlgItemText(m_hWnd, id, text); }
    int GetDlgItemText(int id, LPTSTR text, int capacity) const {
        return static_cast<int>(::GetDlgItemText(m_hWnd, id, text, capacity));
    }
    BOOL IsChild(const CWnd* wnd) const { return ::IsChild(m_hWnd, wnd->m_hWnd); }

    // Place and drawing.
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

    /// All messages of the window come through here. Called by the window procedure.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// A notification that the parent of this control got and offers to the control first.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);

protected:
    /// Chooses the class of a window made with none, and may change anything else.
    virtual BOOL PreCreateWindow(CREATESTRUCT& create);
    /// Called when a window has been attached whose messages will come.
    virtual void PreSubclassWindow() {}
    /// Called last, when the window is gone; an object that owns itself deletes itself here.
    virtual void PostNcDestroy() {}

    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// The default handling of the message at hand.
    LRESULT Default();

    // What a handler calls to have the default handling too.
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

    WNDPROC superProc = nullptr; ///< what the window did before it was subclassed
};

/// A scroll bar in a handler's parameters; what sends the message may be any control.
using CScrollBar = CWnd;

/// A dialog made from a template of this binary, modal (DoModal) or modeless (Create).
class CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)
public:
    explicit CDialog(UINT templateId, CWnd* parent = nullptr)
        : m_pParentWnd(parent), dialogTemplate(templateId) {}

    /// Runs the dialog and returns what EndDialog was given, or -1 when it could not be shown.
    virtual INT_PTR DoModal();
    /// Makes the dialog and returns at once.
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    void EndDialog(int result) { ::EndDialog(m_hWnd, result); }
    BOOL PreTranslateMessage(MSG* message) override;

    /// Fills the controls; FALSE when it has set the focus itself.
    virtual BOOL OnInitDialog() { return TRUE; }

protected:
    CDialog() = default;
    using CWnd::Create;

    /// The OK button or Enter: ends a modal dialog with IDOK.
    virtual void OnOK() { EndDialog(IDOK); }
    /// The Cancel button, Escape or the frame's close button: ends a modal dialog with IDCANCEL.
    virtual void OnCancel() { EndDialog(IDCANCEL); }

    CWnd* m_pParentWnd = nullptr;

private:
    UINT dialogTemplate = 0;

    LRESULT HandleInitDialog(WPARAM, LPARAM) { return OnInitDialog(); }
    DECLARE_MESSAGE_MAP()
};

/// A child window that draws itself. It never deletes itself: whoever made it does.
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
    int AddString(LPCTSTR text) { return Ask(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)); }
    int GetCount() const { return Ask(LB_GETCOUNT); }
    int GetCurSel() const { return Ask(LB_GETCURSEL); }
    int SetCurSel(int index) { return Ask(LB_SETCURSEL, static_cast<WPARAM>(index)); }
    DWORD_PTR GetItemData(int index) const {
        return static_cast<DWORD_PTR>(SendMessage(LB_GETITEMDATA, static_cast<WPARAM>(index)));
    }
    int SetItemData(int index, DWORD_PTR data) {
        return Ask(LB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data));
    }
    int GetText(int index, LPTSTR text) const {
        return Ask(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    }
    int GetTextLen(int index) const { return Ask(LB_GETTEXTLEN, static_cast<WPARAM>(index)); }

private:
    int Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
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
    int AddString(LPCTSTR text) { return Ask(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)); }
    int GetCount() const { return Ask(CB_GETCOUNT); }
    int GetCurSel() const { return Ask(CB_GETCURSEL); }
    int SetCurSel(int index) { return Ask(CB_SETCURSEL, static_cast<WPARAM>(index)); }
    int FindStringExact(int startAfter, LPCTSTR text) const {
        return Ask(CB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter),
                   reinterpret_cast<LPARAM>(text));
    }
    DWORD_PTR GetItemData(int index) const {
        return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index)));
    }
    int SetItemData(int index, DWORD_PTR data) {
        return Ask(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data));
    }
    int GetLBText(int index, LPTSTR text) const {
        return Ask(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    }
    int GetLBTextLen(int index) const { return Ask(CB_GETLBTEXTLEN, static_cast<WPARAM>(index)); }

private:
    int Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return static_cast<int>(SendMessage(message, wParam, lParam));
    }
};
