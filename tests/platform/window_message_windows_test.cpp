// window_message_windows_test.cpp - posting messages
#include "platform/window_message.h"

#include "platform/event.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <thread>

namespace platform {
namespace {

constexpr UINT kMessage = WM_APP + 1;

TEST(PostedMessage, ReachesTheWindow) {
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(PostWindowMessage(window, kMessage, 0xFEDCBA9876543210u, -5));
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, window, kMessage, kMessage, PM_REMOVE));
    EXPECT_EQ(message.wParam, 0xFEDCBA9876543210u);
    EXPECT_EQ(message.lParam, -5);
    DestroyWindow(window);
    EXPECT_FALSE(PostWindowMessage(window, kMessage, 0, 0));
}

TEST(PostedMessage, ReachesTheThread) {
    Event ready;
    DWORD id = 0;
    MSG message{};
    std::thread receiver([&] {
        // The first call creates the message queue of the thread.
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
        id = GetCurrentThreadId();
        ready.Set();
        GetMessageW(&message, nullptr, kMessage, kMessage);
    });
    ASSERT_TRUE(ready.Wait(60000));
    EXPECT_TRUE(PostToThread(id, kMessage, 0xFEDCBA9876543210u, -6));
    receiver.join();
    EXPECT_EQ(message.message, kMessage);
    EXPECT_EQ(message.wParam, 0xFEDCBA9876543210u);
    EXPECT_EQ(message.lParam, -6);
}

} // namespace
} // namespace platform
