// when_shown.h - what a test does with a modal dialog or box
#pragma once

#include <afxwin.h>

#include <functional>
#include <string>

/// Waits for a dialog or box of this thread with a title, whatever message loop runs, and does
/// something with it once it is visible. Fails the test when it never came, and when it is still
/// there afterwards, which ends it with IDCANCEL. Made before the call that shows the dialog.
class WhenShown {
public:
    WhenShown(std::wstring title, std::function<void(HWND)> action);
    ~WhenShown();
    WhenShown(const WhenShown&) = delete;
    WhenShown& operator=(const WhenShown&) = delete;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR id, DWORD);
    void Look();

    const std::wstring title;
    const std::function<void(HWND)> action;
    UINT_PTR timer;
    bool came = false;
};

/// A message box.
struct Box {
    std::wstring text;
    HICON icon = nullptr; ///< null for none

    explicit Box(HWND window);
};
