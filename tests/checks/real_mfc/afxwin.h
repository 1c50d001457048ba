// afxwin.h - declarations shaped like the Microsoft Foundation Classes: windows and dialogs
#pragma once

#include <afx.h>
#include <afxmsg_.h>
#include <atltypes.h>

struct CCreateContext;

class CGdiObject : public CObject {
    DECLARE_DYNCREATE(CGdiObject)
public:
    CGdiObject();
    BOOL Attach(HGDIOBJ object);
};

class CFont : public CGdiObject {
    DECLARE_DYNAMIC(CFont)
public:
    CFont();
    static CFont* AFXAPI FromHandle(HFONT font);
    BOOL CreateFontIndirect(const LOGFONT* font);
    int GetLogFont(LOGFONT* font);
};

class CBitmap : public CGdiObject {
    DECLARE_DYNAMIC(CBitmap)
public:
    CBitmap();
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
};

class CBrush : public CGdiObject {
    DECLARE_DYNAMIC(CBrush)
public:
    CBrush();
};

class CDC : public CObject {
    DECLARE_DYNCREATE(CDC)
public:
    HDC m_hDC;

    CDC();
    static CDC* AFXAPI FromHandle(HDC dc);
    operator HDC() const;
    virtual BOOL CreateCompatibleDC(CDC* dc);
    int GetDeviceCaps(int index) const;
    virtual int SaveDC();
    virtual BOOL RestoreDC(int saved);
    CBitmap* SelectObject(CBitmap* bitmap);
    CBrush* SelectObject(CBrush* brush);
    virtual CFont* SelectObject(CFont* font);
    virtual COLORREF SetTextColor(COLORREF color);
    int SetBkMode(int mode);
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(POINT point) const;
    virtual int ExcludeClipRect(int left, int top, int right, int bottom);
    virtual int ExcludeClipRect(LPCRECT rect);
    void FillSolidRect(LPCRECT rect, COLORREF color);
    void FillSolidRect(int x, int y, int width, int height, COLORREF color);
    BOOL BitBlt(int x, int y, int width, int height, CDC* from, int fromX, int fromY, DWORD code);
    virtual int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format);
    int DrawText(const CString& text, LPRECT rect, UINT format);
    CSize GetTextExtent(LPCTSTR text, int length) const;
    CSize GetTextExtent(const CString& text) const;
};

class CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)
public:
    explicit CPaintDC(CWnd* wnd);
};

class CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)
public:
    explicit CClientDC(CWnd* wnd);
};

class CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)
public:
    CCmdTarget();

protected:
    DECLARE_MESSAGE_MAP()
};

class CWnd : public CCmdTarget {
    DECLARE_DYNCREATE(CWnd)
public:
    HWND m_hWnd;

    CWnd();
    static CWnd* AFXAPI FromHandle(HWND window);
    static CWnd* AFXAPI FromHandlePermanent(HWND window);
    operator HWND() const;

    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                        CWnd* parent, UINT id, CCreateContext* context = nullptr);
    virtual BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x,
                          int y, int width, int height, HWND parent, HMENU idOrMenu,
                          LPVOID parameter = nullptr);
    virtual BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                          const RECT& rect, CWnd* parent, UINT id, LPVOID parameter = nullptr);
    virtual BOOL DestroyWindow();
    BOOL SubclassDlgItem(UINT id, CWnd* parent);
    virtual BOOL PreTranslateMessage(MSG* message);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

    DWORD GetStyle() const;
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0);
    BOOL ShowWindow(int command);
    CWnd* SetFocus();
    HICON SetIcon(HICON icon, BOOL big);
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds, TIMERPROC procedure);
    BOOL KillTimer(UINT_PTR id);
    int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = MB_OK);

    void SetWindowText(LPCTSTR text);
    int GetWindowText(LPTSTR text, int capacity) const;
    void GetWindowText(CString& text) const;
    int GetWindowTextLength() const;
    void SetFont(CFont* font, BOOL redraw = TRUE);
    CFont* GetFont() const;

    CWnd* GetParent() const;
    CWnd* GetDlgItem(int id) const;
    void GetDlgItem(int id, HWND* window) const;
    int GetDlgCtrlID() const;
    void SetDlgItemText(int id, LPCTSTR text);

    void GetClientRect(LPRECT rect) const;
    void GetWindowRect(LPRECT rect) const;
    void ScreenToClient(LPPOINT point) const;
    void ScreenToClient(LPRECT rect) const;
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE);
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE);
    BOOL SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags);
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE);
    void UpdateWindow();
    void SetRedraw(BOOL redraw = TRUE);
    BOOL SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw = TRUE);
    BOOL GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask = SIF_ALL);
    int GetScrollPos(int bar) const;
    int SetScrollPos(int bar, int position, BOOL redraw = TRUE);

protected:
    virtual BOOL PreCreateWindow(CREATESTRUCT& create);
    virtual void PostNcDestroy();
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default();

    afx_msg int OnCreate(LPCREATESTRUCT create);
    afx_msg void OnDestroy();
    afx_msg void OnClose();
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* info);
    afx_msg void OnShowWindow(BOOL show, UINT status);
    afx_msg void OnTimer(UINT_PTR id);
    afx_msg void OnSetFocus(CWnd* before);
    afx_msg void OnKeyDown(UINT key, UINT repeated, UINT flags);
    afx_msg void OnChar(UINT character, UINT repeated, UINT flags);
    afx_msg void OnHScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()
};

class CScrollBar : public CWnd {
    DECLARE_DYNAMIC(CScrollBar)
public:
    CScrollBar();
};

class CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)
public:
    CEdit();
};

class CListBox : public CWnd {
    DECLARE_DYNAMIC(CListBox)
public:
    CListBox();
    void ResetContent();
    int AddString(LPCTSTR text);
    int GetCurSel() const;
    int SetCurSel(int index);
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
};

class CComboBox : public CWnd {
    DECLARE_DYNAMIC(CComboBox)
public:
    CComboBox();
    void ResetContent();
    int AddString(LPCTSTR text);
    int GetCurSel() const;
    int SetCurSel(int index);
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
};

class CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)
public:
    explicit CDialog(LPCTSTR templateName, CWnd* parent = nullptr);
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);
    virtual BOOL Create(LPCTSTR templateName, CWnd* parent = nullptr);
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    virtual INT_PTR DoModal();
    void EndDialog(int result);
    virtual BOOL OnInitDialog();

protected:
    CDialog();
    virtual void OnOK();
    virtual void OnCancel();
    DECLARE_MESSAGE_MAP()
};

class CView : public CWnd {
    DECLARE_DYNAMIC(CView)
public:
    virtual void OnInitialUpdate();

protected:
    CView();
    virtual void OnDraw(CDC* dc) = 0;
    BOOL PreCreateWindow(CREATESTRUCT& create) override;
    void PostNcDestroy() override;
    afx_msg int OnCreate(LPCREATESTRUCT create);
    afx_msg void OnDestroy();
    afx_msg void OnPaint();
    DECLARE_MESSAGE_MAP()
};

class CWinThread : public CCmdTarget {
    DECLARE_DYNAMIC(CWinThread)
public:
    CWinThread();
};

class CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)
public:
    HINSTANCE m_hInstance;

    explicit CWinApp(LPCTSTR applicationName = nullptr);
};

class AFX_MODULE_STATE : public CObject {
public:
    HINSTANCE m_hCurrentResourceHandle;
};
AFX_MODULE_STATE* AFXAPI AfxGetStaticModuleState();
CWinApp* AFXAPI AfxGetApp();
HINSTANCE AFXAPI AfxGetInstanceHandle();
HINSTANCE AFXAPI AfxGetResourceHandle();
BOOL AFXAPI AfxWinInit(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);

struct AFX_MAINTAIN_STATE2 {
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* state) noexcept;
    ~AFX_MAINTAIN_STATE2();
};
#define AFX_MANAGE_STATE(p) AFX_MAINTAIN_STATE2 afxState_(p);
