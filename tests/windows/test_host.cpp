#include "test_host.h"

#include <vector>

HostWindow::HostWindow() {
    frame.CreateEx(0, nullptr, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN, 20, 20,
                   720, 560, nullptr, nullptr);
    Pump();
    SetForegroundWindow(frame);
    SetActiveWindow(frame);
    Pump();
}

HostWindow::~HostWindow() {
    frame.DestroyWindow();
    Pump();
}

void HostWindow::Pump() {
    MSG message{};
    while (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (!served || !IsDialogMessage(served, &message)) {
            TranslateMessage(&message);
            DispatchMessage(&message);
        }
    }
}

void HostWindow::PumpUntil(const std::function<bool()>& done) {
    const ULONGLONG end = GetTickCount64() + 60000;
    Pump();
    while (!done()) {
        const ULONGLONG now = GetTickCount64();
        ASSERT_LT(now, end) << "nothing came of it";
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
        Pump();
    }
}

void HostWindow::Press(UINT key) {
    const LPARAM scanCode = static_cast<LPARAM>(MapVirtualKey(key, MAPVK_VK_TO_VSC)) << 16;
    PostMessage(GetFocus(), WM_KEYDOWN, key, scanCode | 1);
    PostMessage(GetFocus(), WM_KEYUP, key, scanCode | 0xC0000001);
    Pump();
}

void HostWindow::Type(const std::wstring& text) {
    for (const wchar_t character : text) {
        PostMessage(GetFocus(), WM_CHAR, character, 1);
        Pump();
    }
}

// The button is released before the press is handled, for a tree that waits for a drag to begin
// takes the release from the queue.
void HostWindow::Click(HWND window, int x, int y) {
    PostMessage(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessage(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Pump();
}

void HostWindow::DoubleClick(HWND window, int x, int y) {
    Click(window, x, y);
    PostMessage(window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessage(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Pump();
}

void HostWindow::RightClick(HWND window, int x, int y) {
    PostMessage(window, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(x, y));
    PostMessage(window, WM_RBUTTONUP, 0, MAKELPARAM(x, y));
    Pump();
}

std::wstring TextOf(HWND window) {
    std::vector<wchar_t> text(static_cast<std::size_t>(GetWindowTextLength(window)) + 1);
    GetWindowText(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

std::wstring TextOf(HWND parent, int id) {
    const HWND control = GetDlgItem(parent, id);
    EXPECT_NE(control, nullptr) << "no control " << id;
    return TextOf(control);
}
