// module_state_test.cpp - the state of a binary and of its threads
#include "tests/afx/src/window_fixture.h"

#include "res/resource.h"

#include <thread>

namespace {

TEST_F(Windows, OutliveTheirTemporaryObjects) {
    HWND button = nullptr;
    std::thread other([&button] {
        {
            AFX_MANAGE_STATE(AfxGetStaticModuleState())
            button = CreateWindow(L"BUTTON", L"plain", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                  nullptr, nullptr);
            EXPECT_NE(CWnd::FromHandle(button), nullptr);
        }
        EXPECT_TRUE(IsWindow(button));
        DestroyWindow(button);
    });
    other.join();
}

TEST_F(Windows, AreMappedOnTheirOwnThreadOnly) {
    RecordingWindow wnd;
    Create(wnd);
    std::thread other(
        [window = wnd.m_hWnd] { EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr); });
    other.join();
}

TEST_F(Windows, UseTheControlVersionOfTheManifest) {
    class Modeless : public CDialog {
    public:
        using CDialog::Create;
    };
    Modeless dialog;
    ASSERT_TRUE(dialog.Create(IDD_SERIAL_CONFIG, &Frame()));
    // Only version 6 of the common controls supports this message.
    SIZE size{};
    EXPECT_TRUE(SendMessage(GetDlgItem(dialog, IDOK), BCM_GETIDEALSIZE, 0,
                            reinterpret_cast<LPARAM>(&size)));
    EXPECT_GT(size.cx, 0);
}

TEST(ModuleState, TakesTheHandleOfAProgramThatStartsItself) {
    AFX_MODULE_STATE& state = *AfxGetStaticModuleState();
    const AFX_MODULE_STATE before = state;
    const HINSTANCE other = GetModuleHandle(L"kernel32");
    EXPECT_TRUE(AfxWinInit(other, nullptr, GetCommandLine(), SW_SHOW));
    EXPECT_EQ(AfxGetInstanceHandle(), other);
    EXPECT_EQ(AfxGetResourceHandle(), other);
    EXPECT_EQ(AfxGetApp(), before.m_pCurrentWinApp);
    state = before;
}

} // namespace
