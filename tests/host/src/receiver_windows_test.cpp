// receiver_windows_test.cpp - windows and threads that receive messages
#include "tests/host/test_grabber.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <tuple>
#include <vector>

namespace {

constexpr std::uint32_t kPostProcess = WM_APP + 1;
constexpr std::uint32_t kCamCfgChange = WM_APP + 2;
constexpr std::uint32_t kCamCntrl = WM_APP + 3;

using Message = std::tuple<HWND, std::uint32_t, std::uint64_t, std::int64_t>;

/// A message-only window and the message queue of this thread.
class MessageReceivers : public testing::Test {
protected:
    MessageReceivers()
        : window(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                 nullptr)) {
        EXPECT_NE(window, nullptr);
        EXPECT_EQ(grabber.PrepareFrameBuffers(4), MV_OK);
        TakeMessages();
    }
    ~MessageReceivers() override { DestroyWindow(window); }

    /// Removes and returns the pending application messages of this thread and its windows.
    static std::vector<Message> TakeMessages() {
        std::vector<Message> messages;
        MSG message;
        while (PeekMessageA(&message, nullptr, WM_APP, WM_APP + 100, PM_REMOVE)) {
            messages.emplace_back(message.hwnd, message.message, message.wParam, message.lParam);
        }
        return messages;
    }

    void SignalAll() {
        grabber.DoPostProcess(3, 1);
        grabber.SignalCamCfgChange();
        EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(0x1001), 1u);
    }

    TestGrabber grabber;
    const HWND window;
};

TEST_F(MessageReceivers, GetTheIndexTheCallbackMarkAndTheCode) {
    EXPECT_EQ(grabber.InstPostProcessMsgWnd(window, kPostProcess), MV_OK);
    EXPECT_EQ(grabber.InstCamCfgChangeMsgWnd(window, kCamCfgChange), MV_OK);
    EXPECT_EQ(grabber.InstCamCntrlMsgWnd(window, kCamCntrl), MV_OK);
    SignalAll();
    EXPECT_EQ(TakeMessages(), std::vector<Message>({{window, kPostProcess, 3, 1},
                                                    {window, kCamCfgChange, 0, 0},
                                                    {window, kCamCntrl, 0x1001, 0}}));
}

TEST_F(MessageReceivers, CanBeThreads) {
    const std::uint32_t thread = GetCurrentThreadId();
    EXPECT_EQ(grabber.InstPostProcessThreadID(thread, kPostProcess), MV_OK);
    EXPECT_EQ(grabber.InstCamCfgChangeThreadID(thread, kCamCfgChange), MV_OK);
    EXPECT_EQ(grabber.InstCamCntrlThreadID(thread, kCamCntrl), MV_OK);
    SignalAll();
    EXPECT_EQ(TakeMessages(), std::vector<Message>({{nullptr, kPostProcess, 3, 1},
                                                    {nullptr, kCamCfgChange, 0, 0},
                                                    {nullptr, kCamCntrl, 0x1001, 0}}));
}

TEST_F(MessageReceivers, AreAllNotified) {
    int called = 0;
    grabber.InstPostProcessMsgWnd(window, kPostProcess);
    grabber.InstPostProcessThreadID(GetCurrentThreadId(), kPostProcess + 50);
    grabber.InstPostProcessCallBack(
        [](std::uint64_t, std::uint32_t, void* context) { ++*static_cast<int*>(context); },
        &called);
    grabber.DoPostProcess(0, 0);
    EXPECT_EQ(called, 1);
    EXPECT_EQ(TakeMessages().size(), 2u);
}

TEST_F(MessageReceivers, AreRemovedByNullWindowsAndMessages) {
    grabber.InstPostProcessMsgWnd(window, kPostProcess);
    grabber.InstPostProcessThreadID(GetCurrentThreadId(), kPostProcess);
    EXPECT_EQ(grabber.InstPostProcessMsgWnd(nullptr, kPostProcess), MV_OK);
    EXPECT_EQ(grabber.InstPostProcessThreadID(GetCurrentThreadId(), 0), MV_OK);
    grabber.InstCamCntrlMsgWnd(window, kCamCntrl);
    EXPECT_EQ(grabber.InstCamCntrlMsgWnd(window, 0), MV_OK);
    SignalAll();
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(MessageReceivers, AreNotNotifiedWhileTheirFeatureIsOff) {
    grabber.InstPostProcessMsgWnd(window, kPostProcess);
    grabber.InstCamCfgChangeMsgWnd(window, kCamCfgChange);
    grabber.InstCamCntrlMsgWnd(window, kCamCntrl);
    grabber.SetFeature(EMV_FEATURE_POST_PROCESS, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CFG_CHANGE, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CNTRL_EVENT, 0);
    SignalAll();
    EXPECT_TRUE(TakeMessages().empty());
}

} // namespace
