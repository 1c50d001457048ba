// test_host.h - a host's window and message loop for tests
#pragma once

#include <afxcmn.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

/// A frame window on the display. Its loop offers messages to dialogs as a host does.
class HostWindow {
public:
    HostWindow();
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    CWnd& Frame() { return frame; }
    /// The dialog that messages are offered to first; null for none.
    void SetDialog(HWND dialog) { served = dialog; }

    /// Handles all messages that wait.
    void Pump();
    /// Handles messages until `done` answers true; fails the test after a minute.
    void PumpUntil(const std::function<bool()>& done);

    /// Presses and releases a key where the focus is.
    void Press(UINT key);
    /// Types characters where the focus is.
    void Type(const std::wstring& text);
    /// Presses and releases the left mouse button at a place in a window's client area.
    void Click(HWND window, int x, int y);
    void DoubleClick(HWND window, int x, int y);
    /// Presses and releases the right mouse button there.
    void RightClick(HWND window, int x, int y);

private:
    const AFX_MAINTAIN_STATE2 entered{AfxGetStaticModuleState()};
    CWnd frame;
    HWND served = nullptr;
};

/// A test in such a host.
class TestHost : public ::testing::Test, protected HostWindow {};

/// A window's text.
std::wstring TextOf(HWND window);
/// The text of a dialog's control; fails the test when there is no such control.
std::wstring TextOf(HWND parent, int id);
