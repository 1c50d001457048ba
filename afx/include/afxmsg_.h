// afxmsg_.h - message maps
//
// A class lists its handlers, as `&Class::Member`, between BEGIN_MESSAGE_MAP and END_MESSAGE_MAP.
// Messages that neither the class nor its bases list get the window's default handling. Included by
// afxwin.h.
#pragma once

#include <windows.h>

class CWnd;

#define afx_msg

/// Calls a handler with the parameters of a message. True when the message has been handled; `wnd`
/// must not be accessed then, since the handler may have deleted it.
using AFX_MSG_CALL = bool (*)(CWnd* wnd, WPARAM wParam, LPARAM lParam, LRESULT* result);

struct AFX_MSGMAP_ENTRY {
    UINT nMessage; ///< 0 at the end of the list
    UINT nCode;    ///< notification code of WM_COMMAND and WM_NOTIFY
    UINT nID;
    UINT nLastID;
    AFX_MSG_CALL pfnCall;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)(); ///< null at the end of the chain
    const AFX_MSGMAP_ENTRY* lpEntries;
};

/// Message number under which a notification is first offered to the control that sent it.
#define AFX_WM_REFLECT_NOTIFY (WM_USER + 0x1C00 + WM_NOTIFY)
#define CN_COMMAND 0

#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                            \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY entries[] = {

#define END_MESSAGE_MAP()                                                                          \
    { 0, 0, 0, 0, nullptr }                                                                        \
    }                                                                                              \
    ;                                                                                              \
    static const AFX_MSGMAP map = {&TheBaseClass::GetThisMessageMap, entries};                     \
    return &map;                                                                                   \
    }

#define AFX_ENTRY_(message, code, id, lastId, ...)                                                 \
    {message, static_cast<UINT>(code), static_cast<UINT>(id), static_cast<UINT>(lastId),           \
     []([[maybe_unused]] CWnd* wnd, [[maybe_unused]] WPARAM wParam,                                \
        [[maybe_unused]] LPARAM lParam, [[maybe_unused]] LRESULT* result) -> bool {                \
         [[maybe_unused]] ThisClass& self = *static_cast<ThisClass*>(wnd);                         \
         __VA_ARGS__;                                                                              \
         return true;                                                                              \
     }},

#define AFX_MESSAGE_(message, ...) AFX_ENTRY_(message, 0, 0, 0, __VA_ARGS__)

// Any message: LRESULT OnX(WPARAM, LPARAM).
#define ON_MESSAGE(message, memberFxn)                                                             \
    AFX_MESSAGE_(message, *result = (self.*(memberFxn))(wParam, lParam))

// Commands, and notifications that controls send as WM_COMMAND: void OnX().
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                     \
    AFX_ENTRY_(WM_COMMAND, wNotifyCode, id, id, (self.*(memberFxn))())
#define ON_CONTROL_RANGE(wNotifyCode, id, idLast, memberFxn)                                       \
    AFX_ENTRY_(WM_COMMAND, wNotifyCode, id, idLast, (self.*(memberFxn))(LOWORD(wParam)))
#define ON_COMMAND(id, memberFxn) ON_CONTROL(CN_COMMAND, id, memberFxn)
#define ON_COMMAND_RANGE(id, idLast, memberFxn) ON_CONTROL_RANGE(CN_COMMAND, id, idLast, memberFxn)
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_BN_DOUBLECLICKED(id, memberFxn) ON_CONTROL(BN_DOUBLECLICKED, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)
#define ON_EN_KILLFOCUS(id, memberFxn) ON_CONTROL(EN_KILLFOCUS, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)
#define ON_LBN_DBLCLK(id, memberFxn) ON_CONTROL(LBN_DBLCLK, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)

// Notifications: void OnX(NMHDR*, LRESULT*). Handlers of the _EX kind return BOOL; FALSE passes the
// notification on.
#define ON_NOTIFY(wNotifyCode, id, memberFxn)                                                      \
    AFX_ENTRY_(WM_NOTIFY, wNotifyCode, id, id,                                                     \
               (self.*(memberFxn))(reinterpret_cast<NMHDR*>(lParam), result))
#define ON_NOTIFY_REFLECT(wNotifyCode, memberFxn)                                                  \
    AFX_ENTRY_(AFX_WM_REFLECT_NOTIFY, wNotifyCode, 0, 0,                                           \
               (self.*(memberFxn))(reinterpret_cast<NMHDR*>(lParam), result))
#define ON_NOTIFY_REFLECT_EX(wNotifyCode, memberFxn)                                               \
    AFX_ENTRY_(AFX_WM_REFLECT_NOTIFY, wNotifyCode, 0, 0,                                           \
               if (!(self.*(memberFxn))(reinterpret_cast<NMHDR*>(lParam), result)) return false)

// Window messages: ON_WM_X calls the handler OnX.
#define ON_WM_CREATE()                                                                             \
    AFX_MESSAGE_(WM_CREATE, *result = self.OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam)))
#define ON_WM_DESTROY() AFX_MESSAGE_(WM_DESTROY, self.OnDestroy())
#define ON_WM_CLOSE() AFX_MESSAGE_(WM_CLOSE, self.OnClose())
#define ON_WM_PAINT() AFX_MESSAGE_(WM_PAINT, self.OnPaint())
#define ON_WM_ERASEBKGND()                                                                         \
    AFX_MESSAGE_(WM_ERASEBKGND,                                                                    \
                 *result = self.OnEraseBkgnd(CDC::FromHandle(reinterpret_cast<HDC>(wParam))))
#define ON_WM_SIZE()                                                                               \
    AFX_MESSAGE_(WM_SIZE, self.OnSize(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)))
#define ON_WM_GETMINMAXINFO()                                                                      \
    AFX_MESSAGE_(WM_GETMINMAXINFO, self.OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam)))
#define ON_WM_SHOWWINDOW()                                                                         \
    AFX_MESSAGE_(WM_SHOWWINDOW,                                                                    \
                 self.OnShowWindow(static_cast<BOOL>(wParam), static_cast<UINT>(lParam)))
#define ON_WM_TIMER() AFX_MESSAGE_(WM_TIMER, self.OnTimer(wParam))
#define ON_WM_SETFOCUS()                                                                           \
    AFX_MESSAGE_(WM_SETFOCUS, self.OnSetFocus(CWnd::FromHandle(reinterpret_cast<HWND>(wParam))))
#define ON_WM_GETDLGCODE()                                                                         \
    AFX_MESSAGE_(WM_GETDLGCODE, *result = static_cast<LRESULT>(self.OnGetDlgCode()))
#define ON_WM_KEYDOWN()                                                                            \
    AFX_MESSAGE_(WM_KEYDOWN,                                                                       \
                 self.OnKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)))
#define ON_WM_CHAR()                                                                               \
    AFX_MESSAGE_(WM_CHAR, self.OnChar(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)))
#define AFX_SCROLL_(message, handler)                                                              \
    AFX_MESSAGE_(message, self.handler(LOWORD(wParam), HIWORD(wParam),                             \
                                       CWnd::FromHandle(reinterpret_cast<HWND>(lParam))))
#define ON_WM_HSCROLL() AFX_SCROLL_(WM_HSCROLL, OnHScroll)
#define ON_WM_VSCROLL() AFX_SCROLL_(WM_VSCROLL, OnVScroll)
#define ON_WM_MOUSEWHEEL()                                                                         \
    AFX_MESSAGE_(WM_MOUSEWHEEL,                                                                    \
                 *result = self.OnMouseWheel(LOWORD(wParam), static_cast<short>(HIWORD(wParam)),   \
                                             CPoint(lParam)))
#define AFX_MOUSE_(message, handler)                                                               \
    AFX_MESSAGE_(message, self.handler(static_cast<UINT>(wParam), CPoint(lParam)))
#define ON_WM_LBUTTONDOWN() AFX_MOUSE_(WM_LBUTTONDOWN, OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_MOUSE_(WM_LBUTTONUP, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() AFX_MOUSE_(WM_LBUTTONDBLCLK, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() AFX_MOUSE_(WM_RBUTTONDOWN, OnRButtonDown)
