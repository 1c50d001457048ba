// afxwin.h - what the interface headers use of the dialogs' library, declared and nothing more
//
// Clang cannot read the MinGW headers for the Microsoft target, and the library itself comes with
// Visual C++ only. These declarations have the shape of the real ones, so that the two headers
// that need them can be checked for that target, too.
#pragma once

typedef int BOOL;
typedef unsigned int UINT;
typedef unsigned short WORD;
typedef unsigned long long WPARAM;
typedef long long LPARAM;
typedef long long LRESULT;
typedef struct HWND__* HWND;
struct MSG;

enum {
    TRUE = 1,
    IDOK = 1,
    SW_HIDE = 0,
    SW_SHOW = 5,
    SW_RESTORE = 9,
    WM_COMMAND = 0x111,
    WM_GETDLGCODE = 0x87,
    BM_CLICK = 0xF5,
    DLGC_DEFPUSHBUTTON = 0x10,
    DLGC_UNDEFPUSHBUTTON = 0x20,
};
constexpr WORD LOWORD(WPARAM value) {
    return static_cast<WORD>(value);
}

extern "C" {
HWND GetParent(HWND);
HWND GetFocus();
BOOL IsChild(HWND, HWND);
BOOL IsIconic(HWND);
BOOL IsWindowVisible(HWND);
BOOL SetForegroundWindow(HWND);
BOOL IsDialogMessage(HWND, MSG*);
LRESULT SendMessage(HWND, UINT, WPARAM, LPARAM);
}

struct AFX_MODULE_STATE;
AFX_MODULE_STATE* AfxGetStaticModuleState();
struct AFX_MAINTAIN_STATE2 {
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE*);
    ~AFX_MAINTAIN_STATE2();
};
#define AFX_MANAGE_STATE(state) AFX_MAINTAIN_STATE2 maintainedState(state);

class CWnd {
public:
    virtual ~CWnd();
    BOOL ShowWindow(int);
    HWND m_hWnd;

protected:
    virtual BOOL OnCommand(WPARAM, LPARAM);
};
class CDialog : public CWnd {
public:
    CDialog(UINT, CWnd*);

protected:
    BOOL OnCommand(WPARAM, LPARAM) override;
};
