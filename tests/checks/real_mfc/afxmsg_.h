// afxmsg_.h - declarations shaped like the Microsoft Foundation Classes: message maps
//
// Every entry converts its handler to one exact type of member pointer. That takes `&Class::Member`
// and refuses the bare name of a member as well as any other signature.
#pragma once

#include <windows.h>

// Complete enough for pointers to members, before the classes are defined.
class __single_inheritance CCmdTarget;
class __single_inheritance CWnd;
class CDC;
class CScrollBar;
class CPoint;

#define afx_msg

using AFX_PMSG = void (CCmdTarget::*)();

struct AFX_MSGMAP_ENTRY {
    UINT nMessage;
    UINT nCode;
    UINT nID;
    UINT nLastID;
    UINT_PTR nSig;
    AFX_PMSG pfn;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP*(AFXAPI* pfnGetBaseMap)();
    const AFX_MSGMAP_ENTRY* lpEntries;
};

#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* AFXAPI GetThisMessageMap();                                           \
    virtual const AFX_MSGMAP* GetMessageMap() const;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                            \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* AFXAPI theClass::GetThisMessageMap() {                                       \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY entries[] = {

#define END_MESSAGE_MAP()                                                                          \
    { 0, 0, 0, 0, 0, nullptr }                                                                     \
    }                                                                                              \
    ;                                                                                              \
    static const AFX_MSGMAP map = {&TheBaseClass::GetThisMessageMap, entries};                     \
    return &map;                                                                                   \
    }

// The last arguments are the type of the handler: a member of CCmdTarget or of CWnd.
#define AFX_ENTRY_(message, code, id, lastId, memberFxn, ...)                                      \
    {message, code, id, lastId, 1, reinterpret_cast<AFX_PMSG>(static_cast<__VA_ARGS__>(memberFxn))},

#define ON_MESSAGE(message, memberFxn)                                                             \
    AFX_ENTRY_(message, 0, 0, 0, memberFxn, LRESULT (CWnd::*)(WPARAM, LPARAM))

#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                     \
    AFX_ENTRY_(WM_COMMAND, wNotifyCode, id, id, memberFxn, void (CCmdTarget::*)())
#define ON_COMMAND(id, memberFxn) ON_CONTROL(0, id, memberFxn)
#define ON_COMMAND_RANGE(id, idLast, memberFxn)                                                    \
    AFX_ENTRY_(WM_COMMAND, 0, id, idLast, memberFxn, void (CCmdTarget::*)(UINT))
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)

#define ON_NOTIFY(wNotifyCode, id, memberFxn)                                                      \
    AFX_ENTRY_(WM_NOTIFY, wNotifyCode, id, id, memberFxn, void (CCmdTarget::*)(NMHDR*, LRESULT*))
#define ON_NOTIFY_REFLECT(wNotifyCode, memberFxn)                                                  \
    AFX_ENTRY_(WM_NOTIFY + WM_USER + 0x1C00, wNotifyCode, 0, 0, memberFxn,                         \
               void(CCmdTarget::*)(NMHDR*, LRESULT*))

// Window messages: the name of the handler and its type.
#define AFX_WM_(message, handler, ...)                                                             \
    AFX_ENTRY_(message, 0, 0, 0, &ThisClass::handler, __VA_ARGS__)
#define ON_WM_CREATE() AFX_WM_(WM_CREATE, OnCreate, int (CWnd::*)(LPCREATESTRUCT))
#define ON_WM_DESTROY() AFX_WM_(WM_DESTROY, OnDestroy, void (CWnd::*)())
#define ON_WM_CLOSE() AFX_WM_(WM_CLOSE, OnClose, void (CWnd::*)())
#define ON_WM_PAINT() AFX_WM_(WM_PAINT, OnPaint, void (CWnd::*)())
#define ON_WM_ERASEBKGND() AFX_WM_(WM_ERASEBKGND, OnEraseBkgnd, BOOL (CWnd::*)(CDC*))
#define ON_WM_SIZE() AFX_WM_(WM_SIZE, OnSize, void (CWnd::*)(UINT, int, int))
#define ON_WM_GETMINMAXINFO()                                                                      \
    AFX_WM_(WM_GETMINMAXINFO, OnGetMinMaxInfo, void (CWnd::*)(MINMAXINFO*))
#define ON_WM_SHOWWINDOW() AFX_WM_(WM_SHOWWINDOW, OnShowWindow, void (CWnd::*)(BOOL, UINT))
#define ON_WM_TIMER() AFX_WM_(WM_TIMER, OnTimer, void (CWnd::*)(UINT_PTR))
#define ON_WM_SETFOCUS() AFX_WM_(WM_SETFOCUS, OnSetFocus, void (CWnd::*)(CWnd*))
#define ON_WM_KEYDOWN() AFX_WM_(WM_KEYDOWN, OnKeyDown, void (CWnd::*)(UINT, UINT, UINT))
#define ON_WM_CHAR() AFX_WM_(WM_CHAR, OnChar, void (CWnd::*)(UINT, UINT, UINT))
#define ON_WM_HSCROLL() AFX_WM_(WM_HSCROLL, OnHScroll, void (CWnd::*)(UINT, UINT, CScrollBar*))
#define ON_WM_VSCROLL() AFX_WM_(WM_VSCROLL, OnVScroll, void (CWnd::*)(UINT, UINT, CScrollBar*))
#define ON_WM_MOUSEWHEEL() AFX_WM_(WM_MOUSEWHEEL, OnMouseWheel, BOOL (CWnd::*)(UINT, short, CPoint))
#define ON_WM_LBUTTONDOWN() AFX_WM_(WM_LBUTTONDOWN, OnLButtonDown, void (CWnd::*)(UINT, CPoint))
#define ON_WM_LBUTTONUP() AFX_WM_(WM_LBUTTONUP, OnLButtonUp, void (CWnd::*)(UINT, CPoint))
#define ON_WM_LBUTTONDBLCLK()                                                                      \
    AFX_WM_(WM_LBUTTONDBLCLK, OnLButtonDblClk, void (CWnd::*)(UINT, CPoint))
