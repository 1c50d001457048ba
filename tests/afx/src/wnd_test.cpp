// wnd_test.cpp - creating, attaching, subclassing and destroying windows
#include "tests/afx/src/window_fixture.h"

namespace {

TEST_F(Windows, AreMappedToTheirObject) {
    RecordingWindow wnd;
    Create(wnd);
    EXPECT_EQ(CWnd::FromHandle(wnd.m_hWnd), &wnd);
    EXPECT_EQ(CWnd::FromHandlePermanent(wnd.m_hWnd), &wnd);
    EXPECT_EQ(Frame().GetDlgItem(5), &wnd);
    const HWND window = wnd.m_hWnd;
    EXPECT_TRUE(wnd.DestroyWindow());
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr);
    EXPECT_FALSE(wnd.DestroyWindow());
}

TEST_F(Windows, AreDestroyedWithTheirObject) {
    HWND window = nullptr;
    {
        RecordingWindow wnd;
        Create(wnd);
        window = wnd.m_hWnd;
    }
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(Windows, CannotBeCreatedTwice) {
    RecordingWindow wnd;
    Create(wnd);
    const HWND window = wnd.m_hWnd;
    EXPECT_FALSE(wnd.Create(nullptr, L"child", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, window);
}

TEST_F(Windows, OfOtherClassesHaveTemporaryObjects) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(), nullptr,
                                     nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(button);
    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, button);
    EXPECT_EQ(CWnd::FromHandle(button), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(button), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST_F(Windows, CanBeSubclassedAndUnsubclassed) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(),
                                     reinterpret_cast<HMENU>(9), nullptr, nullptr);
    RecordingWindow wnd;
    ASSERT_TRUE(wnd.SubclassDlgItem(9, &Frame()));
    EXPECT_EQ(wnd.m_hWnd, button);
    EXPECT_EQ(SendMessage(button, kAdd, 1, 2), 3);
    EXPECT_EQ(TextOf(button), L"plain");
    RecordingWindow second;
    EXPECT_FALSE(second.SubclassWindow(button));
    EXPECT_FALSE(second.SubclassDlgItem(10, &Frame()));
    EXPECT_EQ(wnd.UnsubclassWindow(), button);
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    EXPECT_EQ(SendMessage(button, kAdd, 1, 2), 0);
    EXPECT_TRUE(IsWindow(button));
}

TEST_F(Windows, CanBeAttachedWithoutTheirMessages) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(), nullptr,
                                     nullptr, nullptr);
    RecordingWindow wnd;
    EXPECT_FALSE(wnd.Attach(nullptr));
    EXPECT_TRUE(wnd.Attach(button));
    EXPECT_EQ(CWnd::FromHandle(button), &wnd);
    EXPECT_EQ(SendMessage(button, kAdd, 1, 2), 0);
    EXPECT_EQ(wnd.Detach(), button);
    EXPECT_TRUE(IsWindow(button));
}

} // namespace
